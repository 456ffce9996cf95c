// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/KyCheckTestTool.h"

#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/platform/BoundingBox2d.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMBoundingBox.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/CQNIMPosition.h"
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/ui/IQNGIContext.h"
#include "KYCollisionBase/ui/IQNGINode.h"

#include <array>
#include <cstddef>
#include <numbers>
#include <span>

using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

namespace {

// Large enough to be seen among building components (mm).
constexpr double kPointRadius = 200.0;

// No component is a kilometre long: such an edge comes from a broken mesh (mm).
constexpr double kLongestEdge = 1000000.0;

constexpr const wchar_t* kRootName = L"testRoot";
constexpr int kUpdateFlag = 1;

void AddLoop(IQNGINode& node, std::span<const CQNIMPosition> corners, int state) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        node.AddLineSegment({corners[i], corners[(i + 1) % corners.size()]}, state);
    }
}

std::array<CQNIMPosition, 4> Rectangle(const CQNIMPosition& low, const CQNIMPosition& high,
                                       double z) {
    return {CQNIMPosition(low.GetX(), low.GetY(), z), CQNIMPosition(high.GetX(), low.GetY(), z),
            CQNIMPosition(high.GetX(), high.GetY(), z), CQNIMPosition(low.GetX(), high.GetY(), z)};
}

CQNIMPosition Widen(const IceMaths::Point& point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y),
            static_cast<double>(point.z)};
}

bool HasLongEdge(const CQNIMPosition& a, const CQNIMPosition& b, const CQNIMPosition& c) {
    return a.DistToPt(b) > kLongestEdge || a.DistToPt(c) > kLongestEdge ||
           c.DistToPt(b) > kLongestEdge;
}

}  // namespace

KyCheckTestTool* KyCheckTestTool::s_pInstance = nullptr;

KyCheckTestTool* KyCheckTestTool::Instance() {
    if (s_pInstance == nullptr) s_pInstance = new KyCheckTestTool;
    return s_pInstance;
}

void KyCheckTestTool::InitQGNIContext(IQNGIContext* context) {
    context_ = context;
    if (context_ != nullptr) root_ = context_->CreateNode(kQNGISceneRoot, kRootName);
}

template <class AddGeometry>
void KyCheckTestTool::Draw(SQNGIRGBClr colour, AddGeometry addGeometry) {
    if (context_ == nullptr || root_ == nullptr) return;
    IQNGINode* node = context_->CreateNode(root_->GetId(), {});
    if (node == nullptr) return;
    node->SetColor(colour);
    addGeometry(*node, context_->GetLineState());
    node->Update(kUpdateFlag);
}

void KyCheckTestTool::DrawCollisionPoint(const CQNIMPosition& point, SQNGIRGBClr colour) {
    Draw(colour, [&](IQNGINode& node, int) {
        node.AddCurve(CQNIMBoundArc(point, kPointRadius, 0.0, 2.0 * std::numbers::pi));
    });
}

void KyCheckTestTool::DrawTriangle(const CQNIMPosition& a, const CQNIMPosition& b,
                                   const CQNIMPosition& c, SQNGIRGBClr colour) {
    Draw(colour, [&](IQNGINode& node, int state) { AddLoop(node, std::array{a, b, c}, state); });
}

void KyCheckTestTool::DrawObjectModelTriangle(Opcode::Model* mesh, SQNGIRGBClr colour) {
    // A refused mesh has no tree; its indices may point anywhere.
    if (context_ == nullptr || mesh == nullptr || mesh->GetTree() == nullptr) return;
    const Opcode::MeshInterface& triangles = *mesh->GetMeshInterface();
    for (std::size_t i = 0; i < triangles.GetNbTriangles(); ++i) {
        const auto& corners = triangles.GetTris()[i].mVRef;
        const CQNIMPosition a = Widen(triangles.GetVerts()[corners[0]]);
        const CQNIMPosition b = Widen(triangles.GetVerts()[corners[1]]);
        const CQNIMPosition c = Widen(triangles.GetVerts()[corners[2]]);
        Instance()->DrawTriangle(a, b, c, colour);
        if (HasLongEdge(a, b, c)) BASEUI::ShowMessageBox(L"Tri Error", 0);
    }
}

void KyCheckTestTool::DrawQNIMCurve(const CQNIMCurve* curve, SQNGIRGBClr colour) {
    if (curve == nullptr) return;
    if (curve->GetKind() == CQNIMCurve::Kind::kLineSegment) {
        DrawLineSeg(static_cast<const CQNIMLineSegment&>(*curve), colour);
    } else if (curve->GetKind() == CQNIMCurve::Kind::kBoundArc) {
        DrawArc(static_cast<const CQNIMBoundArc&>(*curve), colour);
    }
}

void KyCheckTestTool::DrawLineSeg(const CQNIMLineSegment& segment, SQNGIRGBClr colour) {
    Draw(colour, [&](IQNGINode& node, int state) { node.AddLineSegment(segment, state); });
}

void KyCheckTestTool::DrawArc(const CQNIMBoundArc& arc, SQNGIRGBClr colour) {
    Draw(colour, [&](IQNGINode& node, int) { node.AddArc(arc); });
}

void KyCheckTestTool::DrawBoundingBox(const CQNIMBoundingBox& box, SQNGIRGBClr colour) {
    const CQNIMPosition& low = box.GetLowPt();
    const CQNIMPosition& high = box.GetHighPt();
    Draw(colour, [&](IQNGINode& node, int state) {
        const auto bottom = Rectangle(low, high, low.GetZ());
        const auto top = Rectangle(low, high, high.GetZ());
        AddLoop(node, bottom, state);
        AddLoop(node, top, state);
        for (std::size_t i = 0; i < bottom.size(); ++i)
            node.AddLineSegment({bottom[i], top[i]}, state);
    });
}

void KyCheckTestTool::DrawBoundingBox(const KYTOOLS::GRAPH::BoundingBox3d& box,
                                      SQNGIRGBClr colour) {
    if (box.IsNull()) return;
    DrawBoundingBox(CQNIMBoundingBox({box.GetMinX(), box.GetMinY(), box.GetMinZ()},
                                     {box.GetMaxX(), box.GetMaxY(), box.GetMaxZ()}),
                    colour);
}

void KyCheckTestTool::DrawBoundingBox(const KYTOOLS::GRAPH::BoundingBox2d& box,
                                      SQNGIRGBClr colour) {
    if (box.IsNull()) return;
    Draw(colour, [&](IQNGINode& node, int state) {
        AddLoop(node,
                Rectangle({box.GetMinX(), box.GetMinY(), 0.0}, {box.GetMaxX(), box.GetMaxY(), 0.0},
                          0.0),
                state);
    });
}

void KyCheckTestTool::ClearAll() {
    if (context_ != nullptr && root_ != nullptr) root_->RemoveAllChildren();
}

void KyCheckTestTool::Reset() {
    context_ = nullptr;
    if (root_ == nullptr) return;
    root_->RemoveAllChildren();
    root_->Release();
    root_ = nullptr;
}
