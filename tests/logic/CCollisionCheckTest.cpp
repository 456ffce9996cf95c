// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <chrono>
#include <new>
#include <stdexcept>
#include <type_traits>

#include <gmock/gmock.h>

#include "logic/DriverOutput.h"
#include "support/CheckedScene.h"
#include "support/Kinds.h"
#include "support/PriorityScope.h"
#include "support/StopFlag.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BoundingBox3d kCubeA(0, 0, 0, 1000, 1000, 1000);
const BoundingBox3d kCubeB(500, 500, 500, 1500, 1500, 1500);

SCollisionFloor Floor(const std::wstring& name, std::vector<FloorKey> keys) {
    return {name, {}, std::move(keys)};
}

// Two floors of two clashing components each, and one component of a kind without a rule.
SceneBuilder TwoFloors() {
    SceneBuilder scene;
    for (const wchar_t* name : {L"1F", L"2F"}) {
        scene.At(1, name);
        scene.Add(std::wstring(name) + L"-duct", kDuct, kCubeA);
        scene.Add(std::wstring(name) + L"-wall", kWall, kCubeB);
    }
    scene.At(1, L"1F").Add(L"unruled", kFurniture, {9000, 0, 0, 9100, 100, 100});
    // Far apart, so that the floors do not meet each other.
    SceneBuilder moved;
    for (const SceneComponent& c : scene.Components()) {
        const double dx = c.floorName == L"2F" ? 100000 : 0;
        const BoundingBox3d& b = c.box;
        moved.At(c.projectId, c.floorName)
            .Add(c.guid, c.category,
                 {b.GetMinX() + dx, b.GetMinY(), b.GetMinZ(), b.GetMaxX() + dx, b.GetMaxY(),
                  b.GetMaxZ()});
    }
    return moved;
}

class Driver : public ::testing::Test {
  protected:
    PriorityScope priorities_{{{PathOf(kDuct), 1}, {PathOf(kWall), 2}}};
    StopFlag stop_;
    CCollisionCheck check_;
    FakeDataSource* source_ = nullptr;

    void Prepare(const SceneBuilder& scene) {
        source_ = new FakeDataSource(scene);
        check_.SetDataSource(source_);
        check_.SetCollisionRule(HardRulesFor({kDuct, kWall}).release());
        ASSERT_TRUE(check_.InitCollisionModel());
    }
    ObjectModelInfo* Object(const std::wstring& guid) {
        return ObjectOf(static_cast<WorkSetModelInfo&>(*check_.GetCollisionModel()), guid);
    }
};

TEST_F(Driver, StartsEmpty) {
    EXPECT_EQ(check_.GetDataSource(), nullptr);
    EXPECT_EQ(check_.GetCollisionRule(), nullptr);
    EXPECT_EQ(check_.GetCollisionModel(), nullptr);
    EXPECT_FALSE(check_.IsCheckEnvironmentOk());
    EXPECT_FALSE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetCurCheckFloor(), L"");
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 0);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 0);
    EXPECT_FALSE(CCollisionCheck::s_bStopCheck);
}

TEST_F(Driver, CannotBeCopiedAndHasAVirtualDestructor) {
    EXPECT_FALSE(std::is_copy_constructible_v<CCollisionCheck>);
    EXPECT_FALSE(std::is_copy_assignable_v<CCollisionCheck>);
    EXPECT_TRUE(std::has_virtual_destructor_v<CCollisionCheck>);
}

TEST_F(Driver, NumbersItsReturnCodes) {
    EXPECT_EQ(CHECK_SUCCESS, 1);
    EXPECT_EQ(CHECK_NO_DATASOURCE, 2);
    EXPECT_EQ(CHECK_NO_MODEL, 3);
    EXPECT_EQ(CHECK_NO_RULE, 4);
    EXPECT_EQ(CHECK_STOPPED, 5);
}

