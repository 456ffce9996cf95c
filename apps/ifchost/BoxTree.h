// SPDX-License-Identifier: Apache-2.0
// A static tree of axis-aligned boxes for neighbour and ray queries on bodies.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "BodyMath.h"

namespace ifchost {

/// Built once over a list of boxes; answers which of them may meet a box or a ray. Queries only
/// read, so any number of threads may ask at the same time. Median splits on the widest axis keep
/// the depth logarithmic whatever the input.
class BoxTree {
  public:
    explicit BoxTree(std::span<const BodyBox> boxes);

    /// Calls `visit(index)` for every box that meets `box`, until it returns false.
    template <typename Visitor>
    void VisitMeeting(const BodyBox& box, Visitor&& visit) const {
        Walk([&box](const BodyBox& node) { return node.Meets(box); }, visit);
    }

    /// Calls `visit(index)` for every box that the ray from `origin` along `direction` may pass.
    template <typename Visitor>
    void VisitRay(const Vec3& origin, const Vec3& direction, Visitor&& visit) const {
        Walk([&](const BodyBox& node) { return RayMeets(node, origin, direction); }, visit);
    }

  private:
    /// Leaves have `count` above 0 and list order_[first, first + count); inner nodes have their
    /// left child next to them and the right one at `first`.
    struct Node {
        BodyBox box;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
    };

    template <typename Test, typename Visitor>
    void Walk(const Test& test, Visitor& visit) const;

    void Build(std::span<const BodyBox> boxes, std::uint32_t first, std::uint32_t last);
    static bool RayMeets(const BodyBox& box, const Vec3& origin, const Vec3& direction);

    std::vector<Node> nodes_;
    std::vector<std::uint32_t> order_;
    std::vector<BodyBox> leafBoxes_;
};

template <typename Test, typename Visitor>
void BoxTree::Walk(const Test& test, Visitor& visit) const {
    // Halving splits of 2^32 boxes at most go 32 levels down, and each level leaves one node open.
    std::uint32_t open[64];
    std::uint32_t openCount = 0;
    if (!nodes_.empty()) open[openCount++] = 0;
    while (openCount > 0) {
        const std::uint32_t at = open[--openCount];
        const Node& node = nodes_[at];
        if (!test(node.box)) continue;
        if (node.count == 0) {
            open[openCount++] = node.first;
            open[openCount++] = at + 1;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            if (test(leafBoxes_[i]) && !visit(order_[i])) return;
        }
    }
}

}  // namespace ifchost
