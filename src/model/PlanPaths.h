// SPDX-License-Identifier: Apache-2.0
// Where boxes go in a quad tree, many at a time.
#pragma once

#include "KYCollisionBase/platform/QuadTree.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kycb::model {

/// The quarters that lead from a cell to a box's place below it, as one number: the order of paths
/// is that of a walk through the tree, in which whoever stays at a node comes before those further
/// down.
struct PlanPath {
    /// Levels that a path knows; a box may go deeper.
    static constexpr unsigned kLevels = 13;

    using Cell = KYTOOLS::GRAPH::QuadTreeCell;

    /// Whether the path ends for want of levels.
    static bool IsFull(std::uint32_t path) {
        return (path & ((1U << kBitsForDepth) - 1U)) == kLevels;
    }
    /// The cell where a full path from `cell` ends.
    static Cell End(std::uint32_t path, Cell cell);

    // The quarter on each level takes two bits, that on the first level the uppermost. Below them
    // stands the number of levels.
    static constexpr unsigned kBitsForDepth = 4;
    static constexpr unsigned ShiftOf(unsigned level) {
        return 2U * (kLevels - 1U - level) + kBitsForDepth;
    }
};

/// Finds the paths of many boxes by the rules of QuadTreeCell.
class PathFinder {
  public:
    /// Boxes that are led down at once, on the widest instruction set.
    static constexpr std::size_t kMostLanes = 8;

    /// Makes room for `count` boxes, all of which are to be set; the earlier ones are gone.
    void Begin(std::size_t count) {
        count_ = count;
        const std::size_t room = (count + kMostLanes - 1) / kMostLanes * kMostLanes;
        for (auto* bounds : {&low_, &high_}) {
            for (std::vector<double>& values : *bounds) {
                values.resize(room);
            }
        }
        paths_.resize(room);
    }
    void Set(std::size_t number, const KYTOOLS::GRAPH::BoundingBox2d& box) {
        low_[0][number] = box.GetMinX();
        low_[1][number] = box.GetMinY();
        high_[0][number] = box.GetMaxX();
        high_[1][number] = box.GetMaxY();
    }
    /// The path from `root` of each box, by number.
    std::span<const std::uint32_t> FindFrom(const KYTOOLS::GRAPH::QuadTreeCell& root);

  private:
    // Side by side, by axis: x, y. Behind the last box there may be some more for the last batch.
    std::array<std::vector<double>, 2> low_;
    std::array<std::vector<double>, 2> high_;
    std::vector<std::uint32_t> paths_;
    std::size_t count_ = 0;
};

}  // namespace kycb::model
