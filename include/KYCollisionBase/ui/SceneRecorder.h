// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/ui/IQNGIContext.h"

#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace kycb {

/// By which operation a piece of geometry came into a node.
enum class PrimitiveKind { kLineSegment, kArc, kCurve };

/// A curve that the recorder cannot copy, because it is of none of the known kinds.
struct UnknownCurve {};

/// One piece of geometry of a recorded node.
struct RecordedPrimitive {
    PrimitiveKind kind;
    std::variant<UnknownCurve, QNIM::GeometryPrimitiveResource::CQNIMLineSegment,
                 QNIM::GeometryPrimitiveResource::CQNIMBoundArc>
        curve;
    int state = 0;  ///< of line segments: what came with them
};

/// A node of a recorded scene, in the order of creation. Read by whoever holds the recorder.
class KYCB_API RecordedNode final : public IQNGINode {
  public:
    using CQNIMBoundArc = QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
    using CQNIMCurve = QNIM::GeometryPrimitiveResource::CQNIMCurve;
    using CQNIMLineSegment = QNIM::GeometryPrimitiveResource::CQNIMLineSegment;

    /// `parent` is null for the scene's root alone.
    RecordedNode(RecordedNode* parent, QNGINodeId id, std::wstring name);

    const std::wstring& Name() const { return name_; }
    SQNGIRGBClr Color() const { return color_; }
    const std::vector<RecordedPrimitive>& Primitives() const { return primitives_; }
    /// The flags of all updates so far.
    const std::vector<int>& Updates() const { return updates_; }
    const std::vector<std::unique_ptr<RecordedNode>>& Children() const { return children_; }

    /// The node with this id, here or below; null when there is none.
    RecordedNode* Find(QNGINodeId id);
    RecordedNode* AddChild(QNGINodeId id, const std::wstring& name);

    QNGINodeId GetId() const override { return id_; }
    void SetColor(SQNGIRGBClr color) override { color_ = color; }
    void AddLineSegment(const CQNIMLineSegment& segment, int state) override;
    void AddArc(const CQNIMBoundArc& arc) override;
    void AddCurve(const CQNIMCurve& curve) override;
    void Update(int flag) override { updates_.push_back(flag); }
    void RemoveAllChildren() override { children_.clear(); }
    void Release() override;

  private:
    RecordedNode* parent_;
    QNGINodeId id_;
    std::wstring name_;
    SQNGIRGBClr color_;
    std::vector<RecordedPrimitive> primitives_;
    std::vector<int> updates_;
    std::vector<std::unique_ptr<RecordedNode>> children_;
};

/// The lines that a node's geometry is drawn with: two points each. Arcs become chords of at most
/// 5 degrees. Geometry with coordinates that are not finite is left out, as are unknown curves.
KYCB_API std::vector<QNIM::GeometryPrimitiveResource::CQNIMPosition> LinePoints(
    const RecordedNode& node);

/// A graphics context that only takes notes: for tests, for files (WriteGltf), and as the list
/// from which a viewer draws.
///
/// Threads: one at a time.
class KYCB_API SceneRecorder final : public IQNGIContext {
  public:
    SceneRecorder();
    ~SceneRecorder() override;
    SceneRecorder(const SceneRecorder&) = delete;
    SceneRecorder& operator=(const SceneRecorder&) = delete;

    /// The scene's root, which has no geometry of its own.
    const RecordedNode& Root() const { return root_; }

    /// The state that GetLineState tells; 0 at first.
    void SetLineState(int state) { lineState_ = state; }

    IQNGINode* CreateNode(QNGINodeId parent, const std::wstring& name) override;
    int GetLineState() const override { return lineState_; }

  private:
    RecordedNode root_;
    QNGINodeId lastId_ = kQNGISceneRoot;
    int lineState_ = 0;
};

}  // namespace kycb
