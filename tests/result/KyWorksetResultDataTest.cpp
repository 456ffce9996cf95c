// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <algorithm>
#include <any>
#include <random>

#include <gtest/gtest.h>

#include "result/ResultBuilder.h"
#include "support/PriorityScope.h"

using kycbtest::AxisSource;
using kycbtest::GuidsA;
using kycbtest::KyResultItem;
using kycbtest::NewItem;
using KYCOLLISION::RESULT::IKyResultData;
using KYCOLLISION::RESULT::KyWorksetResultData;

namespace {

using Guids = std::vector<std::wstring>;
using FloorKey = IKyResultData::FloorKey;
using Groups = std::vector<IKyResultData::ResultGroup>;

class KyWorksetResultDataTest : public testing::Test {
  protected:
    void Add(int project, const std::wstring& floor, const std::wstring& guid, double z = 0) {
        results_->AppendResultItem(
            NewItem(project, floor, guid, L"0,0," + std::to_wstring(z)).release());
    }
    Guids Floor(int project, const std::wstring& floor) {
        std::vector<KyResultItem*> items;
        results_->GetResultItems({project, floor}, items);
        return GuidsA(items);
    }
    Guids ByFloors(std::vector<FloorKey> floors) {
        SWorkSetFloorInfo selector;
        selector.floorList = std::move(floors);
        Groups groups;
        results_->GetResultItems({selector}, true, groups, false);
        return GuidsA(groups.at(0).second);
    }
    Guids ByHeight(double lower, double upper, std::vector<int> projects) {
        SWorkSetFloorInfo selector;
        selector.lowerHeight = lower;
        selector.upperHeight = upper;
        selector.projectIds = std::move(projects);
        Groups groups;
        results_->GetResultItems({selector}, false, groups, false);
        return GuidsA(groups.at(0).second);
    }

    const kycb::test::PriorityScope priorities_{{{L"土建/墙/砼墙", 1}, {L"土建/梁/框架梁", 2}}};
    std::unique_ptr<KyWorksetResultData> results_ =
        KyWorksetResultData::Create(KyModelTypeDefault, 42);
};

}  // namespace

TEST_F(KyWorksetResultDataTest, StartsEmptyWithItsModelInfo) {
    EXPECT_EQ(results_->GetModelInfo().modelType, KyModelTypeDefault);
    EXPECT_EQ(results_->GetModelInfo().modelId, 42);
    EXPECT_EQ(results_->GetTimeStamp(), L"");
    EXPECT_EQ(results_->GetProjectResults(1), nullptr);
    SKyModelInfo info;
    info.modelId = 43;
    results_->SetModelInfo(info);
    EXPECT_EQ(results_->GetModelInfo().modelId, 43);
}

TEST_F(KyWorksetResultDataTest, FilesItemsByTheProjectAndFloorOfComponentA) {
    auto item = NewItem(2, L"F2", L"a");
    item->SetBaseInfo(2, L"F2", L"a", 9, L"F9", L"b", L"0,0,0");
    EXPECT_TRUE(results_->AppendResultItem(item.release()));
    EXPECT_FALSE(results_->AppendResultItem(nullptr));
    EXPECT_EQ(Floor(2, L"F2"), Guids{L"a"});
    EXPECT_EQ(Floor(9, L"F9"), Guids());
    EXPECT_EQ(results_->GetProjectResults(9), nullptr);
}

TEST_F(KyWorksetResultDataTest, ItemsOfUnknownProjectsAreFiledUnderMinusOne) {
    Add(-1, L"", L"a");
    EXPECT_EQ(Floor(-1, L""), Guids{L"a"});
}

TEST_F(KyWorksetResultDataTest, InitByResultsSkipsNullAndKeepsWhatWasHeld) {
    Add(1, L"F1", L"old");
    results_->InitByResults(
        {NewItem(1, L"F1", L"a").release(), nullptr, NewItem(2, L"F1", L"b").release()});
    EXPECT_EQ(Floor(1, L"F1"), (Guids{L"old", L"a"}));
    EXPECT_EQ(Floor(2, L"F1"), Guids{L"b"});
}