TEST_F(Driver, MissesTheModelFirstThenTheRulesThenTheDataSource) {
    EXPECT_EQ(check_.CollisionCheck({}), CHECK_NO_MODEL);
    Prepare(TwoFloors());
    check_.SetCollisionRule(nullptr);
    check_.SetDataSource(nullptr);
    EXPECT_EQ(check_.CollisionCheck({}), CHECK_NO_RULE);
    check_.SetCollisionRule(HardRulesFor({}).release());
    EXPECT_EQ(check_.CollisionCheck({}), CHECK_NO_DATASOURCE);
}

TEST_F(Driver, LeavesTheProgressAloneWhenAPartIsMissing) {
    Prepare(TwoFloors());
    ASSERT_EQ(check_.CollisionCheck({Floor(L"first", {{1, L"1F"}})}), CHECK_SUCCESS);
    check_.SetCollisionRule(nullptr);
    EXPECT_EQ(check_.CollisionCheck({}), CHECK_NO_RULE);
    EXPECT_TRUE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetCurCheckFloor(), L"first");
}

TEST_F(Driver, SucceedsOverNoFloors) {
    Prepare(TwoFloors());
    EXPECT_EQ(check_.CollisionCheck({}), CHECK_SUCCESS);
    EXPECT_TRUE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 0);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 0);
    EXPECT_EQ(check_.GetCurCheckFloor(), L"");
}

TEST_F(Driver, ChecksTheGivenFloorsAndKeepsTheProgressOfTheLast) {
    Prepare(TwoFloors());
    EXPECT_EQ(check_.CollisionCheck({Floor(L"upper", {{1, L"2F"}}), Floor(L"lower", {{1, L"1F"}})}),
              CHECK_SUCCESS);
    EXPECT_TRUE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetCurCheckFloor(), L"lower");
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 3);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 2);  // one kind has no rule
    EXPECT_EQ(Object(L"1F-duct")->GetCollisionObjs().size(), 1U);
    EXPECT_EQ(Object(L"2F-wall")->GetCollisionObjs().size(), 1U);
}

TEST_F(Driver, SumsTheKeysOfAFloor) {
    Prepare(TwoFloors());
    EXPECT_EQ(check_.CollisionCheck({Floor(L"all", {{1, L"1F"}, {9, L"?"}, {1, L"2F"}})}),
              CHECK_SUCCESS);
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 5);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 4);
    EXPECT_EQ(check_.GetAllObjectNum({{1, L"1F"}, {1, L"2F"}, {2, L"1F"}}), 5);
    EXPECT_EQ(check_.GetAllObjectNum({}), 0);
}

TEST_F(Driver, ShowsTheFloorAndItsTotalWhileItIsChecked) {
    Prepare(TwoFloors());
    std::vector<std::wstring> seen;
    source_->onCall = [&](const RecordedCall& call) {
        if (call.call != HostCall::kCreateMesh) return;
        seen.push_back(check_.GetCurCheckFloor() + L" " +
                       std::to_wstring(check_.GetCheckedObjectNum()) + L"/" +
                       std::to_wstring(check_.GetAllCheckObjectNum()));
        EXPECT_FALSE(check_.CheckIsSuccessDone());
    };
    check_.CollisionCheck({Floor(L"a", {{1, L"1F"}}), Floor(L"b", {{1, L"2F"}})});
    // "土建" is walked before "暖通", and the wall's check fetches both meshes.
    EXPECT_THAT(seen, ElementsAre(L"a 1/3", L"a 1/3", L"b 1/2", L"b 1/2"));
}

TEST_F(Driver, RestsTenMillisecondsAfterEveryFloorAlsoAnUnknownOne) {
    Prepare(TwoFloors());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(check_.CollisionCheck(
                  {Floor(L"?", {{9, L"9F"}}), Floor(L"none", {}), Floor(L"?", {{1, L"9F"}})}),
              CHECK_SUCCESS);
    const auto passed = std::chrono::steady_clock::now() - start;
    EXPECT_GE(passed, std::chrono::milliseconds(30));
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 0);
    EXPECT_THAT(source_->CallsOf(HostCall::kAttributes), IsEmpty());
}

