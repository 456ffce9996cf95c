// SPDX-License-Identifier: Apache-2.0
// Finds the components of a floor near a box faster than the floor's quad tree, in its order.
#pragma once

#include "KYCollisionBase/platform/BoundingBox3d.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace KYCOLLISION::MODEL {
class ObjectModelInfo;
}

namespace kycb::model {

/// A packed tree of eight-wide nodes over the boxes of one floor.
///
/// The order in which the quad tree delivers components does not depend on the query: it is that of
/// a walk over all its nodes. So the index is built over components in that order, searches its own
/// way, and sorts the few that it finds by their place in it.
///
/// Boxes are kept in single precision, rounded outward; what is found is compared exactly before it
/// is delivered. Source: I. Kamel, C. Faloutsos, "On packing R-trees" (1993), here along a Z-curve.
class NeighbourIndex {
  public:
    using BoundingBox3d = KYTOOLS::GRAPH::BoundingBox3d;
    using ObjectModelInfo = KYCOLLISION::MODEL::ObjectModelInfo;

    /// Indexes the components with the boxes that they have now; a component without one is left
    /// out, because no query meets it. The components are borrowed.
    explicit NeighbourIndex(const std::vector<ObjectModelInfo*>& inDeliveryOrder);

    /// Appends the components whose box meets `box` in plan and whose vertical range overlaps
    /// [low, high], closed and compared as it stands, in the order of construction.
    void Query(const BoundingBox3d& box, double low, double high,
               std::vector<ObjectModelInfo*>& found);

  private:
    static constexpr std::size_t kWidth = 8;

    // Unused lanes hold NaN, which no comparison takes for a hit.
    struct Node {
        std::array<float, kWidth> minX, minY, minZ, maxX, maxY, maxZ;
    };
    struct FloatBox {
        float minX, minY, minZ, maxX, maxY, maxZ;
    };
    using Level = std::vector<Node>;

    static FloatBox RoundedOutward(const BoundingBox3d& box);
    static FloatBox Around(const Node& node);
    static Level LevelOver(const std::vector<FloatBox>& boxes);
    static unsigned Hits(const Node& node, const FloatBox& query);
    void Descend(std::size_t level, std::size_t node, const FloatBox& query);

    std::vector<ObjectModelInfo*> objects_;  // by rank, the order of delivery
    std::vector<std::uint32_t> ranks_;       // by place in the leaves
    std::vector<Level> levels_;              // from the leaves to the one root node
    std::vector<std::uint32_t> hits_;        // ranks found by the query at hand
};

}  // namespace kycb::model
