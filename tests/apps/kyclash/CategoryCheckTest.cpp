// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kyclash/CategoryCheck.h"

namespace kyclash {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(PathParts, KeepsEmptyPartsButTheLast) {
    EXPECT_THAT(PathParts(L""), IsEmpty());
    EXPECT_THAT(PathParts(L"a"), ElementsAre(L"a"));
    EXPECT_THAT(PathParts(L"a/"), ElementsAre(L"a"));
    EXPECT_THAT(PathParts(L"/"), ElementsAre(L""));
    EXPECT_THAT(PathParts(L"a//b"), ElementsAre(L"a", L"", L"b"));
    EXPECT_THAT(PathParts(L"a/b/c/d"), ElementsAre(L"a", L"b", L"c", L"d"));
}

TEST(CategoryCheck, AcceptsEveryLevelOfTheTree) {
    EXPECT_EQ(WhyNoCategory(PathParts(L"土建")), "");
    EXPECT_EQ(WhyNoCategory(PathParts(L"土建/墙")), "");
    EXPECT_EQ(WhyNoCategory(PathParts(L"土建/墙/砖内墙")), "");
    EXPECT_EQ(WhyNoCategory(PathParts(L"Revit/墙")), "");
}

TEST(CategoryCheck, NamesThePartThatDoesNotFit) {
    EXPECT_EQ(WhyNoCategory(PathParts(L"土木/墙/砖内墙")),
              "the category tree has no specialty \"土木\"");
    EXPECT_EQ(WhyNoCategory(PathParts(L"土建/板/现浇板")),
              "the category tree has no major category \"板\" in \"土建\"");
    EXPECT_EQ(WhyNoCategory(PathParts(L"土建/墙/木墙")),
              "the category tree has no minor category \"木墙\" in \"土建/墙\"");
}

}  // namespace
}  // namespace kyclash
