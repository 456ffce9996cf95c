// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMCurveAlgorithm.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

using QNIM::ALGORITHM::CQNIMCurveAlgorithm;
using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kTolerance = 1e-6;

class Spline : public CQNIMCurve {
  public:
    CQNIMBoundingBox GetBoundingBox() const override { return {}; }
};

struct Meeting {
    int count;
    CQNIMPosition first;
    CQNIMPosition second;
};

Meeting Intersect(const CQNIMCurve& a, const CQNIMCurve& b) {
    Meeting meeting{};
    meeting.count = CQNIMCurveAlgorithm::IntersectTwoCurve(a, b, meeting.first, meeting.second, 0,
                                                           0, kTolerance);
    return meeting;
}

CQNIMLineSegment Line(double x0, double y0, double x1, double y1) {
    return {{x0, y0, 0}, {x1, y1, 0}};
}

void ExpectPoint(const CQNIMPosition& actual, double x, double y) {
    EXPECT_NEAR(actual.GetX(), x, 1e-9);
    EXPECT_NEAR(actual.GetY(), y, 1e-9);
}

bool Parallel(const CQNIMCurve& a, const CQNIMCurve& b, bool sameDirectionOnly = false) {
    return CQNIMCurveAlgorithm::IsCurveParallel(a, b, 0.001, sameDirectionOnly);
}

}  // namespace

TEST(CQNIMCurveAlgorithm, FindsTheFootPointOnASegment) {
    CQNIMPosition closest;
    ASSERT_TRUE(CQNIMCurveAlgorithm::GetClosePtOnCurve({30, 40, 0}, Line(0, 0, 100, 0), closest));
    ExpectPoint(closest, 30, 0);
}

TEST(CQNIMCurveAlgorithm, FindsTheEndOfASegmentExactlyAsItWasGiven) {
    const CQNIMLineSegment segment = Line(0.1, 0.2, 99.9, 33.3);
    CQNIMPosition closest;
    ASSERT_TRUE(CQNIMCurveAlgorithm::GetClosePtOnCurve({500, 500, 0}, segment, closest));
    EXPECT_EQ(closest, segment.GetEndPt());
    ASSERT_TRUE(CQNIMCurveAlgorithm::GetClosePtOnCurve({-5, -5, 0}, segment, closest));
    EXPECT_EQ(closest, segment.GetStartPt());
}

TEST(CQNIMCurveAlgorithm, FindsTheOnlyPointOfASegmentWithoutLength) {
    CQNIMPosition closest;
    ASSERT_TRUE(CQNIMCurveAlgorithm::GetClosePtOnCurve({1, 1, 0}, Line(7, 8, 7, 8), closest));
    ExpectPoint(closest, 7, 8);
}

TEST(CQNIMCurveAlgorithm, MeasuresTheClosestPointInSpace) {
    CQNIMPosition closest;
    const CQNIMLineSegment raised({0, 0, 3000}, {100, 0, 3000});
    ASSERT_TRUE(CQNIMCurveAlgorithm::GetClosePtOnCurve({50, 0, 0}, raised, closest));
    EXPECT_EQ(CQNIMPosition(50, 0, 0).DistToPt(closest), 3000);
}

TEST(CQNIMCurveAlgorithm, FindsTheClosestPointOfAnArc) {
    CQNIMPosition closest;
    const CQNIMBoundArc arc({0, 0, 0}, 100, 0, kPi);
    ASSERT_TRUE(CQNIMCurveAlgorithm::GetClosePtOnCurve({0, 30, 0}, arc, closest));
    ExpectPoint(closest, 0, 100);
}

TEST(CQNIMCurveAlgorithm, KnowsNoClosestPointOfOtherCurves) {
    CQNIMPosition closest(1, 2, 3);
    EXPECT_FALSE(CQNIMCurveAlgorithm::GetClosePtOnCurve({0, 0, 0}, Spline(), closest));
    EXPECT_EQ(closest, CQNIMPosition(1, 2, 3));
}

TEST(CQNIMCurveAlgorithm, TakesParallelAndOpposedSegmentsAsParallel) {
    EXPECT_TRUE(Parallel(Line(0, 0, 10, 10), Line(5, 0, 25, 20)));
    EXPECT_TRUE(Parallel(Line(0, 0, 10, 10), Line(25, 20, 5, 0)));
    EXPECT_FALSE(Parallel(Line(0, 0, 10, 10), Line(0, 0, 10, -10)));
}

