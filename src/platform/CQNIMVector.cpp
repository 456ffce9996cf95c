// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMVector.h"

#include <cmath>
#include <numbers>

namespace QNIM::GeometryPrimitiveResource {

namespace {

constexpr double kQuarterTurn = std::numbers::pi / 2.0;

// Half a unit in the last place of a float up to 2 pi, the error of an angle written as a float,
// with some room (radians).
constexpr double kSinglePrecisionAngle = 2.5e-7;

// Beyond this an angle in single precision no longer tells quarter turns apart (quarter turns).
constexpr double kMaxSnappedTurns = 4.0;

// Between these the squares of all parts that matter are normal numbers (mm^2).
constexpr double kLeastSafeSquare = 1e-250;
constexpr double kMostSafeSquare = 1e250;

struct SineCosine {
    double sine;
    double cosine;
};

SineCosine OfQuarterTurns(int turns) {
    switch (turns & 3) {
        case 0:
            return {0.0, 1.0};
        case 1:
            return {1.0, 0.0};
        case 2:
            return {0.0, -1.0};
        default:
            return {-1.0, 0.0};
    }
}

SineCosine Of(double angle) {
    const double turns = std::nearbyint(angle / kQuarterTurn);
    if (std::abs(turns) <= kMaxSnappedTurns &&
        std::abs(angle - turns * kQuarterTurn) <= kSinglePrecisionAngle) {
        return OfQuarterTurns(static_cast<int>(turns));
    }
    return {std::sin(angle), std::cos(angle)};
}

}  // namespace

constinit const CQNIMVector CQNIMVector::XAxis{1.0, 0.0, 0.0};
constinit const CQNIMVector CQNIMVector::YAxis{0.0, 1.0, 0.0};
constinit const CQNIMVector CQNIMVector::ZAxis{0.0, 0.0, 1.0};

double CQNIMVector::Length() const {
    // hypot costs ten times a square root, and only extreme lengths need it.
    const double square = x_ * x_ + y_ * y_ + z_ * z_;
    if (square > kLeastSafeSquare && square < kMostSafeSquare) return std::sqrt(square);
    return std::hypot(x_, y_, z_);
}

void CQNIMVector::Normalise() {
    const double length = Length();
    if (!(length > 0.0) || !std::isfinite(length)) return;
    // Dividing, not multiplying by the reciprocal: x / |x| is exactly 1.
    x_ /= length;
    y_ /= length;
    z_ /= length;
}

CQNIMVector CQNIMVector::RotateByAxis(double angle, const CQNIMVector& axis) const {
    CQNIMVector unit = axis;
    unit.Normalise();
    if (!(unit.Length() > 0.0)) return *this;
    const SineCosine turn = Of(angle);
    // Rodrigues' formula: the part along the axis stays, the part across it turns.
    const CQNIMVector along = unit * Dot(unit);
    const CQNIMVector across = *this - along;
    return along + across * turn.cosine + unit.Cross(*this) * turn.sine;
}

double CQNIMVector::GetRotateAngle(const CQNIMVector& target, const CQNIMVector& axis) const {
    CQNIMVector unit = axis;
    unit.Normalise();
    const double sine = unit.Dot(Cross(target));
    const double cosine = Dot(target) - Dot(unit) * target.Dot(unit);
    if (sine == 0.0 && cosine == 0.0) return 0.0;
    const double angle = std::atan2(sine, cosine);
    return angle < 0.0 ? angle + 4.0 * kQuarterTurn : angle;
}

double CQNIMVector::Dot(const CQNIMVector& other) const {
    return x_ * other.x_ + y_ * other.y_ + z_ * other.z_;
}

CQNIMVector CQNIMVector::Cross(const CQNIMVector& other) const {
    return {y_ * other.z_ - z_ * other.y_, z_ * other.x_ - x_ * other.z_,
            x_ * other.y_ - y_ * other.x_};
}

}  // namespace QNIM::GeometryPrimitiveResource
