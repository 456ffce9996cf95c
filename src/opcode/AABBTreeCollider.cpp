// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/AABBTreeCollider.h"

#include "KYCollisionBase/opcode/Model.h"

#include "opcode/MeshTree.h"

namespace Opcode {

using kycb::opcode::ContactPoints;
using kycb::opcode::FindContact;
using kycb::opcode::MeshTree;

AABBTreeCollider::AABBTreeCollider() = default;
AABBTreeCollider::~AABBTreeCollider() = default;

void AABBTreeCollider::SetContactCallback(ContactCallback callback, void* userData) {
    callback_ = callback;
    userData_ = userData;
}

bool AABBTreeCollider::Collide(BVTCache& cache, const IceMaths::Matrix4x4* world0,
                               const IceMaths::Matrix4x4* world1) {
    pairs_.clear();
    if (world0 != nullptr || world1 != nullptr) return false;
    const MeshTree* tree0 = cache.Model0 != nullptr ? cache.Model0->GetTree() : nullptr;
    const MeshTree* tree1 = cache.Model1 != nullptr ? cache.Model1->GetTree() : nullptr;
    if (tree0 == nullptr || tree1 == nullptr) return false;
    for (const MeshTree::Item& a : tree0->Items()) {
        for (const MeshTree::Item& b : tree1->Items()) {
            ContactPoints points;
            if (!FindContact(a.triangle, b.triangle, points)) continue;
            pairs_.push_back({a.id, b.id});
            for (std::size_t i = 0; callback_ != nullptr && i < points.count; ++i)
                callback_(points.p[i], userData_);
            if (firstContact_ || pairs_.size() >= maxNbPairs_) return true;
        }
    }
    return true;
}

}  // namespace Opcode
