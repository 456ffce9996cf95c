// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/ui/SQNGIRGBClr.h"

#include <cstdint>

namespace QNIM::GeometryPrimitiveResource {
class CQNIMBoundArc;
class CQNIMCurve;
class CQNIMLineSegment;
}  // namespace QNIM::GeometryPrimitiveResource

/// Names a node within its graphics context.
using QNGINodeId = std::int64_t;

/// The scene's own root, above all nodes.
inline constexpr QNGINodeId kQNGISceneRoot = 0;

/// A node of a host's 3-D scene: some wire geometry of one colour, and child nodes. The host
/// implements it; all lengths are millimetres in the coordinates of the collision model.
///
/// Ownership: the context owns its nodes. Whoever had one created gives it up through Release.
/// Threads: the interface thread that owns the context.
class KYCB_API IQNGINode {
  public:
    virtual ~IQNGINode() = default;

    /// Never kQNGISceneRoot.
    virtual QNGINodeId GetId() const = 0;

    virtual void SetColor(SQNGIRGBClr color) = 0;

    /// Adds geometry; the curve is copied. `state` is what the context's GetLineState said.
    virtual void AddLineSegment(const QNIM::GeometryPrimitiveResource::CQNIMLineSegment& segment,
                                int state) = 0;
    virtual void AddArc(const QNIM::GeometryPrimitiveResource::CQNIMBoundArc& arc) = 0;
    virtual void AddCurve(const QNIM::GeometryPrimitiveResource::CQNIMCurve& curve) = 0;

    /// Tells the node that it is complete and can be shown.
    virtual void Update(int flag) = 0;

    /// Removes everything below the node, with its geometry.
    virtual void RemoveAllChildren() = 0;

    /// Takes the node out of the scene, with everything below it, and gives it up. It must not be
    /// used afterwards.
    virtual void Release() = 0;
};
