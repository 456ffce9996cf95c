// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/CQNIMPosition.h"

namespace Opcode {
class AABBTreeCollider;
class Model;
}  // namespace Opcode
namespace KYCOLLISION::LOGIC {
class IModelDataSource;
}
namespace KYCOLLISION::Rule {
class KyCollisionMode;
}

namespace KYCOLLISION::MODEL {

class ObjectModelInfo;

/// Decides whether two components clash, and where: chooses a body offset for each from the modes
/// of their rules and from their kinds, and tests the two meshes that the data source makes for
/// these offsets. A short-lived value, copied freely; it borrows everything it is given.
class KYCB_API CollisionAlgorithm {
  public:
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;

    /// No data source, no modes, offsets 0.
    CollisionAlgorithm(ObjectModelInfo* a, ObjectModelInfo* b);
    virtual ~CollisionAlgorithm();
    CollisionAlgorithm(const CollisionAlgorithm&);
    CollisionAlgorithm& operator=(const CollisionAlgorithm&);

    void SetDataSource(LOGIC::IModelDataSource* source) { source_ = source; }
    /// The modes of the two components' rules, in the order of the components.
    void SetCollisionMode(Rule::KyCollisionMode* a, Rule::KyCollisionMode* b);

    /// The body offsets of the last check (mm): positive grows the body, negative shrinks it.
    void GetBodyOffset(int& a, int& b) const;

    /// Whether the two bodies, offset as the modes call for, touch. On a clash `p1` and `p2`
    /// receive the highest and the lowest corner of the region in which they do (mm, world
    /// coordinates); otherwise they keep their values. False when anything needed is missing: a
    /// component, the data source, a mode or a mesh.
    bool CollisionCheck(CQNIMPosition& p1, CQNIMPosition& p2);

  private:
    // The modes in effect and the body offsets (mm), from the two rules' modes and the two kinds.
    void GetCollisionMode(int& modeA, int& offsetA, int& modeB, int& offsetB);
    // The spacing between two services runs (mm).
    int GetGfjjDist(int kindA, int kindB);
    bool CollisionCheck_Opcode(Opcode::Model* a, Opcode::Model* b, CQNIMPosition& p1,
                               CQNIMPosition& p2);
    void ShowIntersectTriangles(const Opcode::AABBTreeCollider& collider, Opcode::Model* a,
                                Opcode::Model* b);

    ObjectModelInfo* a_;
    ObjectModelInfo* b_;
    LOGIC::IModelDataSource* source_ = nullptr;
    Rule::KyCollisionMode* modeA_ = nullptr;
    Rule::KyCollisionMode* modeB_ = nullptr;
    int bodyOffsetA_ = 0;
    int bodyOffsetB_ = 0;
};

}  // namespace KYCOLLISION::MODEL