TEST_F(KyWorksetResultDataTest, InitByResultsTwiceFilesEachItemTwice) {
    const std::vector<KyResultItem*> items = {NewItem(1, L"F1", L"a").release(),
                                              NewItem(1, L"F2", L"b").release()};
    results_->InitByResults(items);
    results_->InitByResults(items);
    EXPECT_EQ(Floor(1, L"F1"), (Guids{L"a", L"a"}));
    EXPECT_EQ(Floor(1, L"F2"), (Guids{L"b", L"b"}));
}

TEST_F(KyWorksetResultDataTest, TheFloorQueryAppends) {
    Add(1, L"F1", L"a");
    KyResultItem other;
    std::vector<KyResultItem*> items = {&other};
    results_->GetResultItems({1, L"F1"}, items);
    results_->GetResultItems({1, L"F9"}, items);
    results_->GetResultItems({9, L"F1"}, items);
    EXPECT_EQ(GuidsA(items), (Guids{L"", L"a"}));
}

TEST_F(KyWorksetResultDataTest, NewResultsReplaceTheirFloorAlone) {
    Add(1, L"F1", L"a");
    Add(1, L"F2", L"b");
    Add(2, L"F1", L"c");
    results_->AppendNewResults({1, L"F1"}, {NewItem(1, L"F1", L"d").release()});
    EXPECT_EQ(Floor(1, L"F1"), Guids{L"d"});
    EXPECT_EQ(Floor(1, L"F2"), Guids{L"b"});
    EXPECT_EQ(Floor(2, L"F1"), Guids{L"c"});
}

TEST_F(KyWorksetResultDataTest, NewResultsAreFiledUnderTheKeyWhateverTheItemsSay) {
    results_->AppendNewResults({5, L"F5"}, {NewItem(1, L"F1", L"a").release()});
    EXPECT_EQ(Floor(5, L"F5"), Guids{L"a"});
    EXPECT_EQ(Floor(1, L"F1"), Guids());
}

TEST_F(KyWorksetResultDataTest, AnEmptyRunLeavesTheFloorWithoutItems) {
    Add(1, L"F1", L"a");
    results_->AppendNewResults({1, L"F1"}, {});
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    results_->GetAllResultItems(all);
    ASSERT_EQ(all.size(), 1u);
    EXPECT_TRUE(all.at({1, L"F1"}).empty());
}

TEST_F(KyWorksetResultDataTest, RemovesOneFloor) {
    Add(1, L"F1", L"a");
    Add(1, L"F2", L"b");
    results_->RemoveOldResults({1, L"F1"});
    results_->RemoveOldResults({8, L"F2"});
    EXPECT_EQ(Floor(1, L"F1"), Guids());
    EXPECT_EQ(Floor(1, L"F2"), Guids{L"b"});
}

TEST_F(KyWorksetResultDataTest, AllItemsReplaceTheEntriesOfTheirFloorsAlone) {
    Add(2, L"F1", L"c");
    Add(1, L"F2", L"b");
    Add(1, L"F1", L"a");
    KyResultItem other;
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    all[{1, L"F1"}] = {&other};
    all[{7, L"F7"}] = {&other};
    results_->GetAllResultItems(all);
    EXPECT_EQ(all.size(), 4u);
    EXPECT_EQ(GuidsA(all.at({1, L"F1"})), Guids{L"a"});
    EXPECT_EQ(GuidsA(all.at({1, L"F2"})), Guids{L"b"});
    EXPECT_EQ(GuidsA(all.at({2, L"F1"})), Guids{L"c"});
    EXPECT_EQ(all.at({7, L"F7"}).size(), 1u);
}

TEST_F(KyWorksetResultDataTest, ASelectorByFloorsFollowsItsList) {
    Add(1, L"F1", L"a");
    Add(1, L"F2", L"b");
    Add(2, L"F1", L"c");
    EXPECT_EQ(ByFloors({{2, L"F1"}, {1, L"F9"}, {9, L"F1"}, {1, L"F1"}, {2, L"F1"}}),
              (Guids{L"c", L"a", L"c"}));
}

