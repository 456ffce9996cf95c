// SPDX-License-Identifier: Apache-2.0
// The limit on the memory of meshes: what is kept, and that it changes nothing else.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <algorithm>

#include <gmock/gmock.h>

#include "support/FakeDataSource.h"
#include "support/Kinds.h"
#include "support/RuleBuilder.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace kycb::test;

constexpr int kInRow = 8;

// On each of two floors a row of ducts, each of which runs into the next; the last one of the first
// floor also runs into the first one of the second.
SceneBuilder TwoRows() {
    SceneBuilder scene;
    for (int floor = 0; floor < 2; ++floor) {
        scene.At(1, std::to_wstring(floor + 1) + L"F");
        for (int i = 0; i < kInRow; ++i) {
            const double x = 1000.0 * (floor * kInRow + i);
            scene.Add(L"d" + std::to_wstring(floor) + std::to_wstring(i), kDuct,
                      {x, 0, 0, x + 1100, 500, 500});
        }
    }
    return scene;
}

struct MeshMemory : ::testing::Test {
    CCollisionCheck check;
    FakeDataSource* source = new FakeDataSource(TwoRows());
    std::vector<SCollisionFloor> floors = {{L"one", {}, {{1, L"1F"}}}, {L"two", {}, {{1, L"2F"}}}};
    std::size_t mostAtOnce = 0;

    void SetUp() override {
        check.SetDataSource(source);
        check.SetCollisionRule(HardRulesFor({kDuct}).release());
        ASSERT_TRUE(check.InitCollisionModel());
        source->onCall = [this](const RecordedCall&) {
            mostAtOnce = std::max(mostAtOnce, MeshesHeld());
        };
    }
    std::vector<ObjectModelInfo*> Objects() {
        return ObjectsOf(static_cast<WorkSetModelInfo&>(*check.GetCollisionModel()));
    }
    std::size_t MeshesHeld() {
        std::size_t held = 0;
        for (const ObjectModelInfo* obj : Objects()) {
            held += obj->GetOpcodeModels().size();
        }
        return held;
    }
    // Who clashes with whom, in the order of recording.
    std::vector<std::wstring> Clashes() {
        std::vector<std::wstring> clashes;
        for (const ObjectModelInfo* obj : Objects()) {
            for (const SCollisionWithObj& clash : obj->GetCollisionObjs()) {
                clashes.push_back(obj->GetObjGuid() + L"-" + clash.other->GetObjGuid());
            }
        }
        return clashes;
    }
    std::size_t MeshesAsked() { return source->CallsOf(HostCall::kCreateMesh).size(); }
};

TEST_F(MeshMemory, IsNotBoundedUnlessAHostAsks) {
    EXPECT_EQ(check.GetMeshMemoryLimit(), 0U);
    check.CollisionCheck(floors);
    EXPECT_EQ(MeshesHeld(), 2U * kInRow);
    EXPECT_EQ(MeshesAsked(), 2U * kInRow);
}

TEST_F(MeshMemory, HoldsOnlyWhatLaterPairsOfTheFloorNeedWhenOverTheLimit) {
    check.SetMeshMemoryLimit(1);
    check.CollisionCheck(floors);
    // Of a row, the one before, the one whose turn it is, and the one behind.
    EXPECT_LE(mostAtOnce, 3U);
    EXPECT_GE(mostAtOnce, 2U);
    EXPECT_EQ(MeshesHeld(), 0U);
    // Once a floor: the first one of the second floor is needed by both. Its pair with the first
    // floor is known by its turn, so that nothing of that floor is asked for again.
    EXPECT_EQ(MeshesAsked(), 2U * kInRow + 1U);
}

TEST_F(MeshMemory, HoldsEverythingBelowTheLimit) {
    check.SetMeshMemoryLimit(std::size_t{1} << 30U);
    check.CollisionCheck(floors);
    EXPECT_EQ(MeshesHeld(), 2U * kInRow);
    EXPECT_EQ(MeshesAsked(), 2U * kInRow);
}

TEST_F(MeshMemory, CountsTheMeshesOfAnEarlierRun) {
    check.CollisionCheck(floors);
    ASSERT_EQ(MeshesHeld(), 2U * kInRow);
    check.SetMeshMemoryLimit(1);
    check.CollisionCheck({floors[0]});
    EXPECT_EQ(MeshesHeld(), 0U);
    EXPECT_EQ(MeshesAsked(), 2U * kInRow);
}

TEST_F(MeshMemory, LeavesTheResultsAsTheyAre) {
    check.CollisionCheck(floors);
    const std::vector<std::wstring> unbounded = Clashes();
    EXPECT_EQ(unbounded.size(), 2U * (2U * kInRow - 1U));
    check.SetMeshMemoryLimit(1);
    check.CollisionCheck(floors);
    EXPECT_EQ(Clashes(), unbounded);
}

}  // namespace