TEST(CQNIMCurveAlgorithm, OpposedSegmentsAreNotParallelWhenDirectionCounts) {
    EXPECT_TRUE(Parallel(Line(0, 0, 10, 0), Line(0, 5, 10, 5), true));
    EXPECT_FALSE(Parallel(Line(0, 0, 10, 0), Line(10, 5, 0, 5), true));
}

TEST(CQNIMCurveAlgorithm, ComparesTheSineOfTheAngleWithTheTolerance) {
    EXPECT_TRUE(Parallel(Line(0, 0, 1e6, 0), Line(0, 0, 1e6, 999)));
    EXPECT_FALSE(Parallel(Line(0, 0, 1e6, 0), Line(0, 0, 1e6, 1001)));
}

TEST(CQNIMCurveAlgorithm, NothingIsParallelToWhatHasNoDirection) {
    EXPECT_FALSE(Parallel(Line(0, 0, 10, 0), Line(5, 5, 5, 5)));
    EXPECT_FALSE(Parallel(Line(0, 0, 10, 0), CQNIMBoundArc({0, 0, 0}, 5, 0, 1)));
    EXPECT_FALSE(Parallel(Line(0, 0, 10, 0), Spline()));
}

TEST(CQNIMCurveAlgorithm, IntersectsCrossingSegmentsInOnePoint) {
    const Meeting meeting = Intersect(Line(0, 0, 100, 100), Line(0, 80, 80, 0));
    ASSERT_EQ(meeting.count, 1);
    ExpectPoint(meeting.first, 40, 40);
}

TEST(CQNIMCurveAlgorithm, FindsNoPointWhereSegmentsEndEarlier) {
    EXPECT_EQ(Intersect(Line(0, 0, 100, 0), Line(50, 1, 50, 100)).count, 0);
    EXPECT_EQ(Intersect(Line(0, 0, 49, 0), Line(50, -100, 50, 100)).count, 0);
    EXPECT_EQ(Intersect(Line(0, 0, 100, 0), Line(0, 1, 100, 1)).count, 0);
}

TEST(CQNIMCurveAlgorithm, EndsWithinTheToleranceTouch) {
    const Meeting meeting = Intersect(Line(0, 0, 100, 0), Line(50, 5e-7, 50, 100));
    ASSERT_EQ(meeting.count, 1);
    ExpectPoint(meeting.first, 50, 0);
    EXPECT_EQ(Intersect(Line(0, 0, 100, 0), Line(50, 2e-6, 50, 100)).count, 0);
    const Meeting before = Intersect(Line(5e-7, 0, 100, 0), Line(0, -10, 0, 10));
    ASSERT_EQ(before.count, 1);
    EXPECT_EQ(before.first, CQNIMPosition(5e-7, 0, 0));
}

TEST(CQNIMCurveAlgorithm, HitsStayAtTheHeightOfTheFirstSegment) {
    const CQNIMLineSegment raised({50, -10, 3000}, {50, 10, 3000});
    const Meeting meeting = Intersect(Line(0, 0, 100, 0), raised);
    ASSERT_EQ(meeting.count, 1);
    EXPECT_EQ(meeting.first.GetZ(), 0);
}

TEST(CQNIMCurveAlgorithm, SegmentsLyingOnEachOtherShareAStretch) {
    const Meeting meeting = Intersect(Line(0, 0, 100, 0), Line(150, 0, 40, 0));
    ASSERT_EQ(meeting.count, CQNIMCurveAlgorithm::kSharedStretch);
    ExpectPoint(meeting.first, 40, 0);
    ExpectPoint(meeting.second, 100, 0);
}

TEST(CQNIMCurveAlgorithm, SegmentsInOneLineThatMeetEndToEndShareOnePoint) {
    const Meeting meeting = Intersect(Line(0, 0, 100, 0), Line(100, 0, 200, 0));
    ASSERT_EQ(meeting.count, 1);
    ExpectPoint(meeting.first, 100, 0);
    EXPECT_EQ(Intersect(Line(0, 0, 100, 0), Line(101, 0, 200, 0)).count, 0);
}

