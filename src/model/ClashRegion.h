// SPDX-License-Identifier: Apache-2.0
// The box around all contact points of a pair of meshes.
#pragma once

#include "KYCollisionBase/opcode/Point.h"
#include "KYCollisionBase/platform/CQNIMPosition.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kycb::model {

/// Corners in single precision, as the collider delivers its points. The corners of an untouched
/// region are the extreme values crosswise, so that their midpoint is the origin.
struct ClashRegion {
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;

    static constexpr float kLargest = std::numeric_limits<float>::max();

    IceMaths::Point maxCorner{-kLargest, -kLargest, -kLargest};
    IceMaths::Point minCorner{kLargest, kLargest, kLargest};
    int pointCount = 0;

    /// Includes `point`, unless a coordinate is not a number or infinite.
    void Include(const IceMaths::Point& point) {
        if (!IsUsable(point.x) || !IsUsable(point.y) || !IsUsable(point.z)) return;
        maxCorner = {std::max(maxCorner.x, point.x), std::max(maxCorner.y, point.y),
                     std::max(maxCorner.z, point.z)};
        minCorner = {std::min(minCorner.x, point.x), std::min(minCorner.y, point.y),
                     std::min(minCorner.z, point.z)};
        ++pointCount;
    }

    CQNIMPosition MaxPoint() const { return Widen(maxCorner); }
    CQNIMPosition MinPoint() const { return Widen(minCorner); }

  private:
    static bool IsUsable(float value) {
        return !std::isnan(value) && value != std::numeric_limits<float>::infinity();
    }
    static CQNIMPosition Widen(const IceMaths::Point& p) {
        return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
    }
};

/// The point halfway between two points, coordinate by coordinate.
inline ClashRegion::CQNIMPosition Midpoint(const ClashRegion::CQNIMPosition& p,
                                           const ClashRegion::CQNIMPosition& q) {
    return {(p.GetX() + q.GetX()) / 2.0, (p.GetY() + q.GetY()) / 2.0, (p.GetZ() + q.GetZ()) / 2.0};
}

}  // namespace kycb::model
