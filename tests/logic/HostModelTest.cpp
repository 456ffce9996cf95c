// SPDX-License-Identifier: Apache-2.0
// The driver before a model of the host's own making: what it asks for, of whom and in which order.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/model/ICollisionModel.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <functional>
#include <string>

#include <gmock/gmock.h>

#include "logic/DriverOutput.h"
#include "support/FakeDataSource.h"
#include "support/RuleBuilder.h"
#include "support/StopFlag.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using KYCOLLISION::RESULT::CExistingHole;
using KYCOLLISION::RESULT::KyResultItem;
using ::testing::ElementsAre;

constexpr int kPerFloor = 3;

std::string Text(const std::wstring& ascii) {
    return {ascii.begin(), ascii.end()};
}

std::string Text(const FloorKey& key) {
    return std::to_string(key.first) + "/" + Text(key.second);
}

// Writes down each call, with the driver's progress at that moment. Every floor has three
// components, of which two are checked; floor "none" has no results and no openings.
class LoggingModel : public ICollisionModel {
  public:
    LoggingModel(CCollisionCheck& check, std::vector<std::string>& log)
        : check_(check), log_(log) {}

    std::function<void()> duringCheck = [] {};

    void ReleaseModel() override { Log("release"); }
    void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d&,
                     std::vector<ObjectModelInfo*>&) override {
        Log("query");
    }
    ObjectModelInfo* GetObjectModelInfo(const FloorKey&, std::wstring) const override {
        Log("find");
        return nullptr;
    }
    void AnalyseBoxRelated(const FloorKey& key) override { Log("analyse " + Text(key)); }
    void AnalyseBoxRelated() override { Log("analyse"); }
    void CollisionCheck(IModelDataSource* source, const FloorKey& key, int& count) override {
        Log("check " + Text(key), source);
        const int before = check_.GetCheckedObjectNum();
        count += 2;
        EXPECT_EQ(check_.GetCheckedObjectNum(), before + 2);  // what is counted here can be polled
        duringCheck();
    }
    int GetAllObjectNum(const FloorKey& key) override {
        Log("count " + Text(key));
        return kPerFloor;
    }
    void ClearCollisionResultData() override { Log("clear"); }
    void ResetModelByCollisionRule(KYCOLLISION::Rule::KyCollisionRuleMgr* rules) override {
        EXPECT_EQ(rules, check_.GetCollisionRule());
        Log("bind");
    }
    void GetFloorCollisionResult(IModelDataSource* source, const FloorKey& key,
                                 std::vector<KyResultItem*>& items) override {
        Log("results " + Text(key), source);
        EXPECT_TRUE(items.empty());
        if (key.second != L"none") items.push_back(new KyResultItem);
    }
    void GetFloorExistingHoles(IModelDataSource* source, const FloorKey& key,
                               std::vector<std::shared_ptr<CExistingHole>>& holes) const override {
        Log("holes " + Text(key), source);
        EXPECT_TRUE(holes.empty());
        if (key.second != L"none") holes.push_back(std::make_shared<CExistingHole>());
    }
    int GetFloorResultTempNum(IModelDataSource* source, const FloorKey& key) override {
        Log("count results " + Text(key), source);
        return key.second == L"none" ? 0 : 5;
    }
    const SKyModelInfo& GetModelInfo() const override { return info_; }
    bool IsSupportHole() const override { return true; }

  private:
    void Log(const std::string& call) const {
        log_.push_back(call + " [" + Text(check_.GetCurCheckFloor()) + " " +
                       std::to_string(check_.GetCheckedObjectNum()) + "/" +
                       std::to_string(check_.GetAllCheckObjectNum()) + "]");
    }
    void Log(const std::string& call, const IModelDataSource* source) const {
        EXPECT_EQ(source, check_.GetDataSource());
        Log(call);
    }

    CCollisionCheck& check_;
    std::vector<std::string>& log_;
    SKyModelInfo info_;
};

class SourceOfLoggingModels : public FakeDataSource {
  public:
    SourceOfLoggingModels(CCollisionCheck& check, std::vector<std::string>& log)
        : FakeDataSource(SceneBuilder()), check_(check), log_(log) {}
    ICollisionModel* CreateCollisionModel() override { return new LoggingModel(check_, log_); }

  private:
    CCollisionCheck& check_;
    std::vector<std::string>& log_;
};

class HostModel : public ::testing::Test {
  protected:
    StopFlag stop_;
    std::vector<std::string> log_;
    CCollisionCheck check_;

    void SetUp() override {
        check_.SetDataSource(new SourceOfLoggingModels(check_, log_));
        check_.SetCollisionRule(HardRulesFor({}).release());
        ASSERT_TRUE(check_.InitCollisionModel());
        EXPECT_THAT(log_, ElementsAre("analyse [ 0/0]"));
        log_.clear();
    }
    LoggingModel& Model() { return static_cast<LoggingModel&>(*check_.GetCollisionModel()); }
};