TEST(CQNIMCurveAlgorithm, ASegmentWithoutLengthIsAPoint) {
    EXPECT_EQ(Intersect(Line(50, 0, 50, 0), Line(0, 0, 100, 0)).count, 1);
    EXPECT_EQ(Intersect(Line(0, 0, 100, 0), Line(50, 0, 50, 0)).count, 1);
    EXPECT_EQ(Intersect(Line(50, 1, 50, 1), Line(0, 0, 100, 0)).count, 0);
    EXPECT_EQ(Intersect(Line(50, 1, 50, 1), Line(50, 1, 50, 1)).count, 1);
}

TEST(CQNIMCurveAlgorithm, IntersectsACircleTwiceInTheOrderOfTheSegment) {
    const CQNIMBoundArc circle({0, 0, 0}, 100, 0, 2 * kPi);
    const Meeting meeting = Intersect(Line(200, 60, -200, 60), circle);
    ASSERT_EQ(meeting.count, 2);
    ExpectPoint(meeting.first, 80, 60);
    ExpectPoint(meeting.second, -80, 60);
}

TEST(CQNIMCurveAlgorithm, GivesTheSameHitsWhicheverCurveComesFirst) {
    const CQNIMBoundArc circle({0, 0, 0}, 100, 0, 2 * kPi);
    const Meeting meeting = Intersect(circle, Line(200, 60, -200, 60));
    ASSERT_EQ(meeting.count, 2);
    ExpectPoint(meeting.first, 80, 60);
    ExpectPoint(meeting.second, -80, 60);
}

TEST(CQNIMCurveAlgorithm, ASegmentThatStartsInsideACircleHitsItOnce) {
    const CQNIMBoundArc circle({0, 0, 0}, 100, 0, 2 * kPi);
    const Meeting meeting = Intersect(Line(0, 60, 500, 60), circle);
    ASSERT_EQ(meeting.count, 1);
    ExpectPoint(meeting.first, 80, 60);
    EXPECT_EQ(Intersect(Line(0, 60, 79, 60), circle).count, 0);
}

TEST(CQNIMCurveAlgorithm, OnlyThePartOfTheCircleInsideTheSweepIsHit) {
    const CQNIMBoundArc rightHalf({0, 0, 0}, 100, 1.5 * kPi, kPi);
    const Meeting meeting = Intersect(Line(-200, 60, 200, 60), rightHalf);
    ASSERT_EQ(meeting.count, 1);
    ExpectPoint(meeting.first, 80, 60);
    EXPECT_EQ(Intersect(Line(-200, 60, -10, 60), rightHalf).count, 0);
}

TEST(CQNIMCurveAlgorithm, ATangentTouchesACircleOnce) {
    const CQNIMBoundArc circle({0, 0, 0}, 100, 0, 2 * kPi);
    const Meeting meeting = Intersect(Line(-200, 100, 200, 100), circle);
    ASSERT_EQ(meeting.count, 1);
    ExpectPoint(meeting.first, 0, 100);
    EXPECT_EQ(Intersect(Line(-200, 100 + 5e-7, 200, 100 + 5e-7), circle).count, 1);
    EXPECT_EQ(Intersect(Line(-200, 100.001, 200, 100.001), circle).count, 0);
}

TEST(CQNIMCurveAlgorithm, AnArcHitsWithinTheToleranceOfItsEnds) {
    const CQNIMBoundArc upperHalf({0, 0, 0}, 100, 0, kPi);
    EXPECT_EQ(Intersect(Line(0, -5e-7, 500, -5e-7), upperHalf).count, 1);
    EXPECT_EQ(Intersect(Line(0, -5e-6, 500, -5e-6), upperHalf).count, 0);
}

TEST(CQNIMCurveAlgorithm, APointOnAnArcTouchesIt) {
    const CQNIMBoundArc circle({0, 0, 0}, 100, 0, 2 * kPi);
    EXPECT_EQ(Intersect(Line(60, 80, 60, 80), circle).count, 1);
    EXPECT_EQ(Intersect(Line(60, 81, 60, 81), circle).count, 0);
    EXPECT_EQ(Intersect(Line(-50, 7, 50, 7), CQNIMBoundArc({5, 7, 0}, 0, 0, 1)).count, 1);
}

