// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <gtest/gtest.h>

using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

TEST(CQNIMLineSegment, KeepsItsEnds) {
    const CQNIMLineSegment segment({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(segment.GetStartPt(), CQNIMPosition(1, 2, 3));
    EXPECT_EQ(segment.GetEndPt(), CQNIMPosition(4, 5, 6));
    EXPECT_EQ(segment.GetKind(), CQNIMCurve::Kind::kLineSegment);
}

TEST(CQNIMLineSegment, BoxReachesFromTheLowestToTheHighestCoordinates) {
    const auto box = CQNIMLineSegment({5, -2, 7}, {-1, 4, 3}).GetBoundingBox();
    EXPECT_EQ(box.GetLowPt(), CQNIMPosition(-1, -2, 3));
    EXPECT_EQ(box.GetHighPt(), CQNIMPosition(5, 4, 7));
}
