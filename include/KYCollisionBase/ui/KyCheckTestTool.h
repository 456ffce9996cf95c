// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/ui/SQNGIRGBClr.h"

class IQNGIContext;
class IQNGINode;
namespace KYTOOLS::GRAPH {
class BoundingBox2d;
class BoundingBox3d;
}  // namespace KYTOOLS::GRAPH
namespace Opcode {
class Model;
}
namespace QNIM::GeometryPrimitiveResource {
class CQNIMBoundArc;
class CQNIMBoundingBox;
class CQNIMCurve;
class CQNIMLineSegment;
class CQNIMPosition;
}  // namespace QNIM::GeometryPrimitiveResource

/// Draws what the check works on (clash points, triangles, curves, boxes) as coloured lines into a
/// host's 3-D scene. Nothing in a check run calls it; it serves whoever wants to look.
///
/// Every drawing operation adds one unnamed node with one colour below a node named "testRoot",
/// which InitQGNIContext creates; ClearAll removes them all. Without a context every operation
/// does nothing. All lengths are millimetres in the coordinates of the collision model.
///
/// Ownership: the context is borrowed and must outlive its use here. The root node is released by
/// Reset; the instance itself lives until the process ends.
///
/// Threads: the interface thread that owns the context; Instance takes no lock.
class KYCB_API KyCheckTestTool {
  public:
    using CQNIMBoundArc = QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
    using CQNIMBoundingBox = QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
    using CQNIMCurve = QNIM::GeometryPrimitiveResource::CQNIMCurve;
    using CQNIMLineSegment = QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
    using CQNIMPosition = QNIM::GeometryPrimitiveResource::CQNIMPosition;

    /// The one instance, created on the first call.
    static KyCheckTestTool* Instance();

    virtual ~KyCheckTestTool() = default;
    KyCheckTestTool(const KyCheckTestTool&) = delete;
    KyCheckTestTool& operator=(const KyCheckTestTool&) = delete;

    /// Stores `context`; unless it is null, creates the root node in it. A root node of an earlier
    /// context is forgotten, not released (that context may be gone): call Reset before changing.
    void InitQGNIContext(IQNGIContext* context);
    IQNGIContext* GetQGNIContext() const { return context_; }

    /// A horizontal circle of radius 200 around the point.
    void DrawCollisionPoint(const CQNIMPosition& point, SQNGIRGBClr colour);

    /// The edges a-b, b-c and c-a.
    void DrawTriangle(const CQNIMPosition& a, const CQNIMPosition& b, const CQNIMPosition& c,
                      SQNGIRGBClr colour);

    /// Each triangle of the mesh in turn, by DrawTriangle of the one instance. After a triangle
    /// with an edge longer than 1000000 the host's message box shows "Tri Error". Nothing for a
    /// null mesh, and for one that `Opcode::Model::Build` refused or found empty.
    void DrawObjectModelTriangle(Opcode::Model* mesh, SQNGIRGBClr colour);

    /// Line segments and bounded arcs; nothing for null and for curves of other kinds.
    void DrawQNIMCurve(const CQNIMCurve* curve, SQNGIRGBClr colour);

    void DrawLineSeg(const CQNIMLineSegment& segment, SQNGIRGBClr colour);
    void DrawArc(const CQNIMBoundArc& arc, SQNGIRGBClr colour);

    /// The 12 edges of a box: bottom loop, top loop, verticals. A null box has no edges.
    void DrawBoundingBox(const CQNIMBoundingBox& box, SQNGIRGBClr colour);
    void DrawBoundingBox(const KYTOOLS::GRAPH::BoundingBox3d& box, SQNGIRGBClr colour);
    /// The 4 edges of a rectangle, at height 0. A null rectangle has none.
    void DrawBoundingBox(const KYTOOLS::GRAPH::BoundingBox2d& box, SQNGIRGBClr colour);

    /// Removes everything drawn; the root node stays.
    void ClearAll();

    /// Forgets the context, removes everything drawn and releases the root node.
    void Reset();

  private:
    KyCheckTestTool() = default;

    template <class AddGeometry>
    void Draw(SQNGIRGBClr colour, AddGeometry addGeometry);

    IQNGIContext* context_ = nullptr;
    IQNGINode* root_ = nullptr;

    static KyCheckTestTool* s_pInstance;
};
