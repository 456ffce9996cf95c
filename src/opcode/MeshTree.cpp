// SPDX-License-Identifier: Apache-2.0
#include "opcode/MeshTree.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <hwy/cache_control.h>

#include "opcode/SpatialOrder.h"

namespace kycb::opcode {
namespace {

using IceMaths::Point;

bool IsFinite(const Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

float ReachOf(const Box& box) {
    float reach = 0.0F;
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (box.low[axis] <= box.high[axis])
            reach = std::max({reach, std::fabs(box.low[axis]), std::fabs(box.high[axis])});
    return reach;
}

/// A box by its low ends and its negated high ends (the fourth place of each is idle), so that one
/// minimum unites two boxes.
struct alignas(32) BoxEnds {
    float end[8];
};

/// Memory that the trees of a thread use in turn.
struct ArrangeScratch {
    std::vector<BoxEnds> triangles;
    std::vector<BoxEnds> leaves;
    Middles middles;
};

ArrangeScratch& ThreadScratch() {
    thread_local ArrangeScratch scratch;
    return scratch;
}

// Written in place: moved as a whole, the box would wait for its parts to reach memory.
void StoreEnds(const Opcode::MeshInterface& mesh, std::uint32_t triangle, BoxEnds& box) {
    const auto& refs = mesh.GetTris()[triangle].mVRef;
    const Point& a = mesh.GetVerts()[refs[0]];
    const Point& b = mesh.GetVerts()[refs[1]];
    const Point& c = mesh.GetVerts()[refs[2]];
    box.end[0] = std::min(std::min(a.x, b.x), c.x);
    box.end[1] = std::min(std::min(a.y, b.y), c.y);
    box.end[2] = std::min(std::min(a.z, b.z), c.z);
    box.end[3] = 0.0F;
    box.end[4] = -std::max(std::max(a.x, b.x), c.x);
    box.end[5] = -std::max(std::max(a.y, b.y), c.y);
    box.end[6] = -std::max(std::max(a.z, b.z), c.z);
    box.end[7] = 0.0F;
}

float MiddleOf(const BoxEnds& box, std::size_t axis) {
    return 0.5F * box.end[axis] - 0.5F * box.end[4 + axis];
}

void Unite(BoxEnds& sum, BoxEnds other) {
    for (std::size_t i = 0; i < 8; ++i)
        sum.end[i] = other.end[i] < sum.end[i] ? other.end[i] : sum.end[i];
}

Boxes EmptyBoxes() {
    Boxes boxes;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        std::fill_n(boxes.low[axis], kWidth, HUGE_VALF);
        std::fill_n(boxes.high[axis], kWidth, -HUGE_VALF);
    }
    return boxes;
}

void StoreBox(const BoxEnds& bounds, Boxes& boxes, std::size_t place) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        boxes.low[axis][place] = bounds.end[axis];
        boxes.high[axis][place] = -bounds.end[4 + axis];
    }
}

std::size_t GroupsOf(std::size_t count) {
    return (count + kWidth - 1) / kWidth;
}

}  // namespace

MeshTree::MeshTree(const Opcode::MeshInterface& mesh)
    : mesh_(&mesh), box_(BoxOf(mesh)), reach_(ReachOf(box_)) {}

const MeshBounds& MeshTree::Bounds() {
    if (!bounds_) bounds_.emplace(*mesh_, static_cast<double>(reach_));
    return *bounds_;
}

bool MeshTree::Arrange() {
    if (arranged_) return !order_.empty();
    TakeTriangles();
    if (!order_.empty()) {
        MakeBlocks();
        leaves_ = std::make_unique_for_overwrite<Leaf[]>(LeafCount());
        filled_.assign(LeafCount() / 64 + 1, 0);
    }
    arranged_ = true;
    return !order_.empty();
}

/// Puts those with finite vertices into `order_`, sorted.
void MeshTree::TakeTriangles() {
    ArrangeScratch& scratch = ThreadScratch();
    order_.resize(mesh_->GetNbTriangles());
    std::iota(order_.begin(), order_.end(), 0U);
    if (!AllVerticesFinite(*mesh_)) {
        const auto isUntouchable = [this](std::uint32_t i) {
            const auto& refs = mesh_->GetTris()[i].mVRef;
            return !std::all_of(std::begin(refs), std::end(refs), [this](std::uint32_t ref) {
                return IsFinite(mesh_->GetVerts()[ref]);
            });
        };
        order_.erase(std::remove_if(order_.begin(), order_.end(), isUntouchable), order_.end());
    }
    const std::size_t count = order_.size();
    scratch.triangles.resize(
        std::max<std::size_t>(scratch.triangles.size(), mesh_->GetNbTriangles()));
    scratch.leaves.resize(std::max(scratch.leaves.size(), GroupsOf(count)));
    Middles& middles = scratch.middles;
    middles.Resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t number = order_[i];
        BoxEnds& box = scratch.triangles[number];
        StoreEnds(*mesh_, number, box);
        middles.Set(i, MiddleOf(box, 0), MiddleOf(box, 1), MiddleOf(box, 2), number);
    }
    SortByPlace(middles);
    for (std::size_t i = 0; i < count; ++i) {
        // The boxes lie in the order of the host, so each would be waited for.
        constexpr std::size_t kAhead = 16;
        hwy::Prefetch(&scratch.triangles[middles.NumberAt(std::min(i + kAhead, count - 1))]);
        const std::uint32_t number = middles.NumberAt(i);
        const BoxEnds& triangle = scratch.triangles[number];
        BoxEnds& leaf = scratch.leaves[i / kWidth];
        if (i % kWidth == 0)
            leaf = triangle;
        else
            Unite(leaf, triangle);
        order_[i] = number;
    }
}

/// Makes the boxes of all levels from those of the leaves.
void MeshTree::MakeBlocks() {
    std::vector<BoxEnds>& bounds = ThreadScratch().leaves;
    std::size_t count = LeafCount();
    blocks_.clear();
    blocks_.reserve(count / (kWidth - 1) + 3);
    for (std::uint32_t level = 1;; ++level) {
        const std::size_t groups = GroupsOf(count);
        firstBlock_[level] = static_cast<std::uint32_t>(blocks_.size());
        blocks_.resize(blocks_.size() + groups, EmptyBoxes());
        for (std::size_t i = 0; i < count; ++i) {
            const BoxEnds child = bounds[i];
            StoreBox(child, blocks_[firstBlock_[level] + i / kWidth], i % kWidth);
            if (i % kWidth == 0)
                bounds[i / kWidth] = child;
            else
                Unite(bounds[i / kWidth], child);
        }
        rootLevel_ = level - 1;
        if (count == 1) return;
        count = groups;
    }
}

}  // namespace kycb::opcode
