// SPDX-License-Identifier: Apache-2.0
// Where things lie in a quad tree over the plan, and in which order a search meets them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

namespace kycb::scenes::reference {

/// A closed rectangle in plan (mm); null, meeting nothing, at first.
struct Rect {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    bool IsNull() const { return !(minX <= maxX && minY <= maxY); }

    bool Meets(const Rect& other) const {
        return !IsNull() && !other.IsNull() && minX <= other.maxX && other.minX <= maxX &&
               minY <= other.maxY && other.minY <= maxY;
    }

    void Add(const Rect& other) {
        if (other.IsNull()) return;
        minX = std::min(minX, other.minX);
        minY = std::min(minY, other.minY);
        maxX = std::max(maxX, other.maxX);
        maxY = std::max(maxY, other.maxY);
    }
};

/// The numbers of the boxes that meet `search`, in the order in which a quad tree over `root`
/// delivers them that the boxes were inserted into in their order: a node's own, then those of its
/// quarters, upper right, lower right, upper left, lower left.
std::vector<std::size_t> FindInPlan(const Rect& root, const std::vector<Rect>& boxes,
                                    const Rect& search);

}  // namespace kycb::scenes::reference
