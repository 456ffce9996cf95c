// SPDX-License-Identifier: Apache-2.0
// A grid of axes for tests.
#pragma once

#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/platform/CQNIMBoundArc.h"
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/QuadTree.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace kycbtest {

using AxisTree = KYTOOLS::GRAPH::QuadTree<KYCOLLISION::LOGIC::SQNGIAxisItem*>;

inline KYTOOLS::GRAPH::BoundingBox2d PlanBox(
    const QNIM::GeometryPrimitiveResource::CQNIMCurve& curve) {
    const auto box = curve.GetBoundingBox();
    return {box.GetLowPt().GetX(), box.GetLowPt().GetY(), box.GetHighPt().GetX(),
            box.GetHighPt().GetY()};
}

/// Owns axis items and a tree over them, both filled in the order of the calls.
class AxisGrid {
  public:
    using Item = KYCOLLISION::LOGIC::SQNGIAxisItem;
    using Curve = QNIM::GeometryPrimitiveResource::CQNIMCurve;

    /// Half the width of the square that the tree covers (mm).
    static constexpr double kHalfWidth = 1e6;

    AxisGrid() : tree_({-kHalfWidth, -kHalfWidth, kHalfWidth, kHalfWidth}) {}

    AxisGrid& Line(std::wstring name, double x0, double y0, double x1, double y1) {
        using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
        using QNIM::GeometryPrimitiveResource::CQNIMPosition;
        return Curved(std::move(name), std::make_unique<CQNIMLineSegment>(
                                           CQNIMPosition(x0, y0, 0), CQNIMPosition(x1, y1, 0)));
    }

    AxisGrid& Arc(std::wstring name, double x, double y, double radius, double start,
                  double sweep) {
        using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
        using QNIM::GeometryPrimitiveResource::CQNIMPosition;
        return Curved(std::move(name), std::make_unique<CQNIMBoundArc>(CQNIMPosition(x, y, 0),
                                                                       radius, start, sweep));
    }

    AxisGrid& Curved(std::wstring name, std::unique_ptr<Curve> curve) {
        items_.push_back(std::make_unique<Item>());
        items_.back()->axisName = std::move(name);
        items_.back()->axisCurve = std::move(curve);
        tree_.Insert(items_.back().get(), PlanBox(*items_.back()->axisCurve));
        return *this;
    }

    AxisTree& Tree() { return tree_; }

  private:
    std::vector<std::unique_ptr<Item>> items_;
    AxisTree tree_;
};

}  // namespace kycbtest
