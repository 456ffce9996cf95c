// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/BoundingBox2d.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace KYTOOLS::GRAPH {

/// The square of plan that a quad tree node stands for, and the rules by which it is divided.
class QuadTreeCell {
  public:
    enum Quadrant : int { kStay = -1, kUpperRight, kLowerRight, kUpperLeft, kLowerLeft };

    /// Nodes narrower or shallower than this are not divided (mm).
    static constexpr double kMinNodeSize = 500.0;
    /// A box closer than this to a centre line counts as lying on it and stays at the node (mm).
    static constexpr double kCentreTolerance = 0.0001;

    /// A cell over the null box, which is not divided.
    QuadTreeCell() = default;

    explicit QuadTreeCell(const BoundingBox2d& box)
        : box_(box),
          centreX_((box.GetMinX() + box.GetMaxX()) / 2.0),
          centreY_((box.GetMinY() + box.GetMaxY()) / 2.0) {}

    const BoundingBox2d& GetBoundingBox() const { return box_; }

    /// Whether the cell is large enough to have quarters.
    ///
    /// Without a centre that rounding keeps strictly inside, a quarter could be as large as the
    /// cell, and a box at such a place (1e19 mm away, or infinite) would sink for ever.
    bool IsDivisible() const {
        return !(std::abs(box_.GetMaxX() - box_.GetMinX()) < kMinNodeSize ||
                 std::abs(box_.GetMaxY() - box_.GetMinY()) < kMinNodeSize) &&
               box_.GetMinX() < centreX_ && centreX_ < box_.GetMaxX() &&
               box_.GetMinY() < centreY_ && centreY_ < box_.GetMaxY();
    }

    /// The quarter of a divisible cell to which a box goes, or kStay.
    Quadrant ChooseQuadrant(const BoundingBox2d& c) const {
        constexpr double e = kCentreTolerance;
        const bool outside = c.GetMinX() - box_.GetMaxX() > e || c.GetMinY() - box_.GetMaxY() > e ||
                             box_.GetMinX() - c.GetMaxX() > e || box_.GetMinY() - c.GetMaxY() > e;
        if (outside) return kStay;
        const bool right = c.GetMinX() - centreX_ > e;
        const bool left = centreX_ - c.GetMaxX() > e;
        const bool above = c.GetMinY() - centreY_ > e;
        const bool below = centreY_ - c.GetMaxY() > e;
        // By the four answers as bits, because they are too even to be guessed by a processor.
        constexpr std::array<Quadrant, 16> kBySides = {
            kStay, kStay,       kStay,      kStay, kStay, kUpperRight, kUpperLeft, kStay,
            kStay, kLowerRight, kLowerLeft, kStay, kStay, kStay,       kStay,      kStay};
        return kBySides[static_cast<std::size_t>(right) | static_cast<std::size_t>(left) << 1U |
                        static_cast<std::size_t>(above) << 2U |
                        static_cast<std::size_t>(below) << 3U];
    }

    QuadTreeCell Quarter(Quadrant quadrant) const {
        const bool right = quadrant == kUpperRight || quadrant == kLowerRight;
        const bool upper = quadrant == kUpperRight || quadrant == kUpperLeft;
        return QuadTreeCell({right ? centreX_ : box_.GetMinX(), upper ? centreY_ : box_.GetMinY(),
                             right ? box_.GetMaxX() : centreX_, upper ? box_.GetMaxY() : centreY_});
    }

  private:
    BoundingBox2d box_;
    double centreX_ = 0.0;
    double centreY_ = 0.0;
};

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
    /// A tree over the null box: it takes items but finds none, until a placed tree is assigned.
    QuadTree() = default;

    /// An empty node over `box`.
    explicit QuadTree(const BoundingBox2d& box) : QuadTree(QuadTreeCell(box)) {}

    const BoundingBox2d& GetBoundingBox() const { return cell_.GetBoundingBox(); }

    /// Stores `item` under `box`. An item whose box lies outside the node stays at the node; one
    /// whose box is null is stored and never found.
    void Insert(const T& item, const BoundingBox2d& box) {
        QuadTree* node = this;
        while (node->cell_.IsDivisible()) {
            const QuadTreeCell::Quadrant quadrant = node->cell_.ChooseQuadrant(box);
            if (quadrant == QuadTreeCell::kStay) break;
            node = &node->GetOrCreateChild(quadrant);
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
        if (!box.IsIntersect(GetBoundingBox())) return;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            visit(items_[i], itemBoxes_[i]);
        }
        for (const auto& child : children_) {
            if (child) child->VisitNear(box, visit);
        }
    }

  private:
    explicit QuadTree(const QuadTreeCell& cell) : cell_(cell) {}

    QuadTree& GetOrCreateChild(QuadTreeCell::Quadrant quadrant) {
        auto& child = children_[static_cast<std::size_t>(quadrant)];
        if (!child) child.reset(new QuadTree(cell_.Quarter(quadrant)));
        return *child;
    }

    QuadTreeCell cell_;
    std::array<std::unique_ptr<QuadTree>, 4> children_;
    std::vector<T> items_;
    std::vector<BoundingBox2d> itemBoxes_;  // beside items_, so that a query scans boxes in a row
};

}  // namespace KYTOOLS::GRAPH