TEST_F(KyWorksetResultDataTest, ASelectorByHeightGoesThroughItsProjectsById) {
    Add(3, L"F1", L"c", 15);
    Add(1, L"F2", L"b", 20);
    Add(1, L"F1", L"a", 10.5);
    Add(1, L"F1", L"lower", 10);
    Add(2, L"F1", L"other project", 15);
    EXPECT_EQ(ByHeight(10, 20, {3, 1, 1}), (Guids{L"a", L"b", L"c"}));
}

TEST_F(KyWorksetResultDataTest, ASelectorWithoutResultsGivesAnEmptyGroup) {
    Add(1, L"F1", L"a", 5);
    EXPECT_EQ(ByHeight(0, 10, {77}), Guids());
    EXPECT_EQ(ByHeight(0, 10, {}), Guids());
    EXPECT_EQ(ByFloors({}), Guids());
}

TEST_F(KyWorksetResultDataTest, GroupsAreAppendedWithACopyOfTheirSelector) {
    Add(1, L"F1", L"a");
    SWorkSetFloorInfo first;
    first.floorList = {{1, L"F1"}};
    first.hostData = std::wstring(L"the host's");
    SWorkSetFloorInfo second;
    second.floorList = {{1, L"F2"}};
    second.upperHeight = 7.5;
    Groups groups;
    results_->GetResultItems({first, second}, true, groups, false);
    results_->GetResultItems({first}, true, groups, true);
    ASSERT_EQ(groups.size(), 3u);
    EXPECT_EQ(groups[0].first.floorList, first.floorList);
    EXPECT_EQ(std::any_cast<std::wstring>(groups[0].first.hostData), L"the host's");
    EXPECT_EQ(GuidsA(groups[0].second), Guids{L"a"});
    EXPECT_EQ(groups[1].first.upperHeight, 7.5);
    EXPECT_TRUE(groups[1].second.empty());
    EXPECT_EQ(GuidsA(groups[2].second), Guids{L"a"});
}

TEST_F(KyWorksetResultDataTest, AGroupIsSortedByPriorityOnRequest) {
    const auto add = [this](const std::wstring& guid, const SObjAttInfo& info) {
        auto item = NewItem(1, L"F1", guid);
        item->SetObjAttInfo_Main(info);
        results_->AppendResultItem(item.release());
    };
    add(L"z", {L"土建", L"墙", L"砼墙", L"Q1", L""});
    add(L"a", {L"土建", L"梁", L"框架梁", L"KL1", L""});
    add(L"y", {L"土建", L"墙", L"砼墙", L"Q1", L""});
    SWorkSetFloorInfo selector;
    selector.floorList = {{1, L"F1"}};
    Groups groups;
    results_->GetResultItems({selector}, true, groups, true);
    EXPECT_EQ(GuidsA(groups[0].second), (Guids{L"y", L"z", L"a"}));
    EXPECT_EQ(Floor(1, L"F1"), (Guids{L"z", L"a", L"y"}));
}

TEST_F(KyWorksetResultDataTest, SortedGroupsAreInTheOrderOfPriorityCompareHigh) {
    std::mt19937 random(3);
    const std::vector<SObjAttInfo> kinds = {{L"土建", L"墙", L"砼墙", L"Q1", L""},
                                            {L"土建", L"墙", L"砼墙", L"Q2", L""},
                                            {L"土建", L"梁", L"框架梁", L"KL1", L"x"},
                                            {L"电气", L"桥架", L"桥架", L"200", L"y"},
                                            {L"暖通", L"风管", L"送风管", L"200", L"z"}};
    for (int i = 0; i < 400; ++i) {
        auto item = NewItem(1, L"F1", std::to_wstring(random() % 50));
        item->SetObjAttInfo_Main(kinds[random() % kinds.size()]);
        item->SetObjAttInfo_Second(kinds[random() % kinds.size()]);
        results_->AppendResultItem(item.release());
    }
    SWorkSetFloorInfo selector;
    selector.floorList = {{1, L"F1"}};
    Groups groups;
    results_->GetResultItems({selector}, true, groups, true);
    const std::vector<KyResultItem*>& sorted = groups[0].second;
    ASSERT_EQ(sorted.size(), 400u);
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        for (std::size_t k = i + 1; k < sorted.size(); ++k) {
            ASSERT_FALSE(KyResultItem::PriorityCompareHigh(sorted[k], sorted[i])) << i << ", " << k;
        }
    }
}

