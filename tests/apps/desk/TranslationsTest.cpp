// SPDX-License-Identifier: Apache-2.0
#include <QFile>
#include <QLocale>

#include <gmock/gmock.h>

#include "DeskFlow.h"
#include "desk/view/Translations.h"

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
