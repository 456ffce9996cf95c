// SPDX-License-Identifier: Apache-2.0
// The quad tree of a floor, laid flat.
#pragma once

#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KYCOLLISION::MODEL {
class ObjectModelInfo;
}

namespace kycb::model {

/// A quad tree over the components of one floor, laid flat: its components in the order in which a
/// walk over all nodes meets them, its nodes as ranges of that order.
///
/// The order does not depend on what is searched for, so whoever finds components in another way
/// sorts them by their rank, the place in this order. Components and boxes are those of the
/// construction; the components are borrowed.
class FloorTree {
  public:
    using BoundingBox2d = KYTOOLS::GRAPH::BoundingBox2d;
    using BoundingBox3d = KYTOOLS::GRAPH::BoundingBox3d;
    using ObjectModelInfo = KYCOLLISION::MODEL::ObjectModelInfo;

    /// A component with what a search asks about it; one cache line.
    struct Member {
        BoundingBox3d box;
        std::size_t guidHash;
        ObjectModelInfo* object;
    };

    /// Places the components, given in the order of their insertion, in a tree over `floorBox`.
    FloorTree(const BoundingBox3d& floorBox, const std::vector<ObjectModelInfo*>& components);

    /// By rank.
    const std::vector<Member>& Members() const { return members_; }

    /// The tree's place in plan.
    const BoundingBox2d& GetPlan() const { return root_.GetBoundingBox(); }
    /// The box around all components.
    const BoundingBox3d& GetReach() const { return reach_; }
    /// Whether every component lies inside the floor box. Then a box that meets a component also
    /// meets the floor and every node above the component.
    bool HoldsAll() const { return holdsAll_; }

    /// Calls `visit(component)` for every component of every node that meets `plan`, by rank.
    template <class Visitor>
    void VisitNear(const BoundingBox2d& plan, const Visitor& visit) {
        if (nodes_.empty()) AddNodes();
        for (std::size_t n = 0; n < nodes_.size();) {
            const Node& node = nodes_[n];
            if (!plan.IsIntersect(node.plan)) {
                n = node.behind;
                continue;
            }
            for (std::size_t rank = node.first; rank < node.end; ++rank) {
                visit(members_[rank].object);
            }
            ++n;
        }
    }

  private:
    using Cell = KYTOOLS::GRAPH::QuadTreeCell;

    // In the order of the walk, so that the children of a node follow it.
    struct Node {
        BoundingBox2d plan;
        std::uint32_t first;   // rank of its own first component
        std::uint32_t end;     // behind its own last one
        std::uint32_t behind;  // the first node that is not below this one
    };
    class Placing;

    void AddNodes();
    void AddNode(const Cell& cell, std::uint32_t first, std::uint32_t end);

    Cell root_;
    std::vector<Member> members_;
    std::vector<Node> nodes_;  // made when they are first asked for
    BoundingBox3d reach_;
    bool holdsAll_ = false;
};

}  // namespace kycb::model
