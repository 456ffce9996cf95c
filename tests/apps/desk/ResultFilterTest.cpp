// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "ResultItems.h"
#include "desk/core/ResultFilter.h"

using desk::ClashElevation;
using desk::MatchesFields;
using desk::MatchesWords;
using desk::ResultFilter;
using desk::SearchableText;

namespace {

ItemPlan DuctAndBeam() {
    ItemPlan plan;
    plan.position = L"10,20,3000";
    plan.main = {L"土建", L"梁", L"框架梁", L"Beam 7", L""};
    plan.second = {L"暖通", L"风管", L"送风管", L"Duct Ö", L"SA-1"};
    return plan;
}

}  // namespace

TEST(ResultFilter, LetsEverythingThroughWhenItIsEmpty) {
    EXPECT_TRUE(MatchesFields({}, *MakeItem(DuctAndBeam())));
    EXPECT_TRUE(MatchesWords("", ""));
}

TEST(ResultFilter, FiltersByState) {
    const auto item = MakeItem(DuctAndBeam());
    item->SetDisposeState(2);
    ResultFilter filter;
    filter.state = 2;
    EXPECT_TRUE(MatchesFields(filter, *item));
    filter.state = 0;
    EXPECT_FALSE(MatchesFields(filter, *item));
}

TEST(ResultFilter, FiltersByTheMainComponentsFloor) {
    ItemPlan plan = DuctAndBeam();
    plan.floorB = L"F2";
    ResultFilter filter;
    filter.floor = L"F1";
    EXPECT_TRUE(MatchesFields(filter, *MakeItem(plan)));
    filter.floor = L"F2";
    EXPECT_FALSE(MatchesFields(filter, *MakeItem(plan)));
}

TEST(ResultFilter, FiltersByTheKindOfEitherComponent) {
    const auto item = MakeItem(DuctAndBeam());
    const auto admits = [&](const std::wstring& specialty, const std::wstring& category) {
        ResultFilter filter;
        filter.kind = {specialty, category};
        return MatchesFields(filter, *item);
    };
    EXPECT_TRUE(admits(L"土建", L""));
    EXPECT_TRUE(admits(L"暖通", L""));
    EXPECT_TRUE(admits(L"暖通", L"风管"));
    EXPECT_FALSE(admits(L"暖通", L"水管"));
    EXPECT_FALSE(admits(L"土建", L"风管"));
    EXPECT_FALSE(admits(L"消防", L""));
}

// The bounds are those of the library's own height bands: above, up to and including.
TEST(ResultFilter, FiltersByAHeightBandOpenBelowAndClosedAbove) {
    const auto item = MakeItem(DuctAndBeam());
    const auto admits = [&](std::optional<double> above, std::optional<double> upTo) {
        ResultFilter filter;
        filter.above = above;
        filter.upTo = upTo;
        return MatchesFields(filter, *item);
    };
    EXPECT_TRUE(admits(2999, std::nullopt));
    EXPECT_FALSE(admits(3000, std::nullopt));
    EXPECT_TRUE(admits(std::nullopt, 3000));
    EXPECT_FALSE(admits(std::nullopt, 2999));
    EXPECT_TRUE(admits(2000, 4000));
    EXPECT_FALSE(admits(4000, 2000));
}

TEST(ResultFilter, LeavesPositionsThatAreNoPointsOutOfHeightBandsOnly) {
    ItemPlan plan = DuctAndBeam();
    plan.position = L"x,y,z";
    const auto item = MakeItem(plan);
    EXPECT_EQ(ClashElevation(*item), std::nullopt);
    EXPECT_TRUE(MatchesFields({}, *item));
    ResultFilter filter;
    filter.above = -1e9;
    EXPECT_FALSE(MatchesFields(filter, *item));
}

TEST(ResultFilter, FindsWordsInAnyOrderAndCase) {
    const std::string text = SearchableText(*MakeItem(DuctAndBeam()));
    EXPECT_TRUE(MatchesWords("beam", text));
    EXPECT_TRUE(MatchesWords("duct beam", text));
    EXPECT_TRUE(MatchesWords("  beam   7 ", text));
    EXPECT_TRUE(MatchesWords("ö", text));
    EXPECT_TRUE(MatchesWords("sa-1 风管", text));
    EXPECT_FALSE(MatchesWords("beam 8", text));
    EXPECT_FALSE(MatchesWords("pipe", text));
}

TEST(ResultFilter, FindsKindsByTheirTranslationToo) {
    const auto item = MakeItem(DuctAndBeam());
    const std::string text = SearchableText(
        *item, [](const std::wstring& name) { return name == L"风管" ? L"Air duct" : name; });
    EXPECT_TRUE(MatchesWords("air", text));
    EXPECT_TRUE(MatchesWords("风管", text));
}
