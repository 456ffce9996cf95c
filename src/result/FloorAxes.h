// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <vector>

namespace kycb {

/// The grid axes of a floor as a host hands them over. Destroyed with this record, whatever ends
/// its life: the tree first, which points to the items, then the items.
struct FloorAxes {
    using AxisItem = KYCOLLISION::LOGIC::SQNGIAxisItem;

    FloorAxes() = default;
    ~FloorAxes() {
        tree = {};
        for (AxisItem* item : items)
            delete item;
    }
    FloorAxes(const FloorAxes&) = delete;
    FloorAxes& operator=(const FloorAxes&) = delete;

    std::vector<AxisItem*> items;
    KYTOOLS::GRAPH::QuadTree<AxisItem*> tree;
};

}  // namespace kycb
