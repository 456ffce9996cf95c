// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "kyclash/RuleFile.h"

namespace kyclash {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;
using testing::TemporaryFolder;

constexpr const char* kSound = R"(<CollisionRule><Specialty name="土建">
  <RuleItem gjtype="土建/墙/砖内墙" isvalid="true">
    <Filter type="0"/><Mode type="2">5</Mode>
    <Excludes><ExcludeGJ>土建/墙</ExcludeGJ></Excludes>
  </RuleItem></Specialty></CollisionRule>)";

RuleFile Read(const std::string& text) {
    const TemporaryFolder folder;
    return ReadRuleFile(folder.Write("rules.xml", text));
}

// The remarks on one item with these attributes and this content.
std::vector<RuleRemark> RemarksOn(const std::string& attributes, const std::string& content) {
    return Read("<CollisionRule><Specialty name=\"土建\"><RuleItem " + attributes + ">" + content +
                "</RuleItem></Specialty></CollisionRule>")
        .remarks;
}
constexpr const char* kWall = "gjtype=\"土建/墙/砖内墙\" isvalid=\"true\"";

auto Remark(const std::string& place, const std::string& text) {
    return AllOf(Field(&RuleRemark::place, place), Field(&RuleRemark::text, HasSubstr(text)));
}

TEST(RuleFile, ReadsASoundFileWithoutRemarks) {
    const RuleFile file = Read(kSound);
    EXPECT_EQ(file.error, "");
    EXPECT_THAT(file.remarks, IsEmpty());
    ASSERT_TRUE(file.rules);
    const auto* item = file.rules->GetRuleItem(L"土建/墙/砖内墙");
    ASSERT_TRUE(item);
    EXPECT_EQ(item->GetMode()->GetTolerance(), 5);
    EXPECT_FALSE(item->IsCollisionWith(L"土建/墙/砖外墙"));
}

TEST(RuleFile, NamesAMissingFile) {
    const RuleFile file = ReadRuleFile("no/such/rules.xml");
    EXPECT_FALSE(file.rules);
    EXPECT_THAT(file.error, HasSubstr("rules.xml"));
}

TEST(RuleFile, RefusesAnotherRootElement) {
    const RuleFile file = Read("<Rules/>");
    EXPECT_FALSE(file.rules);
    EXPECT_THAT(file.error, EndsWith("its root element is not \"CollisionRule\""));
}

TEST(RuleFile, NamesThePlaceOfBrokenXml) {
    const RuleFile file = Read("<CollisionRule>\n<Specialty name=\"x\">\n</CollisionRule>");
    EXPECT_FALSE(file.rules);
    EXPECT_THAT(file.error, AllOf(HasSubstr("rules.xml"), HasSubstr("3")));
}

TEST(RuleFile, NamesTheItemThatMakesItUnusable) {
    const RuleFile file = Read(R"(<CollisionRule><Specialty name="土建">
        <RuleItem gjtype="土建/墙/砖内墙" isvalid="true"/><RuleItem gjtype="土建/墙"/>
        </Specialty></CollisionRule>)");
    EXPECT_FALSE(file.rules);
    EXPECT_THAT(file.error, HasSubstr("/CollisionRule/Specialty[1]/RuleItem[2]: gjtype="
                                      "\"土建/墙\" is no category path"));
}

TEST(RuleFile, NamesAnItemWithoutAPath) {
    const RuleFile file = Read(
        "<CollisionRule><Specialty name=\"土建\"><RuleItem/></Specialty>"
        "</CollisionRule>");
    EXPECT_THAT(file.error, HasSubstr("RuleItem[1]: has no attribute \"gjtype\""));
}

TEST(RuleFile, RemarksOnKindsThatTheTreeDoesNotHave) {
    EXPECT_THAT(RemarksOn("gjtype=\"土建/墙/木墙\" isvalid=\"true\"", ""),
                ElementsAre(Remark("/CollisionRule/Specialty[1]/RuleItem[1]",
                                   "matches no kind: the category tree has no minor category "
                                   "\"木墙\"")));
}

TEST(RuleFile, RemarksOnAnItemUnderAnotherSpecialty) {
    EXPECT_THAT(RemarksOn("gjtype=\"暖通/风管/送风管\" isvalid=\"true\"", ""),
                ElementsAre(Remark("/CollisionRule/Specialty[1]/RuleItem[1]",
                                   "stands under the specialty \"土建\"")));
}

