// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "desk/view/NotesPane.h"

using desk::ModelNote;
using desk::NotesPane;
using desk::UncheckedProducts;
using ifchost::ProductFate;
using testing::ElementsAre;

namespace {

class NotesPaneTest : public testing::Test {
  protected:
    // The lines on display.
    std::vector<std::string> Lines() const {
        std::vector<std::string> lines;
        for (const QString& line : notes_.toPlainText().split('\n'))
            lines.push_back(line.toStdString());
        return lines;
    }

    const desk::KindNames names_{"en"};
    NotesPane notes_{names_};
};

}  // namespace

TEST_F(NotesPaneTest, NamesTheFileOfANoteOnOneModel) {
    notes_.SetModelNotes({{"", "too far apart"},
                          {"a.ifc", UncheckedProducts{ProductFate::LeftOut, 12}},
                          {"a.ifc", ifchost::UnmappedClass{1, "IfcSign", 2, "exit"}},
                          {"b.ifc", "an odd unit"}});
    EXPECT_EQ(notes_.Count(), 4);
    EXPECT_THAT(
        Lines(),
        ElementsAre("Models", "too far apart", "a.ifc: not checked: 12 (left out by the mapping)",
                    "a.ifc: no mapping rule for 2 x IfcSign, as exit", "b.ifc: an odd unit", ""));
}

TEST_F(NotesPaneTest, CallsKindsAsTheyAreCalledOnTheScreenAndInRules) {
    kyclash::ReportedRules rules;
    rules.file = "own.xml";
    rules.withoutRule = {{"土建/墙/砖内墙", 7}};
    rules.switchedOff = {{"of nobody/known", 1}};
    notes_.SetCheckNotes(rules, {"a.ifc: X: repaired"});
    EXPECT_EQ(notes_.Count(), 3);
    EXPECT_THAT(Lines(), ElementsAre("Last check, with the rules own.xml", "a.ifc: X: repaired",
                                     "not checked, for want of a rule: Civil works/Wall/"
                                     "Brick interior wall [土建/墙/砖内墙] (7)",
                                     "switched off by its rule: of nobody/known (1)"));
}

TEST_F(NotesPaneTest, ForgetsARunWhenOtherModelsAreRead) {
    kyclash::ReportedRules rules;
    rules.file = "own.xml";
    notes_.SetCheckNotes(rules, {"a.ifc: X: repaired"});
    notes_.SetModelNotes({});
    EXPECT_EQ(notes_.Count(), 0);
    EXPECT_EQ(notes_.toPlainText(), "");
}
