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

// The run will wait in its first mesh call until `mayGoOn`, so that the other thread is at work by
// then, however busy the machine is.
void Prepare(CCollisionCheck& check, const std::atomic<bool>& mayGoOn) {
    auto* source = new FakeDataSource(Rows());
    check.SetDataSource(source);
    check.SetCollisionRule(HardRulesFor({kDuct, kWall}).release());
    ASSERT_TRUE(check.InitCollisionModel());
    source->onCall = [&mayGoOn](const RecordedCall&) {
        while (!mayGoOn) {
            std::this_thread::yield();
        }
    };
}

TEST(Polling, SeesSoundValuesFromAnotherThreadDuringARun) {
    const StopFlag stop;
    CCollisionCheck check;
    std::atomic<bool> polled = false;
    Prepare(check, polled);
    std::atomic<bool> done = false;
    std::atomic<bool> sound = true;
    std::thread poller([&] {
        while (!done) {
            const int total = check.GetAllCheckObjectNum();
            const int checked = check.GetCheckedObjectNum();
            const std::wstring floor = check.GetCurCheckFloor();
            if ((total != 0 && total != kPerFloor) || checked < 0 || checked > kPerFloor) {
                sound = false;
            }
            if (!floor.empty() && floor.rfind(L"a floor", 0) != 0) sound = false;
            check.CheckIsSuccessDone();  // may be either until the run is over
            polled = true;
            std::this_thread::yield();
        }
        if (!check.CheckIsSuccessDone()) sound = false;
    });
    EXPECT_EQ(check.CollisionCheck(AllFloors()), CHECK_SUCCESS);
    done = true;
    poller.join();
    EXPECT_TRUE(sound);
    EXPECT_EQ(check.GetCheckedObjectNum(), kPerFloor);
    EXPECT_EQ(check.GetCurCheckFloor(), FloorName(kFloorCount - 1));
}

TEST(Polling, StopsARunFromAnotherThread) {
    StopFlag stop;
    CCollisionCheck check;
    std::atomic<bool> requested = false;
    Prepare(check, requested);
    std::thread canceller([&] {
        while (check.GetCurCheckFloor().empty()) {
            std::this_thread::yield();
        }
        stop.Set();
        requested = true;
    });
    EXPECT_EQ(check.CollisionCheck(AllFloors()), CHECK_STOPPED);
    canceller.join();
    EXPECT_FALSE(check.CheckIsSuccessDone());
}

}  // namespace
