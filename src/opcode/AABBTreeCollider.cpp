// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/AABBTreeCollider.h"

#include "KYCollisionBase/opcode/Model.h"

#include <algorithm>

#include "opcode/MeshTree.h"
#include "opcode/Query.h"

namespace Opcode {

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
    MeshTree* tree0 = cache.Model0 != nullptr ? cache.Model0->tree_.get() : nullptr;
    MeshTree* tree1 = cache.Model1 != nullptr ? cache.Model1->tree_.get() : nullptr;
    if (tree0 == nullptr || tree1 == nullptr) return false;
    const std::size_t limit = firstContact_ ? std::min(maxNbPairs_, 1U) : maxNbPairs_;
    kycb::opcode::CollideMeshes(*tree0, *tree1, {&pairs_, limit, callback_, userData_, scope_});
    return true;
}

}  // namespace Opcode
