// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/AABBTreeCollider.h"

#include "KYCollisionBase/opcode/Model.h"

#include <algorithm>

#include "opcode/MeshTree.h"
#include "opcode/Query.h"

namespace Opcode {

using kycb::opcode::Box;
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
    hasRegion_ = false;
    if (world0 != nullptr || world1 != nullptr) return false;
    MeshTree* tree0 = cache.Model0 != nullptr ? cache.Model0->tree_.get() : nullptr;
    MeshTree* tree1 = cache.Model1 != nullptr ? cache.Model1->tree_.get() : nullptr;
    if (tree0 == nullptr || tree1 == nullptr) return false;
    const std::size_t limit = firstContact_ ? std::min(maxNbPairs_, 1U) : maxNbPairs_;
    Box region = kycb::opcode::EmptyBox();
    kycb::opcode::CollideMeshes(*tree0, *tree1,
                                {&pairs_, limit, callback_, userData_, regionMode_, &region});
    hasRegion_ = regionMode_ != ContactRegion::kNotKept && !pairs_.empty();
    regionLow_ = {region.low[0], region.low[1], region.low[2]};
    regionHigh_ = {region.high[0], region.high[1], region.high[2]};
    return true;
}

bool AABBTreeCollider::GetContactRegion(IceMaths::Point& low, IceMaths::Point& high) const {
    if (!hasRegion_) return false;
    low = regionLow_;
    high = regionHigh_;
    return true;
}

}  // namespace Opcode
