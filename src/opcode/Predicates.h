// SPDX-License-Identifier: Apache-2.0
// Signs of determinants of points with single-precision coordinates, exact for every finite input.
#pragma once

#include "KYCollisionBase/opcode/Point.h"

namespace kycb::opcode {

using IceMaths::Point;

/// Which coordinate a projection drops.
enum class DroppedAxis { kX, kY, kZ };

/// The sign (-1, 0, 1) of ((b - a) x (c - a)) . (d - a): positive when `d` lies on the side from
/// which a, b, c turn counter-clockwise.
int OrientationSign(const Point& a, const Point& b, const Point& c, const Point& d);

/// The sign of the component of (b - a) x (c - a) along the dropped axis: positive when a, b, c
/// turn counter-clockwise in the projection.
int OrientationSign(const Point& a, const Point& b, const Point& c, DroppedAxis dropped);

}  // namespace kycb::opcode
