// SPDX-License-Identifier: Apache-2.0
#include "model/FloorTree.h"

#include "KYCollisionBase/model/ObjectModelInfo.h"

#include <algorithm>
#include <numeric>
#include <span>

#include <hwy/cache_control.h>

#include "model/PlanPaths.h"
#include "model/RadixSort.h"

namespace kycb::model {

namespace {

using KYTOOLS::GRAPH::BoundingBox3d;

// How many components ahead one is brought near: they lie all over the memory.
constexpr std::size_t kAhead = 16;
// Room for more components than this is not kept.
constexpr std::size_t kMostKept = 100'000;

bool IsInside(const BoundingBox3d& box, const BoundingBox3d& outer) {
    return outer.GetMinX() <= box.GetMinX() && box.GetMaxX() <= outer.GetMaxX() &&
           outer.GetMinY() <= box.GetMinY() && box.GetMaxY() <= outer.GetMaxY() &&
           outer.GetMinZ() <= box.GetMinZ() && box.GetMaxZ() <= outer.GetMaxZ();
}

}  // namespace

// Finds the rank of every member, by its path: the quarters that lead to its node.
class FloorTree::Placing {
  public:
    /// Members in the order of their insertion; to be filled.
    std::vector<Member> inserted;

    /// Their numbers by rank.
    const std::vector<std::uint32_t>& Place(const Cell& root) {
        crowds_.clear();
        order_.resize(inserted.size());
        std::iota(order_.begin(), order_.end(), 0U);
        crowds_.push_back({root, 0, order_.size()});
        while (!crowds_.empty()) {
            const Crowd crowd = crowds_.back();
            crowds_.pop_back();
            Sort(crowd);
        }
        return order_;
    }

  private:
    // Members below one cell, at successive ranks.
    struct Crowd {
        Cell cell;
        std::size_t first;
        std::size_t end;
    };

    // Whoever is deeper down than a path knows is sorted again from there.
    void Sort(const Crowd& crowd) {
        const std::span<std::uint32_t> numbers =
            std::span(order_).subspan(crowd.first, crowd.end - crowd.first);
        paths_.Begin(numbers.size());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            paths_.Set(i, inserted[numbers[i]].box.GetBoundingBox2d());
        }
        const std::span<const std::uint32_t> paths = paths_.FindFrom(crowd.cell);
        entries_.resize(numbers.size());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            entries_[i] = {paths[i], numbers[i]};
        }
        RadixSort(entries_, entryRoom_);
        std::size_t first = 0;
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            numbers[i] = entries_[i].number;
            const std::uint32_t path = entries_[i].key;
            if (path != entries_[first].key) first = i;
            if (!PlanPath::IsFull(path)) continue;
            const bool isLast = i + 1 == entries_.size() || entries_[i + 1].key != path;
            if (!isLast || i == first) continue;
            crowds_.push_back(
                {PlanPath::End(path, crowd.cell), crowd.first + first, crowd.first + i + 1});
        }
    }

    std::vector<std::uint32_t> order_;
    std::vector<Crowd> crowds_;
    PathFinder paths_;
    std::vector<SortEntry> entries_;
    std::vector<SortEntry> entryRoom_;
};

FloorTree::FloorTree(const BoundingBox3d& floorBox, const std::vector<ObjectModelInfo*>& components)
    : root_(floorBox.GetBoundingBox2d()) {
    thread_local Placing placing;  // keeps its room for the next tree
    placing.inserted.clear();
    for (std::size_t i = 0; i < components.size(); ++i) {
        const ObjectModelInfo& ahead = *components[std::min(i + kAhead, components.size() - 1)];
        hwy::Prefetch(&ahead.box_);
        hwy::Prefetch(&ahead.guidHash_);
        ObjectModelInfo* component = components[i];
        placing.inserted.push_back({component->box_, component->guidHash_, component});
        reach_.Add(component->box_);
    }
    holdsAll_ = reach_.IsNull() || IsInside(reach_, floorBox);

    members_.reserve(components.size());
    for (const std::uint32_t number : placing.Place(root_)) {
        members_.push_back(placing.inserted[number]);
    }
    if (placing.inserted.capacity() > kMostKept) placing = Placing();
}

void FloorTree::AddNodes() {
    AddNode(root_, 0, static_cast<std::uint32_t>(members_.size()));
}

// The members of a node stand in the order of its parts already.
void FloorTree::AddNode(const Cell& cell, std::uint32_t first, std::uint32_t end) {
    const std::size_t own = nodes_.size();
    nodes_.push_back({cell.GetBoundingBox(), first, end, 0});
    if (cell.IsDivisible()) {
        std::uint32_t rank = first;
        const auto takePart = [&](int part) {
            const std::uint32_t start = rank;
            while (rank < end &&
                   cell.ChooseQuadrant(members_[rank].box.GetBoundingBox2d()) == part) {
                ++rank;
            }
            return start;
        };
        takePart(Cell::kStay);
        nodes_[own].end = rank;
        for (int quarter = Cell::kUpperRight; quarter <= Cell::kLowerLeft; ++quarter) {
            const std::uint32_t start = takePart(quarter);
            if (start == rank) continue;
            AddNode(cell.Quarter(static_cast<Cell::Quadrant>(quarter)), start, rank);
        }
    }
    nodes_[own].behind = static_cast<std::uint32_t>(nodes_.size());
}

}  // namespace kycb::model
