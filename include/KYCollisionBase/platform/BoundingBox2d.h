// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <limits>

namespace KYTOOLS::GRAPH {

/// A closed axis-aligned rectangle in the model's xy plane, in millimetres.
///
/// Closed means that touching counts as meeting. The null box, which is the default, is empty: it
/// contains nothing, meets nothing (not even another null box), and grows to exactly the first box
/// that is added to it.
class BoundingBox2d {
  public:
    /// The null box.
    BoundingBox2d() = default;

    /// The box between two corners; the caller gives them ordered (min <= max on both axes).
    BoundingBox2d(double minX, double minY, double maxX, double maxY)
        : minX_(minX), minY_(minY), maxX_(maxX), maxY_(maxY) {}

    double GetMinX() const { return minX_; }
    double GetMinY() const { return minY_; }
    double GetMaxX() const { return maxX_; }
    double GetMaxY() const { return maxY_; }

    /// True for a box that holds no point. A box with a NaN bound is null too.
    bool IsNull() const { return !(minX_ <= maxX_ && minY_ <= maxY_); }

    /// True when the two closed boxes share at least one point.
    bool IsIntersect(const BoundingBox2d& other) const {
        return minX_ <= other.maxX_ && other.minX_ <= maxX_ && minY_ <= other.maxY_ &&
               other.minY_ <= maxY_ && !IsNull() && !other.IsNull();
    }

    /// Grows this box to the smallest one that also holds `other`; a null `other` changes nothing.
    void Add(const BoundingBox2d& other) {
        if (other.IsNull()) return;
        minX_ = std::min(minX_, other.minX_);
        minY_ = std::min(minY_, other.minY_);
        maxX_ = std::max(maxX_, other.maxX_);
        maxY_ = std::max(maxY_, other.maxY_);
    }

    friend bool operator==(const BoundingBox2d&, const BoundingBox2d&) = default;

  private:
    double minX_ = std::numeric_limits<double>::infinity();
    double minY_ = std::numeric_limits<double>::infinity();
    double maxX_ = -std::numeric_limits<double>::infinity();
    double maxY_ = -std::numeric_limits<double>::infinity();
};

}  // namespace KYTOOLS::GRAPH
