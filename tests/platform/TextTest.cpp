// SPDX-License-Identifier: Apache-2.0
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdio>
#include <random>
#include <stdexcept>

#include <gmock/gmock.h>

#include "platform/Text.h"
#include "support/LocaleScope.h"

namespace kycb::text {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <class Exception>
std::string MessageOf(double (*parse)(std::wstring_view), std::wstring_view text) {
    try {
        parse(text);
    } catch (const Exception& error) {
        return error.what();
    }
    return "nothing thrown";
}

TEST(Split, KeepsEmptyPartsBetweenDelimitersAndDropsAnEmptyLastOne) {
    EXPECT_THAT(Split(L"a//b", L'/'), ElementsAre(L"a", L"", L"b"));
    EXPECT_THAT(Split(L"a/b/", L'/'), ElementsAre(L"a", L"b"));
    EXPECT_THAT(Split(L"/a", L'/'), ElementsAre(L"", L"a"));
    EXPECT_THAT(Split(L"a//", L'/'), ElementsAre(L"a", L""));
    EXPECT_THAT(Split(L"/", L'/'), ElementsAre(L""));
    EXPECT_THAT(Split(L"", L'/'), IsEmpty());
    EXPECT_THAT(Split(L" a ", L'/'), ElementsAre(L" a "));
}

TEST(Split, TakesADelimiterOfSeveralCharacters) {
    EXPECT_THAT(Split(L"DN>=100", L">="), ElementsAre(L"DN", L"100"));
    EXPECT_THAT(Split(L"DN>=", L">="), ElementsAre(L"DN"));
    EXPECT_THAT(Split(L">=>=x", L">="), ElementsAre(L"", L"", L"x"));
    EXPECT_THAT(Split(L"a>b=c", L">="), ElementsAre(L"a>b=c"));
}

TEST(EqualIgnoringAsciiCase, FoldsTheLettersAToZOnly) {
    EXPECT_TRUE(EqualIgnoringAsciiCase(L"ReViT", L"revit"));
    EXPECT_FALSE(EqualIgnoringAsciiCase(L"Revit", L"Revit "));
    EXPECT_FALSE(EqualIgnoringAsciiCase(L"\u00C4", L"\u00E4"));
    EXPECT_FALSE(EqualIgnoringAsciiCase(L"[", L"{"));
}

TEST(Utf8, ConvertsEachLengthThereAndBack) {
    const std::wstring text = L"a\u00E9\u6881\U0001F600";
    const std::string bytes = "a\xC3\xA9\xE6\xA2\x81\xF0\x9F\x98\x80";
    EXPECT_EQ(ToUtf8(text), bytes);
    EXPECT_EQ(FromUtf8(bytes), text);
}

TEST(Utf8, KeepsNulCharacters) {
    const std::wstring text(L"a\0b", 3);
    EXPECT_EQ(ToUtf8(text), std::string("a\0b", 3));
    EXPECT_EQ(FromUtf8(std::string("a\0b", 3)), text);
}

TEST(Utf8, ReplacesInvalidBytes) {
    EXPECT_EQ(FromUtf8("a\xFFz"), L"a\uFFFDz");
    EXPECT_EQ(FromUtf8("\xE6\xA2"), L"\uFFFD") << "cut short";
    EXPECT_EQ(FromUtf8("\xC0\xAF"), L"\uFFFD\uFFFD") << "overlong";
    EXPECT_EQ(FromUtf8("\xED\xA0\x80"), L"\uFFFD\uFFFD\uFFFD") << "surrogate";
    EXPECT_EQ(FromUtf8("\xF4\x90\x80\x80"), L"\uFFFD\uFFFD\uFFFD\uFFFD") << "above U+10FFFF";
    EXPECT_EQ(FromUtf8("\xF0\x9F\x98z"), L"\uFFFDz");
}

TEST(Utf8, ReplacesCharactersThatAreNone) {
    const std::wstring text = {L'a', static_cast<wchar_t>(0xD800),
                               static_cast<wchar_t>(0x7FFFFFFF)};
    EXPECT_EQ(FromUtf8(ToUtf8(text)), L"a\uFFFD\uFFFD");
}

TEST(Utf8, ConvertsEveryCharacterThereAndBack) {
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF) continue;
        const std::wstring text(1, static_cast<wchar_t>(c));
        ASSERT_EQ(FromUtf8(ToUtf8(text)), text) << static_cast<unsigned>(c);
        ASSERT_EQ(FromUtf16(ToUtf16(text)), text) << static_cast<unsigned>(c);
    }
}