const std::vector<SCollisionFloor> kTwoFloors = {{L"lower", {}, {{1, L"1F"}, {2, L"1F"}}},
                                                 {L"upper", {}, {{1, L"2F"}}}};

TEST_F(HostModel, IsClearedAndBoundThenCountedAndCheckedFloorByFloor) {
    EXPECT_EQ(check_.CollisionCheck(kTwoFloors), CHECK_SUCCESS);
    const std::vector<std::string> once = {
        "clear [ 0/0]",           "bind [ 0/0]",
        "count 1/1F [lower 0/0]", "count 2/1F [lower 0/0]",
        "check 1/1F [lower 0/6]", "check 2/1F [lower 2/6]",
        "count 1/2F [upper 4/6]", "check 1/2F [upper 0/3]",
    };
    EXPECT_EQ(log_, once);
    log_.clear();
    EXPECT_EQ(check_.CollisionCheck(kTwoFloors), CHECK_SUCCESS);  // begins from nothing again
    EXPECT_EQ(log_, once);
}

TEST_F(HostModel, IsLeftAfterTheKeyDuringWhichTheFlagIsSet) {
    Model().duringCheck = [this] { stop_.Set(); };
    EXPECT_EQ(check_.CollisionCheck(kTwoFloors), CHECK_STOPPED);
    EXPECT_EQ(log_.back(), "check 1/1F [lower 0/6]");
    EXPECT_EQ(check_.GetCheckedObjectNum(), 2);
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 6);
    EXPECT_EQ(check_.GetCurCheckFloor(), L"lower");
    EXPECT_FALSE(check_.CheckIsSuccessDone());
    EXPECT_TRUE(CCollisionCheck::s_bStopCheck);
}

TEST_F(HostModel, IsNotAskedForAnythingWhileThePrerequisitesAreIncomplete) {
    check_.SetCollisionRule(nullptr);
    EXPECT_EQ(check_.CollisionCheck(kTwoFloors), CHECK_NO_RULE);
    check_.SetCollisionRule(HardRulesFor({}).release());
    check_.SetDataSource(nullptr);
    EXPECT_EQ(check_.CollisionCheck(kTwoFloors), CHECK_NO_DATASOURCE);
    EXPECT_THAT(log_, ::testing::IsEmpty());
}

TEST_F(HostModel, IsClearedBeforeItIsBoundOnRequest) {
    check_.ResetCollisionTempData();
    EXPECT_THAT(log_, ElementsAre("clear [ 0/0]", "bind [ 0/0]"));
}

TEST_F(HostModel, IsAnalysedOnRequest) {
    check_.AnalyseBoxRelated();
    EXPECT_THAT(log_, ElementsAre("analyse [ 0/0]"));
}

TEST_F(HostModel, CountsEachKeyInTheGivenOrder) {
    EXPECT_EQ(check_.GetAllObjectNum({{2, L"b"}, {1, L"a"}, {2, L"b"}}), 3 * kPerFloor);
    EXPECT_THAT(log_, ElementsAre("count 2/b [ 0/0]", "count 1/a [ 0/0]", "count 2/b [ 0/0]"));
    log_.clear();
    EXPECT_EQ(check_.GetResultTempNum({{2, L"b"}, {1, L"none"}, {1, L"a"}}), 10);
    EXPECT_THAT(log_, ElementsAre("count results 2/b [ 0/0]", "count results 1/none [ 0/0]",
                                  "count results 1/a [ 0/0]"));
}

TEST_F(HostModel, IsAskedForResultsAndOpeningsKeyByKey) {
    const std::vector<SCollisionFloor> floors = {{L"x", {}, {{2, L"b"}, {1, L"none"}}},
                                                 {L"y", {}, {{1, L"a"}}}};
    ResultMap results;
    check_.GetCollisionResult(floors, results);
    EXPECT_THAT(log_,
                ElementsAre("results 2/b [ 0/0]", "results 1/none [ 0/0]", "results 1/a [ 0/0]"));
    EXPECT_EQ(results.size(), 2U);
    for (const auto& [key, items] : results) {
        EXPECT_EQ(items.size(), 1U);
    }
    DeleteItems(results);
    log_.clear();
    HoleMap holes;
    check_.GetExistingHoles(floors, holes);
    EXPECT_THAT(log_, ElementsAre("holes 2/b [ 0/0]", "holes 1/none [ 0/0]", "holes 1/a [ 0/0]"));
    EXPECT_EQ(holes.size(), 2U);
    EXPECT_EQ((holes.at({1, L"a"}).size()), 1U);
}

}  // namespace