TEST(RuleFile, RemarksOnASecondItemOfAKind) {
    const RuleFile file = Read(R"(<CollisionRule><Specialty name="土建">
        <RuleItem gjtype="土建/墙/砖内墙" isvalid="true"/>
        <RuleItem gjtype="土建/墙/砖内墙" isvalid="true"/></Specialty></CollisionRule>)");
    EXPECT_THAT(file.remarks, ElementsAre(Remark("/CollisionRule/Specialty[1]/RuleItem[2]",
                                                 "has an item already")));
}

TEST(RuleFile, RemarksOnOddValidity) {
    EXPECT_THAT(RemarksOn("gjtype=\"土建/墙/砖内墙\" isvalid=\"yes\"", ""),
                ElementsAre(Remark("/CollisionRule/Specialty[1]/RuleItem[1]",
                                   "isvalid=\"yes\" switches it off")));
    EXPECT_THAT(RemarksOn("gjtype=\"土建/墙/砖内墙\"", ""), SizeIs(1));
    EXPECT_THAT(RemarksOn("gjtype=\"土建/墙/砖内墙\" isvalid=\"FALSE\"", ""), IsEmpty());
}

TEST(RuleFile, RemarksOnModes) {
    const std::string place = "/CollisionRule/Specialty[1]/RuleItem[1]/Mode";
    EXPECT_THAT(RemarksOn(kWall, "<Mode type=\"3\">5</Mode>"),
                ElementsAre(Remark(place, "type=\"3\" is no mode")));
    EXPECT_THAT(RemarksOn(kWall, "<Mode type=\"2\">5 mm</Mode>"),
                ElementsAre(Remark(place, "the tolerance \"5 mm\" is no whole number")));
    EXPECT_THAT(RemarksOn(kWall, "<Mode type=\"1\">any</Mode>"), IsEmpty());
}

TEST(RuleFile, RemarksOnFilters) {
    const std::string place = "/CollisionRule/Specialty[1]/RuleItem[1]/Filter";
    EXPECT_THAT(RemarksOn(kWall, "<Filter type=\"2\">x</Filter>"),
                ElementsAre(Remark(place, "is no filter type")));
    EXPECT_THAT(RemarksOn(kWall, "<Filter type=\"1\">DN 50</Filter>"),
                ElementsAre(Remark(place, "has no operator")));
    EXPECT_THAT(RemarksOn(kWall, "<Filter type=\"1\">DN&gt;=fifty</Filter>"),
                ElementsAre(Remark(place, "does not end with a whole number")));
    EXPECT_THAT(RemarksOn(kWall, "<Filter type=\"1\">DN(mm)&gt;= 50</Filter>"), IsEmpty());
}

TEST(RuleFile, RemarksOnExclusions) {
    const std::string place = "/CollisionRule/Specialty[1]/RuleItem[1]/Excludes/ExcludeGJ[2]";
    EXPECT_THAT(RemarksOn(kWall,
                          "<Excludes><ExcludeGJ>土建</ExcludeGJ><ExcludeGJ>a/b/c/d"
                          "</ExcludeGJ></Excludes>"),
                ElementsAre(Remark(place, "is no category path and passed over")));
    EXPECT_THAT(RemarksOn(kWall,
                          "<Excludes><ExcludeGJ>土建</ExcludeGJ><ExcludeGJ>土建/门"
                          "</ExcludeGJ></Excludes>"),
                ElementsAre(Remark(place, "excludes nothing: the category tree has no major")));
}

TEST(RuleFile, RemarksOnUnknownElements) {
    EXPECT_THAT(RemarksOn(kWall, "<Modus type=\"1\"/>"),
                ElementsAre(Remark("/CollisionRule/Specialty[1]/RuleItem[1]/Modus",
                                   "is unknown and passed over")));
}

TEST(RuleFile, RemarksOnWhatIsReadByItsPosition) {
    const RuleFile file = Read(R"(<CollisionRule><Name/><Specialty name="土建"/></CollisionRule>)");
    ASSERT_TRUE(file.rules);
    EXPECT_THAT(file.remarks,
                ElementsAre(Remark("/CollisionRule/Name[1]", "is read as a \"Specialty\""),
                            Remark("/CollisionRule/Name[1]", "has no attribute \"name\""),
                            Remark("/CollisionRule/Specialty[2]", "is not read")));
}

TEST(RuleFile, CutsLongTextsInMessages) {
    const RuleFile file = Read("<CollisionRule><Specialty name=\"土建\"><RuleItem gjtype=\"" +
                               std::string(1000000, 'x') + "\"/></Specialty></CollisionRule>");
    EXPECT_LT(file.error.size(), 500U);
    EXPECT_THAT(file.error, HasSubstr("xxx...\" is no category path"));
}

}  // namespace
}  // namespace kyclash