TEST_F(Driver, ForgetsTheClashesOfTheRunBefore) {
    Prepare(TwoFloors());
    const std::vector<SCollisionFloor> floors = {Floor(L"1F", {{1, L"1F"}})};
    check_.CollisionCheck(floors);
    check_.CollisionCheck(floors);
    EXPECT_EQ(Object(L"1F-duct")->GetCollisionObjs().size(), 1U);
    check_.CollisionCheck({});
    EXPECT_THAT(Object(L"1F-duct")->GetCollisionObjs(), IsEmpty());
}

TEST_F(Driver, AppliesNewRulesAtTheNextRun) {
    Prepare(TwoFloors());
    check_.SetCollisionRule(HardRulesFor({kWall}).release());
    check_.CollisionCheck({Floor(L"1F", {{1, L"1F"}})});
    EXPECT_EQ(check_.GetCheckedObjectNum(), 1);
    EXPECT_THAT(Object(L"1F-duct")->GetCollisionObjs(), IsEmpty());
}

TEST_F(Driver, StopsAfterExactlyOneComponentWhenTheFlagIsSetBeforehand) {
    Prepare(TwoFloors());
    stop_.Set();
    EXPECT_EQ(check_.CollisionCheck({Floor(L"a", {{1, L"1F"}}), Floor(L"b", {{1, L"2F"}})}),
              CHECK_STOPPED);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 1);
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 3);
    EXPECT_EQ(check_.GetCurCheckFloor(), L"a");
    EXPECT_FALSE(check_.CheckIsSuccessDone());
    EXPECT_TRUE(CCollisionCheck::s_bStopCheck);                    // never cleared by a run
    EXPECT_EQ(Object(L"1F-duct")->GetCollisionObjs().size(), 1U);  // found so far
}

TEST_F(Driver, StopsAfterAKeyThatNamesNoFloor) {
    Prepare(TwoFloors());
    stop_.Set();
    EXPECT_EQ(check_.CollisionCheck({Floor(L"a", {{9, L"?"}, {1, L"1F"}})}), CHECK_STOPPED);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 0);
}

TEST_F(Driver, StopsAfterAKeyWhoseKindsHaveNoRule) {
    Prepare(TwoFloors());
    check_.SetCollisionRule(HardRulesFor({}).release());
    stop_.Set();
    EXPECT_EQ(check_.CollisionCheck({Floor(L"a", {{1, L"1F"}, {1, L"2F"}})}), CHECK_STOPPED);
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 5);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 0);
}

TEST_F(Driver, DoesNotNoticeTheFlagWithoutAnyKey) {
    Prepare(TwoFloors());
    stop_.Set();
    EXPECT_EQ(check_.CollisionCheck({Floor(L"none", {})}), CHECK_SUCCESS);
}

TEST_F(Driver, FinishesTheComponentInWhichTheFlagIsSet) {
    SceneBuilder scene;
    scene.Add(L"wall", kWall, kCubeB);
    scene.Add(L"duct1", kDuct, kCubeA);
    scene.Add(L"duct2", kDuct, {600, 600, 600, 900, 2000, 900});
    Prepare(scene);
    source_->onCall = [&](const RecordedCall& call) {
        if (call.call == HostCall::kCreateMesh) stop_.Set();
    };
    EXPECT_EQ(check_.CollisionCheck({Floor(L"a", {{1, L"1F"}})}), CHECK_STOPPED);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 1);
    EXPECT_EQ(Object(L"wall")->GetCollisionObjs().size(), 2U);
}

