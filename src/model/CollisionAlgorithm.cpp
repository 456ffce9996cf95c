// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/CollisionAlgorithm.h"

#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/opcode/AABBTreeCollider.h"
#include "KYCollisionBase/opcode/BVTCache.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/rule/KyCollisionMode.h"

#include <limits>

#include "model/ClashRegion.h"
#include "model/ClearanceTables.h"

namespace KYCOLLISION::MODEL {

namespace {

using Rule::eModeClearance;
using Rule::eModeHard;
using Rule::eModeTolerance;
using Rule::KyCollisionMode;

// What the clearance step knows of a component's kind.
struct SpacingKind {
    bool isStructural = false;
    int run = 0;  // 0: no services run

    explicit SpacingKind(const ObjectModelInfo& obj) {
        if (const AttCategoryModelInfo* category = obj.GetBelongCategoryModel()) {
            isStructural = category->IsStructuralMember();
            run = category->GetRunKind();
        }
    }
    bool IsSpacingSide() const { return isStructural || run > 0; }
};

void ShrinkByTolerance(const KyCollisionMode& mode, int& effectiveMode, int& offset) {
    if (mode.GetModeType() != eModeTolerance) return;
    const int tolerance = mode.GetTolerance();
    effectiveMode = eModeTolerance;
    offset =
        tolerance == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -tolerance;
}

// Whether the kinds of the two components decide, rather than the tolerances alone.
bool IsClearanceAsked(int typeA, int typeB) {
    if (typeA == eModeHard || typeA == eModeTolerance) return typeB == eModeClearance;
    return typeA == eModeClearance && typeB <= eModeTolerance;
}

// Whether the tolerances alone decide. An unknown mode on either side switches both off.
bool IsToleranceAsked(int typeA, int typeB) {
    return (typeA == eModeHard || typeA == eModeTolerance) &&
           (typeB == eModeHard || typeB == eModeTolerance);
}

void IncludeInRegion(const IceMaths::Point& point, void* region) {
    static_cast<kycb::model::ClashRegion*>(region)->Include(point);
}

}  // namespace

CollisionAlgorithm::CollisionAlgorithm(ObjectModelInfo* a, ObjectModelInfo* b) : a_(a), b_(b) {}
CollisionAlgorithm::~CollisionAlgorithm() = default;
CollisionAlgorithm::CollisionAlgorithm(const CollisionAlgorithm&) = default;
CollisionAlgorithm& CollisionAlgorithm::operator=(const CollisionAlgorithm&) = default;

void CollisionAlgorithm::SetCollisionMode(KyCollisionMode* a, KyCollisionMode* b) {
    modeA_ = a;
    modeB_ = b;
}

void CollisionAlgorithm::GetBodyOffset(int& a, int& b) const {
    a = bodyOffsetA_;
    b = bodyOffsetB_;
}

bool CollisionAlgorithm::CollisionCheck(CQNIMPosition& p1, CQNIMPosition& p2) {
    if (!a_ || !b_ || !source_ || !modeA_ || !modeB_) return false;
    int effectiveModeA = 0;
    int effectiveModeB = 0;
    GetCollisionMode(effectiveModeA, bodyOffsetA_, effectiveModeB, bodyOffsetB_);
    Opcode::Model* meshA = a_->GetOpcodeModel(source_, bodyOffsetA_);
    Opcode::Model* meshB = b_->GetOpcodeModel(source_, bodyOffsetB_);
    return CollisionCheck_Opcode(meshA, meshB, p1, p2);
}

void CollisionAlgorithm::GetCollisionMode(int& modeA, int& offsetA, int& modeB, int& offsetB) {
    modeA = offsetA = modeB = offsetB = 0;
    const int typeA = modeA_->GetModeType();
    const int typeB = modeB_->GetModeType();
    const SpacingKind kindA(*a_);
    const SpacingKind kindB(*b_);
    const bool clearance = IsClearanceAsked(typeA, typeB);
    if (clearance && kindA.IsSpacingSide() && kindB.IsSpacingSide()) {
        if (kindA.run < 1) {
            if (kindB.run < 1) return;
            modeB = eModeClearance;
            offsetB = kycb::model::SingleClearance(kindB.run);
        } else if (kindB.run > 0) {
            modeA = modeB = eModeClearance;
            offsetA = offsetB = GetGfjjDist(kindA.run, kindB.run) / 2;
        } else {
            modeA = eModeClearance;
            offsetA = kycb::model::SingleClearance(kindA.run);
        }
    } else if (clearance || IsToleranceAsked(typeA, typeB)) {
        ShrinkByTolerance(*modeA_, modeA, offsetA);
        ShrinkByTolerance(*modeB_, modeB, offsetB);
    }
}

int CollisionAlgorithm::GetGfjjDist(int kindA, int kindB) {
    return kycb::model::RunSpacing(kindA, kindB);
}

bool CollisionAlgorithm::CollisionCheck_Opcode(Opcode::Model* a, Opcode::Model* b,
                                               CQNIMPosition& p1, CQNIMPosition& p2) {
    if (!a || !b || !a->GetTree() || !b->GetTree()) return false;
    Opcode::BVTCache cache;
    cache.ResetCache();
    cache.Model0 = a;
    cache.Model1 = b;
    kycb::model::ClashRegion region;
    Opcode::AABBTreeCollider collider;
    collider.SetFullBoxBoxTest(true);
    collider.SetFullPrimBoxTest(true);
    collider.SetFirstContact(false);
    collider.SetTemporalCoherence(false);
    // Only the region that all contacts span is used, and bodies deep inside each other touch in
    // very many triangles.
    collider.SetContactRegion(Opcode::ContactRegion::kOnly);
    collider.SetContactCallback(&IncludeInRegion, &region);
    if (!collider.Collide(cache, nullptr, nullptr)) return false;
    if (!collider.GetContactStatus() || collider.GetNbPairs() == 0) return false;
    ShowIntersectTriangles(collider, a, b);
    p1 = region.MaxPoint();
    p2 = region.MinPoint();
    return true;
}

void CollisionAlgorithm::ShowIntersectTriangles(const Opcode::AABBTreeCollider& /*collider*/,
                                                Opcode::Model* /*a*/, Opcode::Model* /*b*/) {
    // A place for diagnostic drawing; a check run draws nothing.
}

}  // namespace KYCOLLISION::MODEL
