// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMBoundArc.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using QNIM::GeometryPrimitiveResource::CQNIMVector;

namespace {

constexpr double kPi = std::numbers::pi;

void ExpectPoint(const CQNIMPosition& actual, double x, double y, double z) {
    EXPECT_NEAR(actual.GetX(), x, 1e-9);
    EXPECT_NEAR(actual.GetY(), y, 1e-9);
    EXPECT_NEAR(actual.GetZ(), z, 1e-9);
}

}  // namespace

TEST(CQNIMBoundArc, KeepsItsParameters) {
    const CQNIMBoundArc arc({1, 2, 3}, 1000, 0.5, 1.5);
    EXPECT_EQ(arc.GetCentrePt(), CQNIMPosition(1, 2, 3));
    EXPECT_EQ(arc.GetRadius(), 1000);
    EXPECT_EQ(arc.GetStartAngle(), 0.5);
    EXPECT_EQ(arc.GetSweepAngle(), 1.5);
    EXPECT_EQ(arc.GetKind(), CQNIMCurve::Kind::kBoundArc);
}

TEST(CQNIMBoundArc, LimitsTheSweepToAFullCircle) {
    EXPECT_EQ(CQNIMBoundArc({}, 1, 0, 100).GetSweepAngle(), 2 * kPi);
}

TEST(CQNIMBoundArc, TakesNegativeAndInvalidSizesAsZero) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(CQNIMBoundArc({}, -5, 0, 1).GetRadius(), 0.0);
    EXPECT_EQ(CQNIMBoundArc({}, nan, 0, 1).GetRadius(), 0.0);
    EXPECT_EQ(CQNIMBoundArc({}, 5, 0, -1).GetSweepAngle(), 0.0);
    EXPECT_EQ(CQNIMBoundArc({}, 5, 0, nan).GetSweepAngle(), 0.0);
}

TEST(CQNIMBoundArc, RunsCounterClockwiseFromStartToEnd) {
    const CQNIMBoundArc arc({10, 20, 5}, 100, kPi / 2, kPi / 2);
    ExpectPoint(arc.GetStartPt(), 10, 120, 5);
    ExpectPoint(arc.GetEndPt(), -90, 20, 5);
}

TEST(CQNIMBoundArc, KnowsWhichDirectionsItPasses) {
    const CQNIMBoundArc arc({}, 100, 1.5 * kPi, kPi);  // the right half
    EXPECT_TRUE(arc.IsInSweep(1, 0, 0));
    EXPECT_TRUE(arc.IsInSweep(1, 1, 0));
    EXPECT_TRUE(arc.IsInSweep(1, -1, 0));
    EXPECT_FALSE(arc.IsInSweep(-1, 0, 0));
    EXPECT_FALSE(arc.IsInSweep(-1, -1e-3, 0));
}

TEST(CQNIMBoundArc, WidensBothEndsByTheAngleTolerance) {
    const CQNIMBoundArc arc({}, 100, 0.0, 1.0);
    EXPECT_FALSE(arc.IsInSweep(std::cos(1.01), std::sin(1.01), 0.0));
    EXPECT_TRUE(arc.IsInSweep(std::cos(1.01), std::sin(1.01), 0.02));
    EXPECT_FALSE(arc.IsInSweep(std::cos(-0.01), std::sin(-0.01), 0.0));
    EXPECT_TRUE(arc.IsInSweep(std::cos(-0.01), std::sin(-0.01), 0.02));
}

TEST(CQNIMBoundArc, FindsTheClosestPointOnTheCircle) {
    const CQNIMBoundArc arc({10, 20, 5}, 100, 0, kPi);
    ExpectPoint(arc.GetClosePt({10, 500, 0}), 10, 120, 5);
    ExpectPoint(arc.GetClosePt({10, 21, 0}), 10, 120, 5);
}

TEST(CQNIMBoundArc, FindsTheNearerEndBeyondTheSweep) {
    const CQNIMBoundArc arc({0, 0, 0}, 100, 0, kPi);
    ExpectPoint(arc.GetClosePt({300, -10, 0}), 100, 0, 0);
    ExpectPoint(arc.GetClosePt({-300, -10, 0}), -100, 0, 0);
}

