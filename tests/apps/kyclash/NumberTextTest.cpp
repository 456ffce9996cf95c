// SPDX-License-Identifier: Apache-2.0
#include <limits>
#include <locale>

#include <gtest/gtest.h>

#include "kyclash/NumberText.h"

namespace kyclash {
namespace {

class CommaPoint : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(NumberText, RoundsToTheDecimals) {
    EXPECT_EQ(FixedText(1234.565, 1), "1234.6");
    EXPECT_EQ(FixedText(-0.4, 0), "-0");
    EXPECT_EQ(FixedText(2.0, 2), "2.00");
}

TEST(NumberText, WritesNoNegativeZero) {
    EXPECT_EQ(WholeText(-0.4), "0");
    EXPECT_EQ(WholeText(-0.6), "-1");
    EXPECT_EQ(WholeText(2.5), "3");
}

TEST(NumberText, AlignsColumns) {
    EXPECT_EQ(ColumnText(7, 36), " 7");
    EXPECT_EQ(ColumnText(36, 36), "36");
    EXPECT_EQ(ColumnText(7, 1000), "   7");
    EXPECT_EQ(ColumnText(7, 7), "7");
}

TEST(NumberText, CountsInEnglish) {
    EXPECT_EQ(CountText(0, "floor"), "0 floors");
    EXPECT_EQ(CountText(1, "floor"), "1 floor");
    EXPECT_EQ(CountText(1, "clash", "clashes"), "1 clash");
    EXPECT_EQ(CountText(12, "clash", "clashes"), "12 clashes");
}

TEST(NumberText, TakesTheLargestNumbers) {
    const std::string text = FixedText(std::numeric_limits<double>::max(), 2);
    EXPECT_EQ(text.size(), 312U);
    EXPECT_EQ(text.substr(0, 8), "17976931");
}

TEST(NumberText, DoesNotDependOnTheLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    EXPECT_EQ(PositionText({1234567.125, -0.5, 3.0}), "1234567.12,-0.50,3.00");
    std::locale::global(before);
}

}  // namespace
}  // namespace kyclash