TEST_F(Driver, CanRunAgainAfterTheFlagWasCleared) {
    Prepare(TwoFloors());
    stop_.Set();
    const std::vector<SCollisionFloor> floors = {Floor(L"a", {{1, L"1F"}})};
    EXPECT_EQ(check_.CollisionCheck(floors), CHECK_STOPPED);
    EXPECT_EQ(check_.CollisionCheck(floors), CHECK_STOPPED);
    stop_.Clear();
    EXPECT_EQ(check_.CollisionCheck(floors), CHECK_SUCCESS);
}

TEST_F(Driver, ResetsItsProgressOnRequest) {
    Prepare(TwoFloors());
    check_.CollisionCheck({Floor(L"a", {{1, L"1F"}})});
    check_.ResetCheckStatus();
    EXPECT_FALSE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetCurCheckFloor(), L"");
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 0);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 0);
    EXPECT_EQ(Object(L"1F-duct")->GetCollisionObjs().size(), 1U);
}

TEST_F(Driver, ResetsTheModelOnRequest) {
    Prepare(TwoFloors());
    check_.CollisionCheck({Floor(L"a", {{1, L"1F"}})});
    check_.SetCollisionRule(HardRulesFor({kWall}).release());
    check_.ResetCollisionTempData();
    EXPECT_THAT(Object(L"1F-duct")->GetCollisionObjs(), IsEmpty());
    EXPECT_EQ(Object(L"1F-duct")->GetBelongCategoryModel()->GetCollisionRuleItem(), nullptr);
    EXPECT_NE(Object(L"1F-wall")->GetBelongCategoryModel()->GetCollisionRuleItem(), nullptr);
    EXPECT_TRUE(check_.CheckIsSuccessDone());
}

TEST_F(Driver, BuildsNoModelWithoutADataSource) {
    EXPECT_FALSE(check_.InitCollisionModel());
    EXPECT_FALSE(check_.IsCheckEnvironmentOk());
}

TEST_F(Driver, ReportsThatNoModelCouldBeBuilt) {
    auto* source = new FakeDataSource(TwoFloors());
    source->hasModel = false;
    check_.SetDataSource(source);
    EXPECT_FALSE(check_.InitCollisionModel());
    EXPECT_EQ(check_.GetCollisionModel(), nullptr);
    EXPECT_FALSE(check_.IsCheckEnvironmentOk());
}

TEST_F(Driver, HasNoModelAnyMoreWhenANewOneCouldNotBeBuilt) {
    Prepare(TwoFloors());
    source_->hasModel = false;
    EXPECT_FALSE(check_.InitCollisionModel());
    EXPECT_EQ(check_.GetCollisionModel(), nullptr);
    EXPECT_EQ(check_.CollisionCheck({}), CHECK_NO_MODEL);
}

TEST_F(Driver, ReturnsItsProgressToTheStartWhenItIsReleased) {
    Prepare(TwoFloors());
    check_.CollisionCheck({Floor(L"a", {{1, L"1F"}})});
    check_.Release();
    EXPECT_FALSE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetCurCheckFloor(), L"");
    EXPECT_EQ(check_.GetAllCheckObjectNum(), 0);
    EXPECT_EQ(check_.GetCheckedObjectNum(), 0);
    check_.Release();  // nothing held, nothing done
    EXPECT_FALSE(check_.IsCheckEnvironmentOk());
}

TEST_F(Driver, ListsNeighboursWhenTheModelIsBuilt) {
    Prepare(TwoFloors());
    EXPECT_TRUE(check_.IsCheckEnvironmentOk());
    EXPECT_THAT(GuidsOf(Object(L"1F-duct")->GetBoxRelatedObjs()), ElementsAre(L"1F-wall"));
}

TEST_F(Driver, NeedsNoRulesForItsEnvironment) {
    Prepare(TwoFloors());
    check_.SetCollisionRule(nullptr);
    EXPECT_TRUE(check_.IsCheckEnvironmentOk());
}

