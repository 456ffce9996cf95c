// SPDX-License-Identifier: Apache-2.0
// Signs of determinants of points with single-precision coordinates, exact for every finite input.
#pragma once

#include "KYCollisionBase/opcode/Point.h"

#include <cmath>

namespace kycb::opcode {

using IceMaths::Point;

/// Which coordinate a projection drops.
enum class DroppedAxis { kX, kY, kZ };

/// ((b - a) x (c - a)) . (d - a), rounded, with the exact sign: positive when `d` lies on the side
/// from which a, b, c turn counter-clockwise, 0 only when the four points lie in one plane.
double Orientation(const Point& a, const Point& b, const Point& c, const Point& d);

/// The two coordinates that a projection keeps, in the order that keeps the sense of turning.
struct Projected {
    double u;
    double v;
};

inline Projected Project(const Point& p, DroppedAxis dropped) {
    const auto x = static_cast<double>(p.x);
    const auto y = static_cast<double>(p.y);
    const auto z = static_cast<double>(p.z);
    switch (dropped) {
        case DroppedAxis::kX:
            return {y, z};
        case DroppedAxis::kY:
            return {z, x};
        case DroppedAxis::kZ:
            break;
    }
    return {x, y};
}

/// As Orientation below, in expansion arithmetic.
double ExactOrientation(const Projected& a, const Projected& b, const Projected& c);

/// (b - a) x (c - a), rounded, with the exact sign: positive when a, b, c turn counter-clockwise.
/// The coordinates must be those of floats.
inline double Orientation(const Projected& a, const Projected& b, const Projected& c) {
    // Three roundings of half an ulp in each of two terms (Shewchuk 1997), and one to spare.
    // Neither overflow nor underflow is possible, so magnitudes of 0 prove an exact 0.
    constexpr double kBound = 4 * 0x1p-53;
    const double left = (b.u - a.u) * (c.v - a.v);
    const double right = (b.v - a.v) * (c.u - a.u);
    const double terms = std::fabs(left) + std::fabs(right);
    const double value = left - right;
    if (std::fabs(value) > kBound * terms || terms == 0.0) return value;
    return ExactOrientation(a, b, c);
}

/// The component of (b - a) x (c - a) along the dropped axis: the same of the projections.
inline double Orientation(const Point& a, const Point& b, const Point& c, DroppedAxis dropped) {
    return Orientation(Project(a, dropped), Project(b, dropped), Project(c, dropped));
}

inline int SignOf(double value) {
    return (value > 0.0) - (value < 0.0);
}

}  // namespace kycb::opcode
