// SPDX-License-Identifier: Apache-2.0
#include "model/FloorTree.h"

#include "KYCollisionBase/model/ObjectModelInfo.h"

#include <algorithm>
#include <numeric>

namespace kycb::model {

namespace {

using KYTOOLS::GRAPH::BoundingBox3d;

// How many components ahead one is brought near: they lie all over the memory.
constexpr std::size_t kAhead = 16;

bool IsInside(const BoundingBox3d& box, const BoundingBox3d& outer) {
    return outer.GetMinX() <= box.GetMinX() && box.GetMaxX() <= outer.GetMaxX() &&
           outer.GetMinY() <= box.GetMinY() && box.GetMaxY() <= outer.GetMaxY() &&
           outer.GetMinZ() <= box.GetMinZ() && box.GetMaxZ() <= outer.GetMaxZ();
}

}  // namespace

// Sorts numbers of members until each stands at its rank.
class FloorTree::Placing {
  public:
    explicit Placing(const std::vector<Member>& members)
        : order_(members.size()), sorted_(members.size()), parts_(members.size()) {
        plans_.reserve(members.size());
        for (const Member& member : members) {
            plans_.push_back(member.box.GetBoundingBox2d());
        }
        std::iota(order_.begin(), order_.end(), 0U);
    }

    /// By rank, once placed.
    const std::vector<std::uint32_t>& Order() const { return order_; }

    void Place(const Cell& cell, std::uint32_t first, std::uint32_t end) {
        // One alone is at its place, however deep its node.
        if (end - first < 2 || !cell.IsDivisible()) return;
        const Parts parts = Sort(cell, first, end);
        for (std::size_t quarter = 0; quarter < 4; ++quarter) {
            Place(cell.Quarter(static_cast<Cell::Quadrant>(quarter)), parts[quarter + 1],
                  parts[quarter + 2]);
        }
    }

  private:
    // Those that stay come first, then the quarters in their order, each as they were inserted.
    Parts Sort(const Cell& cell, std::uint32_t first, std::uint32_t end) {
        Parts parts{};
        for (std::uint32_t i = first; i < end; ++i) {
            const auto part = static_cast<std::uint8_t>(cell.ChooseQuadrant(plans_[order_[i]]) + 1);
            parts_[i] = part;
            ++parts[part + 1U];
        }
        parts[0] = first;
        for (std::size_t part = 1; part < parts.size(); ++part) {
            parts[part] += parts[part - 1];
        }
        if (parts[1] == end) return parts;
        Parts next = parts;
        for (std::uint32_t i = first; i < end; ++i) {
            sorted_[next[parts_[i]]++] = order_[i];
        }
        std::copy(sorted_.data() + first, sorted_.data() + end, order_.data() + first);
        return parts;
    }

    std::vector<BoundingBox2d> plans_;
    std::vector<std::uint32_t> order_;
    std::vector<std::uint32_t> sorted_;
    std::vector<std::uint8_t> parts_;
};

FloorTree::FloorTree(const BoundingBox3d& floorBox, const std::vector<ObjectModelInfo*>& components)
    : root_(floorBox.GetBoundingBox2d()) {
    std::vector<Member> inserted;
    inserted.reserve(components.size());
    for (std::size_t i = 0; i < components.size(); ++i) {
        ObjectModelInfo* component = components[i];
        components[std::min(i + kAhead, components.size() - 1)]->PrefetchBox();
        inserted.push_back({component->GetBoundingBox(), component->GetGuidHash(), component});
        reach_.Add(inserted.back().box);
    }
    holdsAll_ = reach_.IsNull() || IsInside(reach_, floorBox);

    Placing placing(inserted);
    placing.Place(root_, 0, static_cast<std::uint32_t>(inserted.size()));
    members_.reserve(inserted.size());
    for (const std::uint32_t number : placing.Order()) {
        members_.push_back(inserted[number]);
    }
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
