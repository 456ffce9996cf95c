// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMVector.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

using QNIM::GeometryPrimitiveResource::CQNIMVector;

namespace {

constexpr double kPi = std::numbers::pi;

void ExpectVector(const CQNIMVector& actual, double x, double y, double z, double tolerance) {
    EXPECT_NEAR(actual.GetX(), x, tolerance);
    EXPECT_NEAR(actual.GetY(), y, tolerance);
    EXPECT_NEAR(actual.GetZ(), z, tolerance);
}

CQNIMVector Normalised(CQNIMVector vector) {
    vector.Normalise();
    return vector;
}

}  // namespace

TEST(CQNIMVector, IsZeroByDefault) {
    ExpectVector(CQNIMVector(), 0, 0, 0, 0);
}

TEST(CQNIMVector, OffersTheCoordinateAxes) {
    ExpectVector(CQNIMVector::XAxis, 1, 0, 0, 0);
    ExpectVector(CQNIMVector::YAxis, 0, 1, 0, 0);
    ExpectVector(CQNIMVector::ZAxis, 0, 0, 1, 0);
}

TEST(CQNIMVector, CalculatesSumsAndProducts) {
    const CQNIMVector a(1, 2, 3);
    const CQNIMVector b(4, -5, 6);
    ExpectVector(a + b, 5, -3, 9, 0);
    ExpectVector(a - b, -3, 7, -3, 0);
    ExpectVector(-a, -1, -2, -3, 0);
    ExpectVector(2.0 * a, 2, 4, 6, 0);
    EXPECT_EQ(a.Dot(b), 12.0);
    ExpectVector(a.Cross(b), 27, 6, -13, 0);
}

TEST(CQNIMVector, CrossProductIsRightHanded) {
    ExpectVector(CQNIMVector::XAxis.Cross(CQNIMVector::YAxis), 0, 0, 1, 0);
}

TEST(CQNIMVector, LengthNeitherOverflowsNorUnderflows) {
    EXPECT_EQ(CQNIMVector(3, 4, 0).Length(), 5.0);
    EXPECT_TRUE(std::isfinite(CQNIMVector(1e300, 1e300, 0).Length()));
    EXPECT_GT(CQNIMVector(1e-300, 0, 0).Length(), 0.0);
}

TEST(CQNIMVector, NormalisesAxisAlignedVectorsExactly) {
    ExpectVector(Normalised({123456.789, 0, 0}), 1, 0, 0, 0);
    ExpectVector(Normalised({0, -0.1, 0}), 0, -1, 0, 0);
    EXPECT_NEAR(Normalised({3, -7, 11}).Length(), 1.0, 1e-15);
}

TEST(CQNIMVector, LeavesZeroAndInfiniteVectorsAlone) {
    ExpectVector(Normalised({0, 0, 0}), 0, 0, 0, 0);
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Normalised({infinite, 0, 0}).GetX(), infinite);
}

TEST(CQNIMVector, RotatesCounterClockwiseSeenAgainstTheAxis) {
    ExpectVector(CQNIMVector::XAxis.RotateByAxis(kPi / 6, CQNIMVector::ZAxis), std::sqrt(0.75), 0.5,
                 0, 1e-15);
    ExpectVector(CQNIMVector::YAxis.RotateByAxis(kPi / 6, CQNIMVector::XAxis), 0, std::sqrt(0.75),
                 0.5, 1e-15);
}

TEST(CQNIMVector, KeepsThePartAlongTheAxisOfRotation) {
    ExpectVector(CQNIMVector(1, 0, 5).RotateByAxis(1.0, {0, 0, 10}), std::cos(1.0), std::sin(1.0),
                 5, 1e-14);
}

TEST(CQNIMVector, TurnsByASinglePrecisionRightAngleExactly) {
    const CQNIMVector vector(3, 4, 0);
    ExpectVector(vector.RotateByAxis(1.5707963705062866, CQNIMVector::ZAxis), -4, 3, 0, 0);
    ExpectVector(vector.RotateByAxis(-1.5707963705062866, CQNIMVector::ZAxis), 4, -3, 0, 0);
    ExpectVector(vector.RotateByAxis(3.1415927410125732, CQNIMVector::ZAxis), -3, -4, 0, 0);
    ExpectVector(vector.RotateByAxis(6.2831854820251465, CQNIMVector::ZAxis), 3, 4, 0, 0);
}

TEST(CQNIMVector, DoesNotSnapAnglesThatAreNoRightAngles) {
    const double angle = kPi / 2 + 1e-6;
    const CQNIMVector turned = CQNIMVector::XAxis.RotateByAxis(angle, CQNIMVector::ZAxis);
    EXPECT_NEAR(turned.GetX(), -1e-6, 1e-12);
}

TEST(CQNIMVector, TheZeroAxisTurnsNothing) {
    ExpectVector(CQNIMVector(1, 2, 3).RotateByAxis(1.0, CQNIMVector()), 1, 2, 3, 0);
}

TEST(CQNIMVector, MeasuresTheAngleAboutAnAxisOverAFullTurn) {
    for (int degree = 0; degree < 360; ++degree) {
        const double angle = degree * kPi / 180;
        const CQNIMVector target(7 * std::cos(angle), 7 * std::sin(angle), 0);
        EXPECT_NEAR(CQNIMVector::XAxis.GetRotateAngle(target, CQNIMVector::ZAxis), angle, 1e-14)
            << degree;
    }
}

TEST(CQNIMVector, MeasuresRightAnglesExactly) {
    const auto angleTo = [](double x, double y) {
        return CQNIMVector::XAxis.GetRotateAngle({x, y, 0}, CQNIMVector::ZAxis);
    };
    EXPECT_EQ(angleTo(5, 0), 0.0);
    EXPECT_EQ(angleTo(0, 5), kPi / 2);
    EXPECT_EQ(angleTo(-5, 0), kPi);
    EXPECT_EQ(angleTo(0, -5), 2 * kPi - kPi / 2);
}

TEST(CQNIMVector, TheAngleIgnoresWhatLiesAlongTheAxis) {
    EXPECT_NEAR(CQNIMVector(1, 0, 9).GetRotateAngle({0, 2, -3}, {0, 0, 4}), kPi / 2, 1e-15);
}

TEST(CQNIMVector, TheAngleRunsTheOtherWayAboutTheOppositeAxis) {
    EXPECT_NEAR(CQNIMVector::XAxis.GetRotateAngle(CQNIMVector::YAxis, -CQNIMVector::ZAxis),
                1.5 * kPi, 1e-15);
}

TEST(CQNIMVector, TheAngleOfAVectorWithoutDirectionIsZero) {
    EXPECT_EQ(CQNIMVector::XAxis.GetRotateAngle(CQNIMVector(), CQNIMVector::ZAxis), 0.0);
    EXPECT_EQ(CQNIMVector().GetRotateAngle(CQNIMVector::YAxis, CQNIMVector::ZAxis), 0.0);
}
