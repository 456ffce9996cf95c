// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/SceneRecorder.h"

#include <algorithm>
#include <utility>

namespace kycb {

RecordedNode::RecordedNode(RecordedNode* parent, QNGINodeId id, std::wstring name)
    : parent_(parent), id_(id), name_(std::move(name)) {}

RecordedNode* RecordedNode::Find(QNGINodeId id) {
    if (id == id_) return this;
    for (const auto& child : children_) {
        if (RecordedNode* found = child->Find(id)) return found;
    }
    return nullptr;
}

RecordedNode* RecordedNode::AddChild(QNGINodeId id, const std::wstring& name) {
    children_.push_back(std::make_unique<RecordedNode>(this, id, name));
    return children_.back().get();
}

void RecordedNode::AddLineSegment(const CQNIMLineSegment& segment, int state) {
    primitives_.push_back({PrimitiveKind::kLineSegment, segment, state});
}

void RecordedNode::AddArc(const CQNIMBoundArc& arc) {
    primitives_.push_back({PrimitiveKind::kArc, arc, 0});
}

void RecordedNode::AddCurve(const CQNIMCurve& curve) {
    RecordedPrimitive primitive{PrimitiveKind::kCurve, UnknownCurve{}, 0};
    if (curve.GetKind() == CQNIMCurve::Kind::kLineSegment) {
        primitive.curve = static_cast<const CQNIMLineSegment&>(curve);
    } else if (curve.GetKind() == CQNIMCurve::Kind::kBoundArc) {
        primitive.curve = static_cast<const CQNIMBoundArc&>(curve);
    }
    primitives_.push_back(std::move(primitive));
}

void RecordedNode::Release() {
    if (parent_ == nullptr) return;
    // Deletes this node: nothing may be touched afterwards.
    std::erase_if(parent_->children_, [this](const auto& child) { return child.get() == this; });
}

SceneRecorder::SceneRecorder() : root_(nullptr, kQNGISceneRoot, {}) {}

SceneRecorder::~SceneRecorder() = default;

IQNGINode* SceneRecorder::CreateNode(QNGINodeId parent, const std::wstring& name) {
    RecordedNode* above = root_.Find(parent);
    return above == nullptr ? nullptr : above->AddChild(++lastId_, name);
}

}  // namespace kycb
