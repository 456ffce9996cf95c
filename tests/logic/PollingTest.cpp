// SPDX-License-Identifier: Apache-2.0
// Progress polled, and a stop requested, from a second thread; meant for ThreadSanitizer above all.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

#include "support/CheckedScene.h"
#include "support/Kinds.h"
#include "support/StopFlag.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace kycb::test;

constexpr int kFloorCount = 12;
constexpr int kPerFloor = 40;

std::wstring FloorName(int floor) {
    return L"a floor with a name beyond the small buffer " + std::to_wstring(floor);
}

// A row of overlapping boxes per floor, alternately of two kinds.
SceneBuilder Rows() {
    SceneBuilder scene;
    for (int floor = 0; floor < kFloorCount; ++floor) {
        scene.At(1, FloorName(floor));
        for (int i = 0; i < kPerFloor; ++i) {
            const double x = 80.0 * i;
            const double z = 5000.0 * floor;
            scene.Add(std::to_wstring(i), i % 2 == 0 ? kDuct : kWall,
                      {x, 0, z, x + 100, 100.0 + i, z + 100});
        }
    }
    return scene;
}

std::vector<SCollisionFloor> AllFloors() {
    std::vector<SCollisionFloor> floors;
    for (int floor = 0; floor < kFloorCount; ++floor) {
        floors.push_back({FloorName(floor), {}, {{1, FloorName(floor)}}});
    }
    return floors;
}

void Prepare(CCollisionCheck& check) {
    check.SetDataSource(new FakeDataSource(Rows()));
    check.SetCollisionRule(HardRulesFor({kDuct, kWall}).release());
    ASSERT_TRUE(check.InitCollisionModel());
}

TEST(Polling, SeesSoundValuesFromAnotherThreadDuringARun) {
    StopFlag stop;
    CCollisionCheck check;
    Prepare(check);
    std::atomic<bool> done = false;
    std::atomic<bool> sound = true;
    int rounds = 0;
    std::thread poller([&] {
        while (!done) {
            const int total = check.GetAllCheckObjectNum();
            const int checked = check.GetCheckedObjectNum();
            const std::wstring floor = check.GetCurCheckFloor();
            if ((total != 0 && total != kPerFloor) || checked < 0 || checked > kPerFloor) {
                sound = false;
            }
            if (!floor.empty() && floor.rfind(L"a floor", 0) != 0) sound = false;
            if (check.CheckIsSuccessDone() && checked > kPerFloor) sound = false;
            ++rounds;
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(check.CollisionCheck(AllFloors()), CHECK_SUCCESS);
    done = true;
    poller.join();
    EXPECT_TRUE(sound);
    EXPECT_GT(rounds, 0);
    EXPECT_EQ(check.GetCheckedObjectNum(), kPerFloor);
    EXPECT_EQ(check.GetCurCheckFloor(), FloorName(kFloorCount - 1));
}

TEST(Polling, StopsARunFromAnotherThread) {
    StopFlag stop;
    CCollisionCheck check;
    Prepare(check);
    // The run rests after each floor, so the request arrives before the last of them.
    std::thread canceller([&] {
        while (check.GetCurCheckFloor().empty()) {
            std::this_thread::yield();
        }
        stop.Set();
    });
    EXPECT_EQ(check.CollisionCheck(AllFloors()), CHECK_STOPPED);
    canceller.join();
    EXPECT_FALSE(check.CheckIsSuccessDone());
}

}  // namespace
