// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/Numeric.h"

#include <limits>

#include <gtest/gtest.h>

namespace {

using KYTOOLS::GRAPH::BoundingBox2d;
using KYTOOLS::GRAPH::BoundingBox3d;
using KYTOOLS::Numeric::IsDoubleRangeOverLap;

TEST(BoundingBox, MeetsABoxThatItOnlyTouches) {
    const BoundingBox3d box(0, 0, 0, 10, 10, 10);
    EXPECT_TRUE(box.IsIntersect({10, 10, 10, 20, 20, 20}));
    EXPECT_FALSE(box.IsIntersect({10.1, 0, 0, 20, 10, 10}));
    EXPECT_FALSE(box.IsIntersect({0, 10.1, 0, 10, 20, 10}));
    EXPECT_FALSE(box.IsIntersect({0, 0, 10.1, 10, 10, 20}));
    EXPECT_TRUE(BoundingBox2d(0, 0, 1, 1).IsIntersect({1, 1, 2, 2}));
}

TEST(BoundingBox, MeetsNothingWhileNull) {
    const BoundingBox3d null;
    EXPECT_TRUE(null.IsNull());
    EXPECT_FALSE(null.IsIntersect(null));
    EXPECT_FALSE(null.IsIntersect({-1e9, -1e9, -1e9, 1e9, 1e9, 1e9}));
    EXPECT_FALSE(BoundingBox3d(-1e9, -1e9, -1e9, 1e9, 1e9, 1e9).IsIntersect(null));
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(
        null.GetBoundingBox2d().IsIntersect({-kInfinity, -kInfinity, kInfinity, kInfinity}));
}

TEST(BoundingBox, GrowsFromNullToExactlyTheFirstBox) {
    BoundingBox3d box;
    box.Add({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(box, BoundingBox3d(1, 2, 3, 4, 5, 6));
    box.Add(BoundingBox3d());
    EXPECT_EQ(box, BoundingBox3d(1, 2, 3, 4, 5, 6));
    box.Add({0, 3, 3, 3, 9, 7});
    EXPECT_EQ(box, BoundingBox3d(0, 2, 3, 4, 9, 7));
}

TEST(BoundingBox, IsNullWithABoundThatIsNotANumber) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(BoundingBox2d(kNan, 0, 1, 1).IsNull());
    EXPECT_TRUE(BoundingBox3d(0, 0, 0, 1, 1, kNan).IsNull());
    EXPECT_TRUE(BoundingBox3d(0, 0, 0, 1, 1, kNan).GetBoundingBox2d().IsNull());
}

TEST(BoundingBox, ProjectsToThePlan) {
    EXPECT_EQ(BoundingBox3d(1, 2, 3, 4, 5, 6).GetBoundingBox2d(), BoundingBox2d(1, 2, 4, 5));
}

TEST(Numeric, TakesRangesAsClosedAndComparesInvertedOnesAsTheyStand) {
    EXPECT_TRUE(IsDoubleRangeOverLap(0, 1, 1, 2));
    EXPECT_FALSE(IsDoubleRangeOverLap(0, 1, 1.001, 2));
    EXPECT_TRUE(IsDoubleRangeOverLap(0, 10, 6, 4));
    EXPECT_FALSE(IsDoubleRangeOverLap(4.5, 5.5, 6, 4));
}

}  // namespace
