// SPDX-License-Identifier: Apache-2.0
// Signs of determinants of points with single-precision coordinates, exact for every finite input.
#pragma once

#include "KYCollisionBase/opcode/Point.h"

namespace kycb::opcode {

using IceMaths::Point;

/// Which coordinate a projection drops.
enum class DroppedAxis { kX, kY, kZ };

/// ((b - a) x (c - a)) . (d - a), rounded, with the exact sign: positive when `d` lies on the side
/// from which a, b, c turn counter-clockwise, 0 only when the four points lie in one plane.
double Orientation(const Point& a, const Point& b, const Point& c, const Point& d);

/// The component of (b - a) x (c - a) along the dropped axis, rounded, with the exact sign:
/// positive when a, b, c turn counter-clockwise in the projection.
double Orientation(const Point& a, const Point& b, const Point& c, DroppedAxis dropped);

inline int SignOf(double value) {
    return (value > 0.0) - (value < 0.0);
}

}  // namespace kycb::opcode