TEST(Utf16, PairsSurrogatesAndReplacesLoneOnes) {
    EXPECT_EQ(ToUtf16(L"a\U0001F600"), u"a\xD83D\xDE00");
    EXPECT_EQ(FromUtf16(u"\xD83D\xDE00"), L"\U0001F600");
    const char16_t lone[] = {0xD83D, u'a', 0xDE00, 0xD83D};
    EXPECT_EQ(FromUtf16({lone, 4}), L"\uFFFDa\uFFFD\uFFFD");
}

TEST(ToInt, ReadsTheLeadingNumber) {
    EXPECT_EQ(ToInt(L"150"), 150);
    EXPECT_EQ(ToInt(L" \t\r\n\v\f-12mm"), -12);
    EXPECT_EQ(ToInt(L"+7"), 7);
    EXPECT_EQ(ToInt(L"3.9"), 3);
    EXPECT_EQ(ToInt(L"007"), 7);
}

TEST(ToInt, GivesZeroWithoutANumber) {
    for (const wchar_t* text : {L"", L"abc", L"-", L"+-5", L"- 5", L"\u3000 5", L"\uFF15"}) {
        EXPECT_EQ(ToInt(text), 0) << ToUtf8(text);
    }
}

TEST(ToInt, SaturatesAtTheLimits) {
    EXPECT_EQ(ToInt(L"2147483647"), INT_MAX);
    EXPECT_EQ(ToInt(L"2147483648"), INT_MAX);
    EXPECT_EQ(ToInt(L"-2147483648"), INT_MIN);
    EXPECT_EQ(ToInt(L"-2147483649"), INT_MIN);
    EXPECT_EQ(ToInt(std::wstring(1000, L'9')), INT_MAX);
}

TEST(ToDouble, ReadsTheLeadingNumber) {
    EXPECT_EQ(ToDouble(L" 2.5mm"), 2.5);
    EXPECT_EQ(ToDouble(L"-.5"), -0.5);
    EXPECT_EQ(ToDouble(L"+1e3x"), 1000.0);
    EXPECT_EQ(ToDouble(L"1e"), 1.0);
    EXPECT_EQ(ToDouble(L"1,5"), 1.0);
    EXPECT_EQ(ToDouble(L"0x10"), 16.0);
    EXPECT_EQ(ToDouble(L"0x"), 0.0);
}

TEST(ToDouble, GivesZeroForTextThatIsNoNumber) {
    for (const wchar_t* text : {L"", L"abc", L"-", L".", L"+-1", L"inf", L"nan", L"\uFF15"}) {
        EXPECT_EQ(ToDouble(text), 0.0) << ToUtf8(text);
    }
}

TEST(ToDouble, SaturatesNumbersOutOfRange) {
    EXPECT_EQ(ToDouble(L"1e999"), HUGE_VAL);
    EXPECT_EQ(ToDouble(L"-1e999"), -HUGE_VAL);
    EXPECT_EQ(ToDouble(L"1e-999"), 0.0);
    EXPECT_EQ(ToDouble(std::wstring(400, L'1')), HUGE_VAL);
    EXPECT_EQ(ToDouble(L"0." + std::wstring(400, L'0') + L"1"), 0.0);
}

TEST(ParseDouble, ReadsAsTheStandardConversionDoes) {
    EXPECT_EQ(ParseDouble(L" 10.5 and more"), 10.5);
    EXPECT_EQ(ParseDouble(L"-0x1.8p1"), -3.0);
    EXPECT_EQ(ParseDouble(L"INF"), HUGE_VAL);
    EXPECT_TRUE(std::isnan(ParseDouble(L"nan")));
    EXPECT_EQ(ParseDouble(L"1.7976931348623157e308"), DBL_MAX);
    EXPECT_EQ(ParseDouble(L"4.9e-324"), 0x1p-1074) << "not every standard library takes these";
}

TEST(ParseDouble, ThrowsTheStandardErrors) {
    EXPECT_EQ(MessageOf<std::invalid_argument>(ParseDouble, L""), "invalid stod argument");
    EXPECT_EQ(MessageOf<std::invalid_argument>(ParseDouble, L"a"), "invalid stod argument");
    EXPECT_EQ(MessageOf<std::invalid_argument>(ParseDouble, L"- 1"), "invalid stod argument");
    EXPECT_EQ(MessageOf<std::out_of_range>(ParseDouble, L"1e999"), "stod argument out of range");
    EXPECT_EQ(MessageOf<std::out_of_range>(ParseDouble, L"1e-999"), "stod argument out of range");
}

