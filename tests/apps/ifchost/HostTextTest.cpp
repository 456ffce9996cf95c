// SPDX-License-Identifier: Apache-2.0
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "ifchost/HostText.h"
#include "support/LocaleScope.h"

namespace ifchost {
namespace {

TEST(HostText, ConvertsTextOfAllPlanesBothWays) {
    const std::string bytes = "a\xC3\xA4\xE5\xA2\x99\xF0\x9F\x8F\xA0";  // a, a umlaut, wall, house
    const std::wstring text = FromUtf8(bytes);
    EXPECT_EQ(text, L"a\u00E4\u5899\U0001F3E0");
    EXPECT_EQ(ToUtf8(text), bytes);
}

TEST(HostText, ReplacesIllFormedBytes) {
    EXPECT_EQ(FromUtf8("x\xFFy"), L"x\uFFFDy");
    EXPECT_EQ(FromUtf8("\xC0\xAF"), L"\uFFFD\uFFFD");
    EXPECT_EQ(FromUtf8("ab\xE5\xA2"), L"ab\uFFFD");
}

TEST(HostText, ReplacesLoneSurrogates) {
    const std::wstring text(1, static_cast<wchar_t>(0xD800));
    EXPECT_EQ(ToUtf8(text), "\xEF\xBF\xBD");
}

TEST(HostText, FoldsCaseBeyondAscii) {
    EXPECT_EQ(FoldCase("ABC-1"), "abc-1");
    EXPECT_EQ(FoldCase("Au\xC3\x9F"
                       "enwand"),
              FoldCase("AUSSENWAND"));
    EXPECT_EQ(FoldCase("L\xC3\x9C"
                       "FTUNG"),
              FoldCase("l\xC3\xBC"
                       "ftung"));
    EXPECT_EQ(FoldCase("\xE6\x8E\x92\xE6\xB0\xB4"), "\xE6\x8E\x92\xE6\xB0\xB4");
}

TEST(HostText, WritesLengthsWithoutTrailingZeros) {
    EXPECT_EQ(FormatMillimetres(0.0), L"0");
    EXPECT_EQ(FormatMillimetres(-0.0001), L"0");
    EXPECT_EQ(FormatMillimetres(3000.0), L"3000");
    EXPECT_EQ(FormatMillimetres(-2.5), L"-2.5");
    EXPECT_EQ(FormatMillimetres(1234.5678), L"1234.568");
    EXPECT_EQ(FormatMillimetres(1e17), L"100000000000000000");
}

TEST(HostText, WritesNothingForWhatIsNoLength) {
    EXPECT_EQ(FormatMillimetres(std::numeric_limits<double>::quiet_NaN()), L"");
    EXPECT_EQ(FormatMillimetres(std::numeric_limits<double>::infinity()), L"");
    EXPECT_EQ(FormatMillimetres(std::numeric_limits<double>::max()).size(), 309U);
}

TEST(HostText, WritesAPointWhateverTheLocale) {
    const kycbtest::LocaleScope locale("de_DE");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    EXPECT_EQ(FormatMillimetres(2.5), L"2.5");
    EXPECT_EQ(FormatMillimetres(1234567.0), L"1234567");
}

}  // namespace
}  // namespace ifchost
