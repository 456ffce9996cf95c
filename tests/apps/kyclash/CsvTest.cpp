// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "kyclash/Csv.h"

namespace kyclash {
namespace {

TEST(CsvCell, LeavesPlainTextAsItIs) {
    EXPECT_EQ(CsvCell("Wall F1"), "Wall F1");
    EXPECT_EQ(CsvCell(""), "");
    EXPECT_EQ(CsvCell("3(+1250mm) / B(-400mm)"), "3(+1250mm) / B(-400mm)");
    EXPECT_EQ(CsvCell("给水管"), "给水管");
}

TEST(CsvCell, QuotesSeparatorsQuotesAndLineBreaks) {
    EXPECT_EQ(CsvCell("1,2"), "\"1,2\"");
    EXPECT_EQ(CsvCell("a \"b\" c"), "\"a \"\"b\"\" c\"");
    EXPECT_EQ(CsvCell("a\nb"), "\"a\nb\"");
    EXPECT_EQ(CsvCell("a\rb"), "\"a\rb\"");
}

TEST(CsvCell, GuardsWhatASpreadsheetWouldRun) {
    EXPECT_EQ(CsvCell("=1+1"), "'=1+1");
    EXPECT_EQ(CsvCell("@SUM(A1)"), "'@SUM(A1)");
    EXPECT_EQ(CsvCell("+cmd|' /C calc'!A0"), "'+cmd|' /C calc'!A0");
    EXPECT_EQ(CsvCell("-2+HYPERLINK(\"x\")"), "\"'-2+HYPERLINK(\"\"x\"\")\"");
    EXPECT_EQ(CsvCell("\t=1"), "'\t=1");
    EXPECT_EQ(CsvCell("\r=1"), "\"'\r=1\"");
}

TEST(CsvCell, LeavesNumbersWithSignsAsTheyAre) {
    EXPECT_EQ(CsvCell("-300"), "-300");
    EXPECT_EQ(CsvCell("-300~-100"), "-300~-100");
    EXPECT_EQ(CsvCell("-5,200"), "\"-5,200\"");
    EXPECT_EQ(CsvCell("+12.5"), "+12.5");
}

TEST(CsvText, BeginsWithAByteOrderMarkAndEndsRowsWithCrLf) {
    CsvText table({"a", "b"});
    table.AddRow({"1", "x,y"});
    EXPECT_EQ(table.Text(),
              "\xEF\xBB\xBF"
              "a,b\r\n1,\"x,y\"\r\n");
}

}  // namespace
}  // namespace kyclash
