// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/BoundingBox2d.h"

#include <algorithm>
#include <limits>

namespace KYTOOLS::GRAPH {

/// A closed axis-aligned box in world coordinates, in millimetres, z pointing up.
///
/// The same conventions as for BoundingBox2d hold: touching counts as meeting, and the default is
/// the null box, which is empty and grows to exactly the first box added.
class BoundingBox3d {
  public:
    /// The null box.
    BoundingBox3d() = default;

    /// The box between two corners; the caller gives them ordered (min <= max on each axis).
    BoundingBox3d(double minX, double minY, double minZ, double maxX, double maxY, double maxZ)
        : plan_(minX, minY, maxX, maxY), minZ_(minZ), maxZ_(maxZ) {}

    double GetMinX() const { return plan_.GetMinX(); }
    double GetMinY() const { return plan_.GetMinY(); }
    double GetMinZ() const { return minZ_; }
    double GetMaxX() const { return plan_.GetMaxX(); }
    double GetMaxY() const { return plan_.GetMaxY(); }
    double GetMaxZ() const { return maxZ_; }

    /// The projection onto the xy plane; null for a null box.
    BoundingBox2d GetBoundingBox2d() const { return IsNull() ? BoundingBox2d() : plan_; }

    /// True for a box that holds no point. A box with a NaN bound is null too.
    bool IsNull() const { return !(minZ_ <= maxZ_) || plan_.IsNull(); }

    /// True when the two closed boxes share at least one point.
    bool IsIntersect(const BoundingBox3d& other) const {
        return minZ_ <= other.maxZ_ && other.minZ_ <= maxZ_ && plan_.IsIntersect(other.plan_) &&
               !IsNull() && !other.IsNull();
    }

    /// Grows this box to the smallest one that also holds `other`; a null `other` changes nothing.
    void Add(const BoundingBox3d& other) {
        if (other.IsNull()) return;
        plan_.Add(other.plan_);
        minZ_ = std::min(minZ_, other.minZ_);
        maxZ_ = std::max(maxZ_, other.maxZ_);
    }

    friend bool operator==(const BoundingBox3d&, const BoundingBox3d&) = default;

  private:
    BoundingBox2d plan_;
    double minZ_ = std::numeric_limits<double>::infinity();
    double maxZ_ = -std::numeric_limits<double>::infinity();
};

}  // namespace KYTOOLS::GRAPH
