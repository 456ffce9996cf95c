// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <random>

#include <gmock/gmock.h>

#include "ResultItems.h"
#include "desk/core/PriorityOrder.h"
#include "support/PriorityScope.h"

using desk::SortByPriority;
using KYCOLLISION::RESULT::KyResultItem;

// Kinds of equal and different priority, names that the code page cannot tell apart, equal ones.
TEST(PriorityOrder, AgreesWithTheLibrarysComparisonOnRandomResults) {
    const kycb::test::PriorityScope priorities(
        {{L"s0/c0/k0", 1}, {L"s1/c0/k1", 5}, {L"s0/c1/k1", 5}});
    std::mt19937 random(42);
    const auto pick = [&](const std::vector<std::wstring>& from) {
        return from[random() % from.size()];
    };
    const auto component = [&] {
        return SObjAttInfo{pick({L"s0", L"s1"}), pick({L"c0", L"c1"}), pick({L"k0", L"k1"}),
                           pick({L"n", L"m", L"\U0001F600", L"\U0001F601"}), L""};
    };
    std::vector<std::unique_ptr<KyResultItem>> items;
    for (int i = 0; i < 400; ++i) {
        ItemPlan plan;
        plan.guidA = pick({L"g0", L"g1", L"g2", L"g3"});
        plan.main = component();
        plan.second = component();
        items.push_back(MakeItem(plan));
    }
    std::vector<KyResultItem*> sorted;
    for (const auto& item : items)
        sorted.push_back(item.get());
    std::vector<KyResultItem*> given = sorted;
    SortByPriority(sorted);

    EXPECT_THAT(sorted, testing::UnorderedElementsAreArray(given));
    int strict = 0;
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        EXPECT_FALSE(KyResultItem::PriorityCompareHigh(sorted[i], sorted[i - 1])) << i;
        if (KyResultItem::PriorityCompareHigh(sorted[i - 1], sorted[i])) ++strict;
    }
    EXPECT_GT(strict, 100);
    EXPECT_LT(strict, 399);
}

TEST(PriorityOrder, KeepsTheOrderOfEqualResults) {
    ItemPlan plan;
    const auto first = MakeItem(plan);
    const auto second = MakeItem(plan);
    std::vector<KyResultItem*> items{second.get(), first.get()};
    SortByPriority(items);
    EXPECT_THAT(items, testing::ElementsAre(second.get(), first.get()));
}

TEST(PriorityOrder, SortsNothing) {
    std::vector<KyResultItem*> none;
    SortByPriority(none);
    EXPECT_TRUE(none.empty());
}