TEST_F(Driver, ListsNeighboursAnewOnlyOnRequest) {
    check_.AnalyseBoxRelated();  // without a model: nothing
    Prepare(TwoFloors());
    auto& model = static_cast<WorkSetModelInfo&>(*check_.GetCollisionModel());
    FloorModelInfo* floor = FloorOf(model);
    floor->AppendObject(kWall.specialty, kWall.dalei, kWall.xiaolei, NewObject(L"new", kCubeA));
    floor->BuildQuadTree();
    check_.CollisionCheck({Floor(L"a", {{1, L"1F"}})});
    EXPECT_THAT(Object(L"new")->GetBoxRelatedObjs(), IsEmpty());
    check_.AnalyseBoxRelated();
    EXPECT_EQ(Object(L"new")->GetBoxRelatedObjs().size(), 2U);
}

// A model that tells when it is emptied and deleted.
class WatchedModel : public WorkSetModelInfo {
  public:
    explicit WatchedModel(std::vector<std::string>& log) : log_(log) {}
    ~WatchedModel() override { log_.emplace_back("model deleted"); }
    void ReleaseModel() override {
        log_.emplace_back("model emptied");
        WorkSetModelInfo::ReleaseModel();
    }
    void AnalyseBoxRelated() override {
        log_.emplace_back("neighbours listed");
        WorkSetModelInfo::AnalyseBoxRelated();
    }
    using WorkSetModelInfo::AnalyseBoxRelated;

  private:
    std::vector<std::string>& log_;
};

class WatchedSource : public FakeDataSource {
  public:
    explicit WatchedSource(std::vector<std::string>& log)
        : FakeDataSource(SceneBuilder()), log_(log) {}
    ~WatchedSource() override { log_.emplace_back("source deleted"); }
    ICollisionModel* CreateCollisionModel() override {
        log_.emplace_back("model asked for");
        if (failing) throw std::runtime_error("host failure");
        if (!reused) reused = new WatchedModel(log_);
        return std::exchange(reused, keepsModel ? reused : nullptr);
    }

    WatchedModel* reused = nullptr;
    bool keepsModel = false;
    bool failing = false;

  private:
    std::vector<std::string>& log_;
};

TEST(DriverOwnership, EmptiesTheOldModelAsksForANewOneAndDeletesTheOld) {
    std::vector<std::string> log;
    CCollisionCheck check;
    check.SetDataSource(new WatchedSource(log));
    EXPECT_TRUE(check.InitCollisionModel());
    EXPECT_THAT(log, ElementsAre("model asked for", "neighbours listed"));
    log.clear();
    EXPECT_TRUE(check.InitCollisionModel());
    EXPECT_THAT(
        log, ElementsAre("model emptied", "model asked for", "model deleted", "neighbours listed"));
}

TEST(DriverOwnership, KeepsAModelThatTheHostHandsOutAgain) {
    std::vector<std::string> log;
    CCollisionCheck check;
    auto* source = new WatchedSource(log);
    source->keepsModel = true;
    check.SetDataSource(source);
    check.InitCollisionModel();
    ICollisionModel* first = check.GetCollisionModel();
    log.clear();
    EXPECT_TRUE(check.InitCollisionModel());
    EXPECT_EQ(check.GetCollisionModel(), first);
    EXPECT_THAT(log, ElementsAre("model emptied", "model asked for", "neighbours listed"));
}

TEST(DriverOwnership, KeepsTheEmptiedModelWhenTheHostFails) {
    std::vector<std::string> log;
    CCollisionCheck check;
    auto* source = new WatchedSource(log);
    check.SetDataSource(source);
    check.InitCollisionModel();
    source->failing = true;
    EXPECT_THROW(check.InitCollisionModel(), std::runtime_error);
    EXPECT_NE(check.GetCollisionModel(), nullptr);
}

