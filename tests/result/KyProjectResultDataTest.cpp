// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyProjectResultData.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <gtest/gtest.h>

#include "result/ResultBuilder.h"

using kycbtest::AxisSource;
using kycbtest::GuidsA;
using kycbtest::KyResultItem;
using kycbtest::NewItem;
using KYCOLLISION::RESULT::KyProjectResultData;
using KYCOLLISION::RESULT::KyWorksetResultData;

namespace {

using Guids = std::vector<std::wstring>;
using FloorKey = KyProjectResultData::FloorKey;

// Project 3 of a work set, which is the only one to create projects.
class KyProjectResultDataTest : public testing::Test {
  protected:
    KyProjectResultDataTest() : workset_(KyWorksetResultData::Create(KyModelTypeDefault, 1)) {
        workset_->AppendNewResults({3, L"F1"}, {NewItem(3, L"F1", L"a", L"0,0,10").release()});
        project_ = workset_->GetProjectResults(3);
    }

    Guids ByAtt(const FloorKey& key) const {
        std::vector<KyResultItem*> items;
        project_->GetResultItems_byAtt(key, items);
        return GuidsA(items);
    }

    std::unique_ptr<KyWorksetResultData> workset_;
    KyProjectResultData* project_ = nullptr;
};

}  // namespace

TEST_F(KyProjectResultDataTest, KnowsItsId) {
    EXPECT_EQ(project_->GetProjectId(), 3);
}

TEST_F(KyProjectResultDataTest, NewResultsReplaceThoseOfTheirFloorAlone) {
    project_->AppendNewResults({3, L"F2"}, {NewItem(3, L"F2", L"b").release()});
    project_->AppendNewResults({3, L"F1"}, {NewItem(3, L"F1", L"c").release()});
    EXPECT_EQ(ByAtt({3, L"F1"}), Guids{L"c"});
    EXPECT_EQ(ByAtt({3, L"F2"}), Guids{L"b"});
}

TEST_F(KyProjectResultDataTest, NewResultsOfAnotherProjectStayTheCallers) {
    const auto item = NewItem(4, L"F1", L"b");
    project_->AppendNewResults({4, L"F1"}, {item.get()});
    EXPECT_EQ(ByAtt({3, L"F1"}), Guids{L"a"});
    EXPECT_EQ(ByAtt({4, L"F1"}), Guids());
    EXPECT_EQ(item->GetObjGuidA(), L"b");
}

TEST_F(KyProjectResultDataTest, RemovesOneFloor) {
    project_->RemoveOldResults({4, L"F1"});
    project_->RemoveOldResults({3, L"F9"});
    EXPECT_EQ(ByAtt({3, L"F1"}), Guids{L"a"});
    project_->RemoveOldResults({3, L"F1"});
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    project_->GetAllResultItems(all);
    EXPECT_TRUE(all.empty());
}

TEST_F(KyProjectResultDataTest, QueryByFloorReplacesTheList) {
    KyResultItem other;
    std::vector<KyResultItem*> items = {&other};
    project_->GetResultItems_byAtt({3, L"F1"}, items);
    EXPECT_EQ(GuidsA(items), Guids{L"a"});
}

TEST_F(KyProjectResultDataTest, QueryForAnAbsentFloorLeavesTheListAlone) {
    KyResultItem other;
    std::vector<KyResultItem*> items = {&other};
    project_->GetResultItems_byAtt({3, L"F9"}, items);
    project_->GetResultItems_byAtt({4, L"F1"}, items);
    EXPECT_EQ(items, std::vector<KyResultItem*>{&other});
}

TEST_F(KyProjectResultDataTest, HeightQueryGoesThroughTheFloorsByName) {
    project_->AppendResultItem(NewItem(3, L"F0", L"b", L"0,0,11").release());
    project_->AppendResultItem(NewItem(3, L"F2", L"c", L"0,0,12").release());
    project_->AppendResultItem(NewItem(3, L"F0", L"d", L"0,0,99").release());
    KyResultItem other;
    std::vector<KyResultItem*> items = {&other};
    project_->GetResultItems_byHeight(0, 50, items);
    EXPECT_EQ(GuidsA(items), (Guids{L"", L"b", L"a", L"c"}));
}

TEST_F(KyProjectResultDataTest, FilesAnItemUnderItsFloorWhateverItsProject) {
    EXPECT_FALSE(project_->AppendResultItem(nullptr));
    EXPECT_TRUE(project_->AppendResultItem(NewItem(99, L"F7", L"x").release()));
    EXPECT_EQ(ByAtt({3, L"F7"}), Guids{L"x"});
}

TEST_F(KyProjectResultDataTest, AllItemsReplaceTheEntriesOfTheirFloorsAlone) {
    KyResultItem other;
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    all[{3, L"F1"}] = {&other, &other};
    all[{3, L"F9"}] = {&other};
    project_->AppendNewResults({3, L"F2"}, {});
    project_->GetAllResultItems(all);
    EXPECT_EQ(GuidsA(all.at({3, L"F1"})), Guids{L"a"});
    EXPECT_TRUE(all.at({3, L"F2"}).empty());
    EXPECT_EQ(all.at({3, L"F9"}).size(), 1u);
}

TEST_F(KyProjectResultDataTest, ReleaseRemovesTheFloors) {
    project_->ReleaseResults();
    std::map<FloorKey, std::vector<KyResultItem*>> all;
    project_->GetAllResultItems(all);
    EXPECT_TRUE(all.empty());
}

TEST_F(KyProjectResultDataTest, ACopySharesTheFloors) {
    const KyProjectResultData copy = *project_;
    project_->AppendResultItem(NewItem(3, L"F1", L"b").release());
    std::vector<KyResultItem*> items;
    copy.GetResultItems_byAtt({3, L"F1"}, items);
    EXPECT_EQ(copy.GetProjectId(), 3);
    EXPECT_EQ(GuidsA(items), (Guids{L"a", L"b"}));
    workset_.reset();
    items.clear();
    copy.GetResultItems_byAtt({3, L"F1"}, items);
    EXPECT_EQ(GuidsA(items), (Guids{L"a", L"b"}));
}

TEST_F(KyProjectResultDataTest, AsksForTheAxesOfEachFloorWithItsOwnId) {
    const AxisSource source;
    project_->AppendResultItem(NewItem(99, L"F0", L"b", L"5,0,0").release());
    project_->ReCatulateAxisInfo(&source);
    EXPECT_EQ(source.asked, (std::vector<FloorKey>{{3, L"F0"}, {3, L"F1"}}));
}
