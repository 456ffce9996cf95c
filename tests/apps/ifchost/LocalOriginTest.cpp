// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "ifchost/LocalOrigin.h"

namespace ifchost {
namespace {

SceneBox Around(const Point3& middle, double half) {
    return {{middle[0] - half, middle[1] - half, middle[2] - half},
            {middle[0] + half, middle[1] + half, middle[2] + half}};
}

TEST(LocalOrigin, StaysAtZeroForModelsNearby) {
    const LocalOrigin origin = ChooseOrigin({Around({1000000, -1000000, 0}, 5000)});
    EXPECT_FALSE(origin.moved);
    EXPECT_EQ(origin.origin, (Point3{0, 0, 0}));
    EXPECT_EQ(origin.largestCoordinate, 1005000.0);
    EXPECT_EQ(origin.resolution, 0.0625);
    EXPECT_EQ(origin.impreciseComponents, 0U);
}

TEST(LocalOrigin, StaysAtZeroWithoutComponents) {
    EXPECT_FALSE(ChooseOrigin({}).moved);
    EXPECT_EQ(ChooseOrigin({}).resolution, 0.0);
}

TEST(LocalOrigin, MovesOnlyTheAxesThatNeedItByWholeMetres) {
    const LocalOrigin origin = ChooseOrigin(
        {Around({155000300, 463000700, 3000}, 10000), Around({155050300, 463000700, 0}, 10)});
    EXPECT_TRUE(origin.moved);
    // Middles of 154990300..155050310 and 462990700..463010700.
    EXPECT_EQ(origin.origin, (Point3{155020000, 463001000, 0}));
    EXPECT_EQ(origin.impreciseComponents, 0U);
    // 30310 mm from the origin lies between 2^14 and 2^15, where the step is 2^(14-23).
    EXPECT_EQ(origin.resolution, 0.001953125);
}

TEST(LocalOrigin, KeepsMostComponentsPreciseWhenOneLiesFarOff) {
    std::vector<SceneBox> boxes(9, Around({155000000, 0, 0}, 1000));
    boxes.push_back(Around({0, 0, 0}, 1000));
    const LocalOrigin origin = ChooseOrigin(boxes);
    EXPECT_EQ(origin.origin, (Point3{155000000, 0, 0}));
    EXPECT_EQ(origin.impreciseComponents, 1U);
    // 155001000 lies between 2^27 and 2^28.
    EXPECT_EQ(origin.resolution, 16.0);
}

TEST(LocalOrigin, CountsExactlyTheComponentsBeyondTheReachOfFloats) {
    EXPECT_FALSE(ChooseOrigin({{{0, 0, 0}, {kFloatReachMm, 1, 1}}}).moved);
    EXPECT_TRUE(ChooseOrigin({{{0, 0, 0}, {kFloatReachMm + 1, 1, 1}}}).moved);
}

}  // namespace
}  // namespace ifchost