TEST(ParseDouble, AgreesWithTheStandardConversionOnRandomTexts) {
    std::mt19937 random(20240611);
    const std::wstring alphabet = L" +-0123456789..eExXpPaf";
    int numbers = 0;
    int refused = 0;
    for (int round = 0; round < 200000; ++round) {
        std::wstring text;
        for (auto length = random() % 9; length > 0; --length) {
            text += alphabet[random() % alphabet.size()];
        }
        std::optional<double> expected;
        try {
            expected = std::stod(text);
        } catch (const std::logic_error&) {
            ++refused;
        }
        if (!expected && std::fpclassify(ToDouble(text)) == FP_SUBNORMAL) continue;
        if (!expected) {
            EXPECT_THROW(ParseDouble(text), std::logic_error) << ToUtf8(text);
            continue;
        }
        ++numbers;
        ASSERT_EQ(ParseDouble(text), *expected) << ToUtf8(text);
    }
    EXPECT_GT(numbers, 20000);
    EXPECT_GT(refused, 20000);
}

TEST(ParseInt, ThrowsTheStandardErrors) {
    EXPECT_EQ(ParseInt(L" -12x"), -12);
    EXPECT_THAT([] { ParseInt(L"x"); },
                testing::ThrowsMessage<std::invalid_argument>("invalid stoi argument"));
    EXPECT_THAT([] { ParseInt(L"2147483648"); },
                testing::ThrowsMessage<std::out_of_range>("stoi argument out of range"));
}

TEST(ParseLong, ThrowsTheStandardErrorsOfA32BitLong) {
    EXPECT_EQ(ParseLong(L"-2147483648"), INT_MIN);
    EXPECT_THAT([] { ParseLong(L""); },
                testing::ThrowsMessage<std::invalid_argument>("invalid stol argument"));
    EXPECT_THAT([] { ParseLong(L"-2147483649"); },
                testing::ThrowsMessage<std::out_of_range>("stol argument out of range"));
}

TEST(FromInt, WritesPlainDigits) {
    EXPECT_EQ(FromInt(0), L"0");
    EXPECT_EQ(FromInt(-1234567), L"-1234567");
    EXPECT_EQ(FromInt(INT64_MIN), L"-9223372036854775808");
}

TEST(FromFixed, RoundsTheExactValue) {
    EXPECT_EQ(FromFixed(-1, 2), L"-1.00");
    EXPECT_EQ(FromFixed(0.125, 2), L"0.12") << "an exact half goes to the even digit";
    EXPECT_EQ(FromFixed(1e22, 0), L"10000000000000000000000");
    EXPECT_EQ(FromFixed(DBL_MAX, 1).size(), 311u);
}

TEST(FromFixed, AgreesWithPrintfInTheCLocale) {
    std::mt19937_64 random(7);
    for (int round = 0; round < 20000; ++round) {
        const double value = std::ldexp(static_cast<double>(random()) - 0x1p63,
                                        static_cast<int>(random() % 120) - 100);
        char expected[400];
        std::snprintf(expected, sizeof(expected), "%.2f", value);
        ASSERT_EQ(ToUtf8(FromFixed(value, 2)), expected);
    }
}

class TextInLocale : public testing::TestWithParam<const char*> {};

TEST_P(TextInLocale, ConvertsAsEverywhere) {
    const kycbtest::LocaleScope locale(GetParam());
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    EXPECT_EQ(ToDouble(L"2.5"), 2.5);
    EXPECT_EQ(ToDouble(L"2,5"), 2.0);
    EXPECT_EQ(ToDouble(L"1.234.567"), 1.234);
    EXPECT_EQ(ParseDouble(L" -10.25"), -10.25);
    EXPECT_EQ(ToInt(L"1.000"), 1);
    EXPECT_EQ(ToInt(L"\u30001"), 0) << "a blank of the locale is none here";
    EXPECT_EQ(ParseInt(L"12"), 12);
    EXPECT_EQ(ParseLong(L"-12"), -12);
    EXPECT_EQ(FromInt(1234567), L"1234567");
    EXPECT_EQ(FromFixed(1234567.5, 2), L"1234567.50");
    EXPECT_EQ(ToUtf8(L"\u6881"), "\xE6\xA2\x81");
    EXPECT_EQ(FromUtf8("\xE6\xA2\x81"), L"\u6881");
    EXPECT_TRUE(EqualIgnoringAsciiCase(L"TEKLA", L"tekla"));
}

TEST(LocaleScope, GivesAnInfluentialLocale) {
    const kycbtest::LocaleScope locale("de_DE");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    EXPECT_STREQ(std::localeconv()->decimal_point, ",");
}

INSTANTIATE_TEST_SUITE_P(Locales, TextInLocale, testing::Values("zh_CN", "de_DE"));

}  // namespace
}  // namespace kycb::text
