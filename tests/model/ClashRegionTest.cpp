// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include <gtest/gtest.h>

#include "model/ClashRegion.h"

namespace kycb::model {
namespace {

using QNIM::GeometryPrimitiveResource::CQNIMPosition;

TEST(ClashRegion, HasTheOriginAsTheMiddleWhileUntouched) {
    const ClashRegion region;
    EXPECT_EQ(region.MaxPoint().GetX(), -3.4028234663852886e38);
    EXPECT_EQ(region.MinPoint().GetX(), 3.4028234663852886e38);
    EXPECT_EQ(Midpoint(region.MaxPoint(), region.MinPoint()), CQNIMPosition());
}

TEST(ClashRegion, IncludesEveryPoint) {
    ClashRegion region;
    region.Include({1, 20, -3});
    region.Include({-1, 2, 30});
    EXPECT_EQ(region.MaxPoint(), CQNIMPosition(1, 20, 30));
    EXPECT_EQ(region.MinPoint(), CQNIMPosition(-1, 2, -3));
    EXPECT_EQ(region.pointCount, 2);
}

TEST(ClashRegion, IgnoresPointsThatAreNotNumbersOrInfinite) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    ClashRegion region;
    region.Include({1, 2, 3});
    region.Include({kNan, 9, 9});
    region.Include({9, kNan, 9});
    region.Include({9, 9, kInfinity});
    EXPECT_EQ(region.MaxPoint(), CQNIMPosition(1, 2, 3));
    EXPECT_EQ(region.MinPoint(), CQNIMPosition(1, 2, 3));
    EXPECT_EQ(region.pointCount, 1);
}

}  // namespace
}  // namespace kycb::model