TEST(DriverOwnership, ReleasesDataSourceThenModelAndCanBeSetUpAgain) {
    std::vector<std::string> log;
    CCollisionCheck check;
    check.SetDataSource(new WatchedSource(log));
    check.SetCollisionRule(HardRulesFor({}).release());
    check.InitCollisionModel();
    log.clear();
    check.Release();
    EXPECT_THAT(log, ElementsAre("source deleted", "model deleted"));
    EXPECT_EQ(check.GetDataSource(), nullptr);
    EXPECT_EQ(check.GetCollisionModel(), nullptr);
    EXPECT_EQ(check.GetCollisionRule(), nullptr);
    check.SetDataSource(new WatchedSource(log));
    EXPECT_TRUE(check.InitCollisionModel());
}

TEST(DriverOwnership, DeletesEverythingAtItsEnd) {
    std::vector<std::string> log;
    {
        CCollisionCheck check;
        check.SetDataSource(new WatchedSource(log));
        check.InitCollisionModel();
        log.clear();
    }
    EXPECT_THAT(log, ElementsAre("source deleted", "model deleted"));
}

TEST(DriverOwnership, DeletesAReplacedDataSourceAndReplacedRules) {
    std::vector<std::string> log;
    CCollisionCheck check;
    check.SetDataSource(new WatchedSource(log));
    auto* second = new WatchedSource(log);
    check.SetDataSource(second);
    EXPECT_THAT(log, ElementsAre("source deleted"));
    EXPECT_EQ(check.GetDataSource(), second);
    check.SetCollisionRule(HardRulesFor({kWall}).release());
    auto* rules = HardRulesFor({kDuct}).release();
    check.SetCollisionRule(rules);  // the first one is freed, or the leak check tells
    EXPECT_EQ(check.GetCollisionRule(), rules);
}

// A source whose memory outlives its deletion, so that the deletion can be looked at.
class SourceInPlace : public FakeDataSource {
  public:
    explicit SourceInPlace(int& deleted) : FakeDataSource(SceneBuilder()), deleted_(deleted) {}
    ~SourceInPlace() override { ++deleted_; }
    static void* operator new(std::size_t, void* place) { return place; }
    static void operator delete(void*) {}
    static void operator delete(void*, void*) {}

  private:
    int& deleted_;
};

TEST(DriverOwnership, DeletesTheDataSourceItHoldsEvenWhenTheSameIsPassedAgain) {
    alignas(SourceInPlace) static std::byte place[sizeof(SourceInPlace)];
    int deleted = 0;
    CCollisionCheck check;
    auto* source = new (place) SourceInPlace(deleted);
    check.SetDataSource(source);
    check.SetDataSource(source);
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(check.GetDataSource(), source);
    new (place) SourceInPlace(deleted);  // alive again before the driver lets go of it
}

TEST_F(Driver, FilesResultsByFloorKeyAndLeavesKeysWithoutResultsAlone) {
    Prepare(TwoFloors());
    check_.CollisionCheck({Floor(L"lower", {{1, L"1F"}})});
    EXPECT_EQ(check_.GetResultTempNum({{1, L"1F"}, {1, L"2F"}}), 1);
    ResultMap results;
    results[{1, L"2F"}] = {nullptr, nullptr};
    check_.GetCollisionResult({Floor(L"all", {{1, L"1F"}, {1, L"2F"}, {7, L"?"}})}, results);
    ASSERT_EQ(results.size(), 2U);
    const auto& items = results.at({1, L"1F"});
    ASSERT_EQ(items.size(), 1U);
    EXPECT_EQ(items[0]->GetObjGuidA(), L"1F-duct");
    EXPECT_EQ((results.at({1, L"2F"}).size()), 2U);
    DeleteItems(results);
}

