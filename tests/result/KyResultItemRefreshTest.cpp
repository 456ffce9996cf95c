// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include <gtest/gtest.h>

#include "support/FakeDataSource.h"
#include "support/SceneBuilder.h"

using kycb::test::FakeDataSource;
using kycb::test::SceneBuilder;
using KYCOLLISION::MODEL::WorkSetModelInfo;
using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;

namespace {

// A wall and a pipe on floor 1F of project 1, and a beam on floor 2F of project 0.
class KyResultItemRefreshTest : public testing::Test {
  protected:
    KyResultItemRefreshTest() {
        scene_.Add(L"wall", {L"土建", L"墙", L"砼外墙"}, {0, 0, 0, 1000, 200, 3000})
            .Name(L"Q1")
            .Syscode(L"")
            .Attribute(L"heighttype", L"1")
            .Attribute(L"oneheight", L"2800");
        scene_.Add(L"pipe", {L"给排水", L"管道", L"给水管"}, {400, -500, 1000, 450, 700, 1050})
            .Name(L"DN50")
            .Syscode(L"J1");
        scene_.At(0, L"2F").Add(L"beam", {L"土建", L"梁", L"框架梁"}, {0, 0, 0, 9, 9, 9});
        model_ = scene_.BuildModel();
        source_ = std::make_unique<FakeDataSource>(scene_);
    }

    static KyResultItem OldItem(int projectA, const std::wstring& floorA, const std::wstring& guidA,
                                int projectB, const std::wstring& floorB,
                                const std::wstring& guidB) {
        KyResultItem item;
        item.SetBaseInfo(projectA, floorA, guidA, projectB, floorB, guidB, L"1,2,3");
        item.SetObjAttInfo_Main({L"a1", L"a2", L"a3", L"a4", L"a5"});
        item.SetObjAttInfo_Second({L"b1", L"b2", L"b3", L"b4", L"b5"});
        item.SetHeightA(L"ha");
        item.SetHeightB(L"hb");
        return item;
    }

    KyResultItem Refreshed(KyResultItem item) const {
        item.InitResultItemAttHeightInfo(source_.get(), model_.get());
        return item;
    }

    SceneBuilder scene_;
    std::unique_ptr<WorkSetModelInfo> model_;
    std::unique_ptr<FakeDataSource> source_;
};

void ExpectOldA(const KyResultItem& item) {
    EXPECT_EQ(item.GetSpecialtyA(), L"a1");
    EXPECT_EQ(item.GetNameA(), L"a4");
    EXPECT_EQ(item.GetAttInfoA().SysCode, L"a5");
    EXPECT_EQ(item.GetHeightA(), L"ha");
}

void ExpectOldB(const KyResultItem& item) {
    EXPECT_EQ(item.GetSpecialtyB(), L"b1");
    EXPECT_EQ(item.GetNameB(), L"b4");
    EXPECT_EQ(item.GetAttInfoB().SysCode, L"b5");
    EXPECT_EQ(item.GetHeightB(), L"hb");
}

}  // namespace

TEST_F(KyResultItemRefreshTest, TakesBothSidesFromTheModel) {
    const KyResultItem item = Refreshed(OldItem(1, L"1F", L"wall", 1, L"1F", L"pipe"));
    EXPECT_EQ(item.GetSpecialtyA(), L"土建");
    EXPECT_EQ(item.GetCategoryA(), L"墙");
    EXPECT_EQ(item.GetSubcategoryA(), L"砼外墙");
    EXPECT_EQ(item.GetNameA(), L"Q1");
    EXPECT_EQ(item.GetAttInfoA().SysCode, L"");
    EXPECT_EQ(item.GetSpecialtyB(), L"给排水");
    EXPECT_EQ(item.GetCategoryB(), L"管道");
    EXPECT_EQ(item.GetSubcategoryB(), L"给水管");
    EXPECT_EQ(item.GetNameB(), L"DN50");
    EXPECT_EQ(item.GetSysCodeB(), L"J1");
}

TEST_F(KyResultItemRefreshTest, TakesTheHeightsThatTheComponentsHaveNow) {
    const KyResultItem item = Refreshed(OldItem(1, L"1F", L"wall", 1, L"1F", L"pipe"));
    EXPECT_EQ(item.GetHeightA(), L"2800");
    EXPECT_EQ(item.GetHeightB(), L"") << "the pipe has no height attributes";
}

TEST_F(KyResultItemRefreshTest, ASideThatIsNotInTheModelKeepsItsValues) {
    const KyResultItem onlyB = Refreshed(OldItem(1, L"1F", L"gone", 1, L"1F", L"wall"));
    ExpectOldA(onlyB);
    EXPECT_EQ(onlyB.GetNameB(), L"Q1");
    const KyResultItem onlyA = Refreshed(OldItem(1, L"1F", L"wall", 1, L"9F", L"pipe"));
    EXPECT_EQ(onlyA.GetNameA(), L"Q1");
    ExpectOldB(onlyA);
}

TEST_F(KyResultItemRefreshTest, ASideWithoutPositiveProjectFloorOrGuidIsPassedOver) {
    ASSERT_NE(model_->GetObjectModelInfo({0, L"2F"}, L"beam"), nullptr);
    ExpectOldA(Refreshed(OldItem(0, L"2F", L"beam", 1, L"1F", L"pipe")));
    ExpectOldB(Refreshed(OldItem(1, L"1F", L"pipe", 0, L"2F", L"beam")));
    ExpectOldA(Refreshed(OldItem(-1, L"1F", L"wall", 1, L"1F", L"pipe")));
    ExpectOldA(Refreshed(OldItem(1, L"", L"wall", 1, L"1F", L"pipe")));
    ExpectOldA(Refreshed(OldItem(1, L"1F", L"", 1, L"1F", L"pipe")));
}

TEST_F(KyResultItemRefreshTest, NullArgumentsChangeNothing) {
    KyResultItem item = OldItem(1, L"1F", L"wall", 1, L"1F", L"pipe");
    item.InitResultItemAttHeightInfo(nullptr, model_.get());
    ExpectOldA(item);
    item.InitResultItemAttHeightInfo(source_.get(), nullptr);
    ExpectOldA(item);
    ExpectOldB(item);
}

TEST_F(KyResultItemRefreshTest, TheRestOfTheItemStays) {
    KyResultItem old = OldItem(1, L"1F", L"wall", 1, L"1F", L"pipe");
    old.SetRemark(L"remark");
    old.SetResultId(L"id");
    const KyResultItem item = Refreshed(old);
    EXPECT_EQ(item.GetRemark(), L"remark");
    EXPECT_EQ(item.GetResultId(), L"id");
    EXPECT_TRUE(item.IsSameResult_AllInfo(&old));
}

TEST_F(KyResultItemRefreshTest, ContainersRefreshEveryItem) {
    const auto results = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    results->AppendResultItem(new KyResultItem(OldItem(1, L"1F", L"wall", 1, L"1F", L"pipe")));
    results->AppendResultItem(new KyResultItem(OldItem(1, L"8F", L"x", 1, L"1F", L"wall")));
    results->InitResultItemAttHeightInfo(source_.get(), model_.get());
    std::vector<KyResultItem*> items;
    results->GetResultItems({1, L"1F"}, items);
    results->GetResultItems({1, L"8F"}, items);
    EXPECT_EQ(items.at(0)->GetNameA(), L"Q1");
    EXPECT_EQ(items.at(1)->GetNameB(), L"Q1");
}
