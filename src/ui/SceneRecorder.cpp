// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/SceneRecorder.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace kycb {
namespace {

using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

// Circles of some hundred millimetres look round with this.
constexpr double kChordAngle = 5.0 * std::numbers::pi / 180.0;

using LineEnds = std::vector<CQNIMPosition>;

bool IsFinite(const CQNIMPosition& point) {
    return std::isfinite(point.GetX()) && std::isfinite(point.GetY()) &&
           std::isfinite(point.GetZ());
}

void AddLine(const CQNIMPosition& from, const CQNIMPosition& to, LineEnds& points) {
    if (!IsFinite(from) || !IsFinite(to)) return;
    points.push_back(from);
    points.push_back(to);
}

void AddArc(const CQNIMBoundArc& arc, LineEnds& points) {
    const double sweep = arc.GetSweepAngle();
    if (!std::isfinite(sweep) || !std::isfinite(arc.GetStartAngle())) return;
    const int chords = std::max(1, static_cast<int>(std::ceil(sweep / kChordAngle)));
    CQNIMPosition from = arc.GetStartPt();
    for (int i = 1; i <= chords; ++i) {
        const CQNIMPosition to = arc.GetPtAt(arc.GetStartAngle() + sweep * i / chords);
        AddLine(from, to, points);
        from = to;
    }
}

}  // namespace

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

std::vector<CQNIMPosition> LinePoints(const RecordedNode& node) {
    LineEnds points;
    for (const RecordedPrimitive& primitive : node.Primitives()) {
        if (const auto* segment = std::get_if<CQNIMLineSegment>(&primitive.curve)) {
            AddLine(segment->GetStartPt(), segment->GetEndPt(), points);
        } else if (const auto* arc = std::get_if<CQNIMBoundArc>(&primitive.curve)) {
            AddArc(*arc, points);
        }
    }
    return points;
}

SceneRecorder::SceneRecorder() : root_(nullptr, kQNGISceneRoot, {}) {}

SceneRecorder::~SceneRecorder() = default;

IQNGINode* SceneRecorder::CreateNode(QNGINodeId parent, const std::wstring& name) {
    RecordedNode* above = root_.Find(parent);
    return above == nullptr ? nullptr : above->AddChild(++lastId_, name);
}

}  // namespace kycb
