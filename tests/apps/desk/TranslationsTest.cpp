// SPDX-License-Identifier: Apache-2.0
#include <QFile>
#include <QLocale>
#include <QTabWidget>

#include <gmock/gmock.h>

#include "DeskFlow.h"
#include "desk/view/NotesPane.h"
#include "desk/view/Translations.h"
#include "ifchost/IfcWorkset.h"

using desk::Translations;

namespace {

class ChineseDesk : public DeskFlow {
  protected:
    void SetUp() override {
        if (!QFile::exists(DESK_PROGRAM_DIR "/translations/kyclash-desk_zh.qm")) {
            GTEST_SKIP() << "the translations were not compiled: lrelease (qt6-l10n-tools) is "
                            "missing";
        }
        DeskFlow::SetUp();
    }

    static Translations Chinese() { return {QLocale("zh_CN"), DESK_PROGRAM_DIR}; }
};

}  // namespace

TEST_F(ChineseDesk, SpeaksTheLanguageOfItsUser) {
    const Translations chinese = Chinese();
    EXPECT_TRUE(chinese.HasWindowTexts());
    language_ = "zh";
    Restart();
    EXPECT_EQ(Action("run").text(), QString::fromUtf8("运行检查"));
    OpenSample();
    Check();
    EXPECT_EQ(Cell(0, ResultColumn::kState), QString::fromUtf8("未处理"));
    EXPECT_EQ(Cell(0, ResultColumn::kMainKind), QString::fromUtf8("砼柱"));
    ClickRow(0);
    Keep("17-chinese");
    Get<QTabWidget>("pages").setCurrentWidget(&Get<desk::NotesPane>("notes"));
    Keep("18-chinese-notes");
}

TEST_F(ChineseDesk, SaysInItsLanguageWhyProductsTakeNoPart) {
    const Translations chinese = Chinese();
    const desk::KindNames names("zh");
    for (std::size_t i = 1; i < ifchost::kProductFateCount; ++i) {
        const auto fate = static_cast<ifchost::ProductFate>(i);
        desk::NotesPane notes(names);
        notes.SetModelNotes({{"a.ifc", desk::UncheckedProducts{fate, 3}}});
        EXPECT_TRUE(notes.toPlainText().contains(QString::fromUtf8("a.ifc：未检查：3（")))
            << notes.toPlainText().toStdString();
        EXPECT_FALSE(notes.toPlainText().contains(
            QString::fromStdString(std::string(ifchost::FateText(fate)))))
            << notes.toPlainText().toStdString();
    }
}

TEST_F(ChineseDesk, SpeaksEnglishWhereThereIsNoTranslation) {
    const Translations none(QLocale("is_IS"), DESK_PROGRAM_DIR);
    EXPECT_FALSE(none.HasWindowTexts());
    Restart();
    EXPECT_EQ(Action("run").text(), "Run check");
}

TEST_F(ChineseDesk, ForgetsTheLanguageWithTheTranslations) {
    { const Translations chinese = Chinese(); }
    Restart();
    EXPECT_EQ(Action("run").text(), "Run check");
}
