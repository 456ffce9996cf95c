// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <gmock/gmock.h>

#include "ResultItems.h"
#include "desk/core/ResultMerge.h"

using desk::FloorKey;
using desk::MergeResults;
using desk::ResultsByFloor;
using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const FloorKey kF1(1, L"F1");
const FloorKey kF2(1, L"F2");

class ResultMerge : public testing::Test {
  protected:
    static KyResultItem* New(const std::wstring& guidA, const std::wstring& guidB,
                             const FloorKey& floor = kF1) {
        ItemPlan plan;
        plan.guidA = guidA;
        plan.guidB = guidB;
        plan.floorA = plan.floorB = floor.second;
        return MakeItem(plan).release();
    }

    std::vector<std::wstring> PairsOn(const FloorKey& floor) {
        std::vector<KyResultItem*> items;
        container_->GetResultItems(floor, items);
        std::vector<std::wstring> pairs;
        for (const KyResultItem* item : items)
            pairs.push_back(item->GetObjGuidA() + item->GetObjGuidB());
        return pairs;
    }

    KyResultItem& First(const FloorKey& floor) {
        std::vector<KyResultItem*> items;
        container_->GetResultItems(floor, items);
        return *items.at(0);
    }

    std::unique_ptr<KyWorksetResultData> container_ =
        KyWorksetResultData::Create(KyModelTypeDefault, 0);
};

}  // namespace

TEST_F(ResultMerge, ReplacesTheResultsOfCompleteFloors) {
    MergeResults(*container_, {{kF1, {New(L"a", L"b"), New(L"a", L"c")}}}, {{kF1}, {}});
    EXPECT_THAT(PairsOn(kF1), ElementsAre(L"ab", L"ac"));
    MergeResults(*container_, {{kF1, {New(L"a", L"d")}}}, {{kF1}, {}});
    EXPECT_THAT(PairsOn(kF1), ElementsAre(L"ad"));
}

TEST_F(ResultMerge, EmptiesACompleteFloorThatHasNoClashesAnyMore) {
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{kF1}, {}});
    MergeResults(*container_, {}, {{kF1}, {}});
    EXPECT_THAT(PairsOn(kF1), IsEmpty());
}

TEST_F(ResultMerge, LeavesFloorsAloneThatWereNotChecked) {
    MergeResults(*container_, {{kF2, {New(L"x", L"y", kF2)}}}, {{kF2}, {}});
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{kF1}, {}});
    EXPECT_THAT(PairsOn(kF2), ElementsAre(L"xy"));
}

TEST_F(ResultMerge, AddsWhatIsNewOnFloorsThatWereNotChecked) {
    MergeResults(*container_, {{kF2, {New(L"x", L"y", kF2)}}}, {{kF2}, {}});
    First(kF2).SetRemark(L"kept");
    MergeResults(*container_, {{kF2, {New(L"x", L"y", kF2), New(L"x", L"z", kF2)}}}, {{kF1}, {}});
    EXPECT_THAT(PairsOn(kF2), ElementsAre(L"xy", L"xz"));
    EXPECT_EQ(First(kF2).GetRemark(), L"kept");
}

TEST_F(ResultMerge, KeepsTheOldResultsOfAFloorThatAStopLeftIncomplete) {
    MergeResults(*container_, {{kF1, {New(L"a", L"b"), New(L"a", L"c")}}}, {{kF1}, {}});
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{}, {kF1}});
    EXPECT_THAT(PairsOn(kF1), ElementsAre(L"ab", L"ac"));
}

TEST_F(ResultMerge, CarriesTheUsersHandlingOver) {
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{kF1}, {}});
    KyResultItem& old = First(kF1);
    old.SetDisposeState(3);
    old.SetRemark(L"remark");
    old.SetViewport(L"view");
    old.SetPicture(L"uuid", L"md5", 5000000000);
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{kF1}, {}});
    const KyResultItem& item = First(kF1);
    EXPECT_EQ(item.GetDisposeState(), 3);
    EXPECT_EQ(item.GetRemark(), L"remark");
    EXPECT_EQ(item.GetViewport(), L"view");
    EXPECT_EQ(item.GetPicuuid(), L"uuid");
    EXPECT_EQ(item.GetPicmd5(), L"md5");
    EXPECT_EQ(item.GetPicsize(), 5000000000);
}

TEST_F(ResultMerge, CarriesTheHandlingOverToASwappedPair) {
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{kF1}, {}});
    First(kF1).SetRemark(L"remark");
    MergeResults(*container_, {{kF1, {New(L"b", L"a")}}}, {{kF1}, {}});
    EXPECT_EQ(First(kF1).GetRemark(), L"remark");
}

TEST_F(ResultMerge, TellsTheSamePairOnAnotherFloorApart) {
    MergeResults(*container_, {{kF1, {New(L"a", L"b")}}}, {{kF1}, {}});
    First(kF1).SetRemark(L"remark");
    MergeResults(*container_, {{kF2, {New(L"a", L"b", kF2)}}}, {{kF2}, {}});
    EXPECT_EQ(First(kF2).GetRemark(), L"");
}
