// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "ResultItems.h"
#include "desk/core/ResultRows.h"
#include "support/PriorityScope.h"

using desk::KindChoice;
using desk::ResultColumn;
using desk::ResultRows;
using desk::SortDirection;
using testing::ElementsAre;
using testing::Pair;

namespace {

class ResultRowsTest : public testing::Test {
  protected:
    ResultRowsTest() {
        Add(L"g1", L"F2", L"beta");
        Add(L"g2", L"F1", L"alpha");
        Add(L"g3", L"Attic", L"alpha");
        rows_.SetItems(Items(), {L"F1", L"F2"});
    }

    void Add(const std::wstring& guid, const std::wstring& floor, const std::wstring& secondName) {
        ItemPlan plan;
        plan.guidA = guid;
        plan.floorA = floor;
        plan.main = {L"s", L"c", L"k", L"n", L""};
        plan.second = {L"t", L"d", L"k", secondName, L""};
        items_.push_back(MakeItem(plan));
    }

    std::vector<ResultRows::Item*> Items() const {
        std::vector<ResultRows::Item*> items;
        for (const auto& item : items_)
            items.push_back(item.get());
        return items;
    }

    std::vector<std::wstring> Shown() const {
        std::vector<std::wstring> guids;
        for (std::size_t row = 0; row < rows_.Count(); ++row)
            guids.push_back(rows_.At(row).GetObjGuidA());
        return guids;
    }

    kycb::test::PriorityScope priorities_{{{L"s/c/k", 1}}};
    std::vector<std::unique_ptr<ResultRows::Item>> items_;
    ResultRows rows_;
};

}  // namespace

TEST_F(ResultRowsTest, StartInPriorityOrder) {
    EXPECT_THAT(Shown(), ElementsAre(L"g2", L"g3", L"g1"));
    EXPECT_EQ(rows_.TotalCount(), 3U);
}

TEST_F(ResultRowsTest, SortByColumnAndKeepPriorityAmongEquals) {
    rows_.SetOrder({ResultColumn::kSecondName, SortDirection::kDescending});
    EXPECT_THAT(Shown(), ElementsAre(L"g1", L"g2", L"g3"));
    rows_.SetOrder({ResultColumn::kSecondName, SortDirection::kAscending});
    EXPECT_THAT(Shown(), ElementsAre(L"g2", L"g3", L"g1"));
}

TEST_F(ResultRowsTest, SortKindsAsTheyAreCalledOnTheScreen) {
    items_[0]->SetObjAttInfo_Main({L"s", L"c", L"k1", L"n", L""});
    items_[1]->SetObjAttInfo_Main({L"s", L"c", L"k2", L"n", L""});
    items_[2]->SetObjAttInfo_Main({L"s", L"c", L"", L"n", L""});
    rows_.SetTranslator([](const std::wstring& name) {
        return name == L"k1" ? L"wall" : name == L"k2" ? L"beam" : L"slab";
    });
    rows_.SetOrder({ResultColumn::kMainKind, SortDirection::kAscending});
    EXPECT_THAT(Shown(), ElementsAre(L"g2", L"g3", L"g1"));
}

TEST(KindText, IsTheMinorCategoryOrElseTheMajorOne) {
    EXPECT_EQ(desk::KindText({L"s", L"c", L"k", L"n", L""}), L"k");
    EXPECT_EQ(desk::KindText({L"s", L"c", L"", L"n", L""}), L"c");
}

TEST_F(ResultRowsTest, SortFloorsAsTheBuildingHasThem) {
    rows_.SetOrder({ResultColumn::kFloor, SortDirection::kAscending});
    EXPECT_THAT(Shown(), ElementsAre(L"g2", L"g1", L"g3"));
    EXPECT_THAT(rows_.Floors(), ElementsAre(L"F1", L"F2", L"Attic"));
}

TEST_F(ResultRowsTest, ReturnToPriorityOrder) {
    rows_.SetOrder({ResultColumn::kFloor, SortDirection::kAscending});
    rows_.SetOrder({});
    EXPECT_THAT(Shown(), ElementsAre(L"g2", L"g3", L"g1"));
    rows_.SetOrder({std::nullopt, SortDirection::kDescending});
    EXPECT_THAT(Shown(), ElementsAre(L"g1", L"g3", L"g2"));
}

TEST_F(ResultRowsTest, FilterAndCount) {
    items_[0]->SetDisposeState(2);
    desk::ResultFilter filter;
    filter.text = L"ALPHA";
    rows_.SetFilter(filter);
    EXPECT_THAT(Shown(), ElementsAre(L"g2", L"g3"));
    EXPECT_THAT(rows_.CountByState(), ElementsAre(Pair(0, 2U)));
    rows_.SetFilter({});
    EXPECT_THAT(rows_.CountByState(), ElementsAre(Pair(0, 2U), Pair(2, 1U)));
}

TEST_F(ResultRowsTest, FindRemarksAsTheyAreNow) {
    desk::ResultFilter filter;
    filter.text = L"urgent";
    rows_.SetFilter(filter);
    EXPECT_EQ(rows_.Count(), 0U);
    rows_.SetFilter({});
    rows_.At(1).SetRemark(L"Urgent!");
    rows_.NoteEdit(1);
    rows_.SetFilter(filter);
    EXPECT_THAT(Shown(), ElementsAre(L"g3"));
}

TEST_F(ResultRowsTest, KeepAnEditedRowUntilTheFilterIsSetAgain) {
    desk::ResultFilter filter;
    filter.state = 0;
    rows_.SetFilter(filter);
    rows_.At(0).SetDisposeState(2);
    rows_.NoteEdit(0);
    EXPECT_EQ(rows_.Count(), 3U);
    rows_.SetFilter(filter);
    EXPECT_EQ(rows_.Count(), 2U);
}

TEST_F(ResultRowsTest, KnowTheRowOfAResult) {
    EXPECT_EQ(rows_.RowOf(items_[0].get()), 2U);
    desk::ResultFilter filter;
    filter.text = L"alpha";
    rows_.SetFilter(filter);
    EXPECT_EQ(rows_.RowOf(items_[0].get()), std::nullopt);
}

TEST_F(ResultRowsTest, KnowTheRowOfAPairOfComponents) {
    const desk::PairKey pair = desk::PairOf(*items_[0]);
    EXPECT_EQ(rows_.RowOf(pair), 2U);
    EXPECT_EQ(rows_.RowOf(desk::PairKey()), std::nullopt);
}

TEST_F(ResultRowsTest, OfferTheKindsThatOccur) {
    EXPECT_THAT(rows_.Kinds(), ElementsAre(KindChoice{L"s", L""}, KindChoice{L"s", L"c"},
                                           KindChoice{L"t", L""}, KindChoice{L"t", L"d"}));
}
