// SPDX-License-Identifier: Apache-2.0
// The exact test of two triangles, and where they touch.
#pragma once

#include "KYCollisionBase/opcode/Point.h"

#include <array>
#include <cstddef>

namespace kycb::opcode {

using IceMaths::Point;

struct Triangle {
    std::array<Point, 3> v;
};

/// The corners of what two triangles have in common, without repetitions.
struct ContactPoints {
    // Two triangles of one plane overlap in a hexagon at most.
    static constexpr std::size_t kCapacity = 6;
    std::array<Point, kCapacity> p;
    std::size_t count = 0;

    void Add(const Point& point);
};

/// Whether every coordinate is finite. Others touch nothing, which callers must see to.
bool IsFinite(const Triangle& t);

/// Whether the closed triangles `a` and `b` share a point, exactly; both must be finite. When they
/// do, `points` (which must be empty) receives the corners of the common set, at least one.
bool FindContact(const Triangle& a, const Triangle& b, ContactPoints& points);

/// The same for triangles whose vertices are known to lie in one plane, faster.
bool FindCoplanarContact(const Triangle& a, const Triangle& b, ContactPoints& points);

}  // namespace kycb::opcode
