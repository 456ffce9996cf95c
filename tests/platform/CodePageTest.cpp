// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CodePage.h"

#include <thread>

#include <gtest/gtest.h>

#include "support/LocaleScope.h"

namespace KYTOOLS {
namespace {

/// Whatever a test selects, the next one starts with the default again.
class CodePageTest : public testing::Test {
  protected:
    ~CodePageTest() override { CodePage::Set("windows-936"); }
};

TEST_F(CodePageTest, IsCodePage936ByDefault) {
    EXPECT_EQ(CodePage::ToAnsi(L"a\u4E2D\u20AC"), "a\xD6\xD0\x80");
    EXPECT_EQ(CodePage::FromAnsi("a\xD6\xD0\x80"), L"a\u4E2D\u20AC");
}

TEST_F(CodePageTest, OrdersNamesByTheirBytes) {
    const std::wstring one = L"\u4E00";    // D2 BB
    const std::wstring peace = L"\u5B89";  // B0 B2
    EXPECT_LT(one, peace);
    EXPECT_GT(CodePage::ToAnsi(one), CodePage::ToAnsi(peace));
}

TEST_F(CodePageTest, WritesAQuestionMarkForEachCharacterOutside) {
    EXPECT_EQ(CodePage::ToAnsi(L"<\U0001F600>"), "<?>");
    EXPECT_EQ(CodePage::ToAnsi(L"\U0001F600\u05D0"), "??");
    EXPECT_EQ(CodePage::ToAnsi(L"a\u200Bb"), "a?b") << "an invisible character counts too";
    EXPECT_EQ(CodePage::ToAnsi(std::wstring(1, static_cast<wchar_t>(0xD800))), "?");
}

TEST_F(CodePageTest, UsesNoSimilarCharacterInstead) {
    EXPECT_EQ(CodePage::ToAnsi(L"\u00F1"), "?") << "no n for n with tilde";
    EXPECT_EQ(CodePage::ToAnsi(L"\u00A9"), "?") << "no c for the copyright sign";
}

TEST_F(CodePageTest, ComesBackWithQuestionMarks) {
    EXPECT_EQ(CodePage::RoundTrip(L"\u6881\U0001F600"), L"\u6881?");
    EXPECT_EQ(CodePage::RoundTrip(L""), L"");
}

TEST_F(CodePageTest, ReadsInvalidBytesAsReplacementCharacters) {
    EXPECT_EQ(CodePage::FromAnsi("a\xD6"), L"a\uFFFD");
}

TEST_F(CodePageTest, ConvertsTextsLongerThanAnyBuffer) {
    const std::wstring text(100001, L'\u6881');
    EXPECT_EQ(CodePage::ToAnsi(text).size(), 200002u);
    EXPECT_EQ(CodePage::RoundTrip(text), text);
}

TEST_F(CodePageTest, CanBePointedAtAnother) {
    ASSERT_TRUE(CodePage::Set("windows-1252"));
    EXPECT_EQ(CodePage::ToAnsi(L"\u00E9\u4E2D"), "\xE9?");
    ASSERT_TRUE(CodePage::Set("UTF-8"));
    EXPECT_EQ(CodePage::ToAnsi(L"\u4E2D"), "\xE4\xB8\xAD");
}

TEST_F(CodePageTest, KeepsTheOldOneWhenTheNameIsUnknown) {
    EXPECT_FALSE(CodePage::Set("no such page"));
    EXPECT_FALSE(CodePage::Set(""));
    EXPECT_EQ(CodePage::ToAnsi(L"\u4E2D"), "\xD6\xD0");
}

TEST_F(CodePageTest, ChangesForEveryThread) {
    EXPECT_EQ(CodePage::ToAnsi(L"\u4E2D"), "\xD6\xD0");
    ASSERT_TRUE(CodePage::Set("UTF-8"));
    std::string other;
    std::thread([&other] { other = CodePage::ToAnsi(L"\u4E2D"); }).join();
    EXPECT_EQ(other, "\xE4\xB8\xAD");
    EXPECT_EQ(CodePage::ToAnsi(L"\u4E2D"), "\xE4\xB8\xAD");
}

TEST_F(CodePageTest, DoesNotDependOnTheProcessLocale) {
    const kycbtest::LocaleScope locale("zh_CN");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    EXPECT_EQ(CodePage::ToAnsi(L"\u4E2D"), "\xD6\xD0");
}

}  // namespace
}  // namespace KYTOOLS