TEST(CQNIMBoundArc, TheCentreIsClosestToTheStart) {
    ExpectPoint(CQNIMBoundArc({1, 2, 0}, 100, kPi / 2, 1).GetClosePt({1, 2, 0}), 1, 102, 0);
}

TEST(CQNIMBoundArc, ClosestPointIsNoFartherThanAnySampledPoint) {
    std::mt19937 random(20240501);
    std::uniform_real_distribution<double> coordinate(-2000, 2000);
    std::uniform_real_distribution<double> angle(0, 2 * kPi);
    int insideSweep = 0;
    int atEnd = 0;
    for (int round = 0; round < 2000; ++round) {
        const CQNIMBoundArc arc({coordinate(random), coordinate(random), 0},
                                std::abs(coordinate(random)) + 1, angle(random) - kPi,
                                angle(random));
        const CQNIMPosition point(coordinate(random), coordinate(random), 0);
        const CQNIMPosition closest = arc.GetClosePt(point);
        const double distance = point.DistToPt(closest);
        EXPECT_NEAR(closest.DistToPt(arc.GetCentrePt()), arc.GetRadius(), 1e-9);
        double sampled = 1e30;
        for (int i = 0; i <= 500; ++i) {
            const double at = arc.GetStartAngle() + arc.GetSweepAngle() * i / 500;
            sampled = std::min(sampled, point.DistToPt(arc.GetPtAt(at)));
        }
        EXPECT_LE(distance, sampled + 1e-9);
        EXPECT_GE(distance, sampled - arc.GetRadius() * arc.GetSweepAngle() / 500);
        const bool end =
            closest.DistToPt(arc.GetStartPt()) < 1e-9 || closest.DistToPt(arc.GetEndPt()) < 1e-9;
        ++(end ? atEnd : insideSweep);
    }
    EXPECT_GT(insideSweep, 300);
    EXPECT_GT(atEnd, 300);
}

TEST(CQNIMBoundArc, TangentPointsTheWayTheArcRuns) {
    const CQNIMBoundArc arc({10, 20, 5}, 100, 0, kPi);
    const CQNIMVector atTop = arc.GetTangentPtDir({10, 900, 0});
    EXPECT_NEAR(atTop.GetX(), -1, 1e-12);
    EXPECT_NEAR(atTop.GetY(), 0, 1e-12);
    const CQNIMVector atStart = arc.GetTangentPtDir({500, -10, 0});
    EXPECT_NEAR(atStart.GetX(), 0, 1e-12);
    EXPECT_NEAR(atStart.GetY(), 1, 1e-12);
}

TEST(CQNIMBoundArc, AnArcOfNoRadiusHasNoTangent) {
    EXPECT_EQ(CQNIMBoundArc({1, 2, 3}, 0, 0, 1).GetTangentPtDir({5, 5, 5}).Length(), 0.0);
}

TEST(CQNIMBoundArc, BoxOfAQuarterIsSpannedByItsEnds) {
    const auto box = CQNIMBoundArc({0, 0, 7}, 100, 0, kPi / 2).GetBoundingBox();
    ExpectPoint(box.GetLowPt(), 0, 0, 7);
    ExpectPoint(box.GetHighPt(), 100, 100, 7);
}

TEST(CQNIMBoundArc, BoxReachesOutWhereTheArcPassesAnAxisDirection) {
    const auto upper = CQNIMBoundArc({0, 0, 0}, 100, kPi / 4, kPi / 2).GetBoundingBox();
    ExpectPoint(upper.GetHighPt(), 100 * std::sqrt(0.5), 100, 0);
    ExpectPoint(upper.GetLowPt(), -100 * std::sqrt(0.5), 100 * std::sqrt(0.5), 0);
    const auto right = CQNIMBoundArc({0, 0, 0}, 100, 1.75 * kPi, kPi / 2).GetBoundingBox();
    ExpectPoint(right.GetHighPt(), 100, 100 * std::sqrt(0.5), 0);
}

TEST(CQNIMBoundArc, BoxOfAFullCircleIsTheSquareAroundIt) {
    const auto box = CQNIMBoundArc({5, 6, 0}, 100, 1.0, 2 * kPi).GetBoundingBox();
    ExpectPoint(box.GetLowPt(), -95, -94, 0);
    ExpectPoint(box.GetHighPt(), 105, 106, 0);
}