TEST_F(Driver, ReplacesTheEntryOfAKeyWithResults) {
    Prepare(TwoFloors());
    const std::vector<SCollisionFloor> floors = {Floor(L"lower", {{1, L"1F"}})};
    check_.CollisionCheck(floors);
    ResultMap results;
    const FloorKey key{1, L"1F"};
    results[key] = {nullptr, nullptr, nullptr};
    check_.GetCollisionResult(floors, results);
    ASSERT_EQ(results[key].size(), 1U);
    const std::unique_ptr<KYCOLLISION::RESULT::KyResultItem> callers(results[key][0]);
    check_.CollisionCheck(floors);
    check_.GetCollisionResult(floors, results);
    EXPECT_NE(results[key][0], callers.get());
    EXPECT_EQ(callers->GetObjGuidA(), L"1F-duct");  // still the caller's
    DeleteItems(results);
}

TEST_F(Driver, KeepsTheSecondResultsOfAKeyThatIsNamedTwice) {
    Prepare(TwoFloors());
    check_.CollisionCheck({Floor(L"lower", {{1, L"1F"}})});
    ResultMap results;
    check_.GetCollisionResult({Floor(L"a", {{1, L"1F"}, {1, L"1F"}}), Floor(L"b", {{1, L"1F"}})},
                              results);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results.begin()->second.size(), 1U);
    DeleteItems(results);
}

TEST_F(Driver, KeepsWhatWasFiledBeforeTheHostFailed) {
    Prepare(TwoFloors());
    const std::vector<SCollisionFloor> floors = {Floor(L"all", {{1, L"1F"}, {1, L"2F"}})};
    check_.CollisionCheck(floors);
    source_->ThrowAt(HostCall::kAxes, 2);
    ResultMap results;
    EXPECT_THROW(check_.GetCollisionResult(floors, results), std::runtime_error);
    EXPECT_EQ(results.size(), 1U);
    DeleteItems(results);
}

TEST_F(Driver, FilesOpeningsByFloorKey) {
    SceneBuilder scene = TwoFloors();
    scene.At(1, L"2F").Add(L"door", kDoor, kCubeA).attributes = {
        {L"holeshape", L"1"}, {L"holecenter", L""}, {L"holeelev", L""}, {L"parentid", L""}};
    Prepare(scene);
    HoleMap holes;
    holes[{1, L"1F"}].resize(2);
    holes[{1, L"2F"}].resize(3);
    check_.GetExistingHoles({Floor(L"all", {{1, L"1F"}, {1, L"2F"}, {7, L"?"}})}, holes);
    EXPECT_EQ(holes.size(), 2U);
    EXPECT_EQ((holes.at({1, L"1F"}).size()), 2U);
    ASSERT_EQ((holes.at({1, L"2F"}).size()), 1U);
    EXPECT_EQ(holes.at({1, L"2F"})[0]->objGuid, L"door");
}

TEST_F(Driver, AnswersWithNothingWithoutAModel) {
    ResultMap results;
    HoleMap holes;
    const std::vector<SCollisionFloor> floors = {Floor(L"a", {{1, L"1F"}})};
    check_.ResetCollisionTempData();
    check_.GetCollisionResult(floors, results);
    check_.GetExistingHoles(floors, holes);
    EXPECT_EQ(check_.GetAllObjectNum({{1, L"1F"}}), 0);
    EXPECT_EQ(check_.GetResultTempNum({{1, L"1F"}}), 0);
    EXPECT_THAT(results, IsEmpty());
    EXPECT_THAT(holes, IsEmpty());
}

TEST_F(Driver, PassesAFailureOfTheHostThroughARunAndCanRunAgain) {
    Prepare(TwoFloors());
    source_->ThrowAt(HostCall::kCreateMesh, 2);
    const std::vector<SCollisionFloor> floors = {Floor(L"a", {{1, L"1F"}})};
    EXPECT_THROW(check_.CollisionCheck(floors), std::runtime_error);
    EXPECT_FALSE(check_.CheckIsSuccessDone());
    EXPECT_EQ(check_.GetCheckedObjectNum(), 1);
    EXPECT_EQ(check_.CollisionCheck(floors), CHECK_SUCCESS);
    EXPECT_EQ(Object(L"1F-duct")->GetCollisionObjs().size(), 1U);
}

}  // namespace
