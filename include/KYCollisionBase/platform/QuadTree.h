// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/BoundingBox2d.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace KYTOOLS::GRAPH {

/// A quad tree node over items with 2-D boxes; the root node stands for the whole tree.
///
/// An item goes to the smallest node that wholly holds its box on one side of both centre lines, so
/// the order in which a query delivers items depends only on the boxes and the order of insertion.
/// Items are copied (in practice they are pointers, which the tree does not own).
///
/// Threads: concurrent queries are safe as long as nobody inserts.
template <class T>
class QuadTree {
  public:
    /// Nodes narrower or shallower than this are not divided (mm).
    static constexpr double kMinNodeSize = 500.0;
    /// A box closer than this to a centre line counts as lying on it and stays at the node (mm).
    static constexpr double kCentreTolerance = 0.0001;

    /// A tree over the null box: it takes items but finds none, until a placed tree is assigned.
    QuadTree() = default;

    /// An empty node over `box`.
    explicit QuadTree(const BoundingBox2d& box) : box_(box) {}

    const BoundingBox2d& GetBoundingBox() const { return box_; }

    /// Stores `item` under `box`. An item whose box lies outside the node stays at the node; one
    /// whose box is null is stored and never found.
    void Insert(const T& item, const BoundingBox2d& box) {
        QuadTree* node = this;
        for (int quadrant = node->ChooseQuadrant(box); quadrant != kStay;
             quadrant = node->ChooseQuadrant(box)) {
            node = &node->GetOrCreateChild(static_cast<std::size_t>(quadrant));
        }
        node->items_.push_back(item);
        node->itemBoxes_.push_back(box);
    }

    /// Appends every item whose box meets `box`: the node's own in the order of insertion, then
    /// the children's in the order upper right, lower right, upper left, lower left.
    void Query(const BoundingBox2d& box, std::vector<T>& found) const {
        VisitNear(box, [&](const T& item, const BoundingBox2d& itemBox) {
            if (itemBox.IsIntersect(box)) found.push_back(item);
        });
    }

    /// Calls `visit(item, box it was inserted with)` for every item of every node that meets `box`,
    /// in the order of Query. The item's own box need not meet `box`.
    template <class Visitor>
    void VisitNear(const BoundingBox2d& box, const Visitor& visit) const {
        if (!box.IsIntersect(box_)) return;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            visit(items_[i], itemBoxes_[i]);
        }
        for (const auto& child : children_) {
            if (child) child->VisitNear(box, visit);
        }
    }

  private:
    enum Quadrant : int { kStay = -1, kUpperRight, kLowerRight, kUpperLeft, kLowerLeft };

    double CentreX() const { return (box_.GetMinX() + box_.GetMaxX()) / 2.0; }
    double CentreY() const { return (box_.GetMinY() + box_.GetMaxY()) / 2.0; }

    // Without a centre that rounding keeps strictly inside, a quarter could be as large as the
    // node, and a box at such a place (1e19 mm away, or infinite) would sink for ever.
    bool IsDivisible() const {
        return box_.GetMinX() < CentreX() && CentreX() < box_.GetMaxX() &&
               box_.GetMinY() < CentreY() && CentreY() < box_.GetMaxY();
    }

    int ChooseQuadrant(const BoundingBox2d& c) const {
        constexpr double e = kCentreTolerance;
        if (std::abs(box_.GetMaxX() - box_.GetMinX()) < kMinNodeSize ||
            std::abs(box_.GetMaxY() - box_.GetMinY()) < kMinNodeSize) {
            return kStay;
        }
        if (!IsDivisible()) return kStay;
        const bool outside = c.GetMinX() - box_.GetMaxX() > e || c.GetMinY() - box_.GetMaxY() > e ||
                             box_.GetMinX() - c.GetMaxX() > e || box_.GetMinY() - c.GetMaxY() > e;
        if (outside) return kStay;
        const bool above = c.GetMinY() - CentreY() > e;
        const bool below = CentreY() - c.GetMaxY() > e;
        if (c.GetMinX() - CentreX() > e) return above ? kUpperRight : below ? kLowerRight : kStay;
        if (CentreX() - c.GetMaxX() > e) return above ? kUpperLeft : below ? kLowerLeft : kStay;
        return kStay;
    }

    QuadTree& GetOrCreateChild(std::size_t quadrant) {
        auto& child = children_[quadrant];
        if (!child) child = std::make_unique<QuadTree>(QuarterBox(quadrant));
        return *child;
    }

    BoundingBox2d QuarterBox(std::size_t quadrant) const {
        const bool right = quadrant == kUpperRight || quadrant == kLowerRight;
        const bool upper = quadrant == kUpperRight || quadrant == kUpperLeft;
        return {right ? CentreX() : box_.GetMinX(), upper ? CentreY() : box_.GetMinY(),
                right ? box_.GetMaxX() : CentreX(), upper ? box_.GetMaxY() : CentreY()};
    }

    BoundingBox2d box_;
    std::array<std::unique_ptr<QuadTree>, 4> children_;
    std::vector<T> items_;
    std::vector<BoundingBox2d> itemBoxes_;  // beside items_, so that a query scans boxes in a row
};

}  // namespace KYTOOLS::GRAPH