TEST_F(KyWorksetResultDataTest, SortingStandsAnOrderThatGoesRoundInCircles) {
    // Kinds that only characters outside the code page tell apart rank after each other, and two
    // minor categories of a Revit kind are one path: comparisons of such items contradict.
    std::mt19937 random(4);
    const std::vector<SObjAttInfo> kinds = {{L"土建", L"\U0001F600", L"", L"", L""},
                                            {L"土建", L"\U0001F3E0", L"", L"", L""},
                                            {L"Revit", L"墙", L"一", L"n", L""},
                                            {L"Revit", L"墙", L"二", L"n", L""}};
    for (int i = 0; i < 3000; ++i) {
        auto item = NewItem(1, L"F1", std::to_wstring(random() % 50));
        item->SetObjAttInfo_Main(kinds[random() % kinds.size()]);
        item->SetObjAttInfo_Second(kinds[random() % kinds.size()]);
        results_->AppendResultItem(item.release());
    }
    SWorkSetFloorInfo selector;
    selector.floorList = {{1, L"F1"}};
    Groups groups;
    results_->GetResultItems({selector}, true, groups, true);
    Guids before = Floor(1, L"F1");
    Guids after = GuidsA(groups[0].second);
    std::sort(before.begin(), before.end());
    std::sort(after.begin(), after.end());
    EXPECT_EQ(after, before);
}

TEST_F(KyWorksetResultDataTest, ReleaseEmptiesTheTimeStampToo) {
    Add(1, L"F1", L"a");
    results_->SetTimeStamp(L"2024-05-01 10:00");
    EXPECT_EQ(results_->GetTimeStamp(), L"2024-05-01 10:00");
    results_->ReleaseResults();
    EXPECT_EQ(results_->GetTimeStamp(), L"");
    EXPECT_EQ(results_->GetProjectResults(1), nullptr);
    EXPECT_EQ(results_->GetModelInfo().modelId, 42);
}

TEST_F(KyWorksetResultDataTest, ACopySharesTheProjects) {
    Add(1, L"F1", L"a");
    KyWorksetResultData copy = *results_;
    Add(1, L"F1", L"b");
    EXPECT_EQ(copy.GetProjectResults(1), results_->GetProjectResults(1));
    results_->ReleaseResults();
    std::vector<KyResultItem*> items;
    copy.GetResultItems({1, L"F1"}, items);
    EXPECT_EQ(GuidsA(items), (Guids{L"a", L"b"}));
}

TEST_F(KyWorksetResultDataTest, AxisPositionsComeFromTheAxesOfEachFloor) {
    const AxisSource source;
    results_->InitByResults({NewItem(2, L"F1", L"b", L"-40,0,0").release(),
                             NewItem(1, L"F2", L"a", L"30,0,0").release()});
    results_->ReCatulateAxisInfo(nullptr);
    EXPECT_TRUE(source.asked.empty());
    results_->ReCatulateAxisInfo(&source);
    EXPECT_EQ(source.asked, (std::vector<FloorKey>{{1, L"F2"}, {2, L"F1"}}));
    std::vector<KyResultItem*> items;
    results_->GetResultItems({1, L"F2"}, items);
    results_->GetResultItems({2, L"F1"}, items);
    EXPECT_EQ(items.at(0)->GetAxisPos(), L"1F2(+30mm)");
    EXPECT_EQ(items.at(1)->GetAxisPos(), L"2F1(-40mm)");
}