TEST(CQNIMCurveAlgorithm, RefusesPairsThatItDoesNotKnow) {
    const CQNIMBoundArc arc({0, 0, 0}, 100, 0, 1);
    EXPECT_EQ(Intersect(arc, arc).count, CQNIMCurveAlgorithm::kUnknownCurves);
    EXPECT_EQ(Intersect(Spline(), Line(0, 0, 1, 1)).count, CQNIMCurveAlgorithm::kUnknownCurves);
    EXPECT_EQ(Intersect(Line(0, 0, 1, 1), Spline()).count, CQNIMCurveAlgorithm::kUnknownCurves);
}

TEST(CQNIMCurveAlgorithm, CoordinatesThatAreNoNumbersMeetNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(Intersect(Line(nan, 0, 1, 1), Line(0, 1, 1, 0)).count, 0);
    EXPECT_EQ(Intersect(Line(0, 0, 1, 1), Line(0, 1, nan, 0)).count, 0);
    EXPECT_EQ(Intersect(Line(0, nan, 1, 1), CQNIMBoundArc({0, 0, 0}, 1, 0, 7)).count, 0);
    EXPECT_EQ(Intersect(Line(-huge, 0, huge, 0), Line(0, -huge, 0, huge)).count, 0);
}

TEST(CQNIMCurveAlgorithm, HitsOnHundredMetreAxesAreExactToAMillionthOfAMillimetre) {
    // Axes through a chosen point at chosen parameters: the point is what must come back.
    std::mt19937 random(7);
    std::uniform_real_distribution<double> coordinate(-100000, 100000);
    std::uniform_real_distribution<double> angle(0, 2 * kPi);
    std::uniform_real_distribution<double> reach(1, 100000);
    int compared = 0;
    for (int round = 0; round < 5000; ++round) {
        const CQNIMPosition hit(coordinate(random), coordinate(random), 0);
        const auto through = [&](double at) {
            const double back = reach(random);
            const double ahead = reach(random);
            return Line(hit.GetX() - back * std::cos(at), hit.GetY() - back * std::sin(at),
                        hit.GetX() + ahead * std::cos(at), hit.GetY() + ahead * std::sin(at));
        };
        const double angleA = angle(random);
        const double angleB = angle(random);
        if (std::abs(std::sin(angleA - angleB)) < 0.01) continue;
        const Meeting meeting = Intersect(through(angleA), through(angleB));
        ASSERT_EQ(meeting.count, 1);
        EXPECT_NEAR(meeting.first.DistToPt(hit), 0.0, 1e-6);
        ++compared;
    }
    EXPECT_GT(compared, 4000);
}

TEST(CQNIMCurveAlgorithm, AgreesWithSignTestsOnRandomSegments) {
    // Two segments in general position cross exactly when each separates the other's ends; on a
    // small integer grid the signs are exact.
    std::mt19937 random(11);
    std::uniform_int_distribution<int> coordinate(-20, 20);
    const auto side = [](int ax, int ay, int bx, int by, int cx, int cy) {
        return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
    };
    int hits = 0;
    int misses = 0;
    for (int round = 0; round < 20000; ++round) {
        int c[8];
        for (int& value : c)
            value = coordinate(random);
        const int a0 = side(c[0], c[1], c[2], c[3], c[4], c[5]);
        const int a1 = side(c[0], c[1], c[2], c[3], c[6], c[7]);
        const int b0 = side(c[4], c[5], c[6], c[7], c[0], c[1]);
        const int b1 = side(c[4], c[5], c[6], c[7], c[2], c[3]);
        if (a0 == 0 || a1 == 0 || b0 == 0 || b1 == 0) continue;
        const bool crosses = (a0 > 0) != (a1 > 0) && (b0 > 0) != (b1 > 0);
        EXPECT_EQ(Intersect(Line(c[0], c[1], c[2], c[3]), Line(c[4], c[5], c[6], c[7])).count,
                  crosses ? 1 : 0);
        ++(crosses ? hits : misses);
    }
    EXPECT_GT(hits, 2000);
    EXPECT_GT(misses, 2000);
}
