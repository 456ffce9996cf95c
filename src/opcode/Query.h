// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/opcode/AABBTreeCollider.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "opcode/MeshTree.h"

namespace kycb::opcode {

/// What a query is asked for, and where its answer goes.
struct Query {
    std::vector<Opcode::Pair>* pairs;
    std::size_t maxPairs;
    Opcode::ContactCallback callback;  // may be null
    void* userData;
    Opcode::ContactRegion regionMode;
    Box* region;  // grows to hold the contact points when the region is kept
};

/// Appends the touching pairs of two meshes and delivers their contact points.
///
/// Makes what it needs of both trees, so neither may be in use by another thread.
void CollideMeshes(MeshTree& a, MeshTree& b, const Query& query);

/// Builds all of a tree that queries would build as they go.
void BuildWholeTree(MeshTree& tree);

/// The instruction set (a HWY_* target) that queries run on.
std::int64_t QueryTarget();

}  // namespace kycb::opcode
