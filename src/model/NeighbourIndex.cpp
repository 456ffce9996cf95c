// SPDX-License-Identifier: Apache-2.0
#include "model/NeighbourIndex.h"

#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/platform/Numeric.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

namespace kycb::model {

namespace {

using KYTOOLS::GRAPH::BoundingBox2d;
using KYTOOLS::GRAPH::BoundingBox3d;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kUnused = std::numeric_limits<float>::quiet_NaN();

// Never above `value`, so that a rounded box holds the exact one. Beyond single precision the
// conversion itself would be undefined.
float RoundDown(double value) {
    if (value <= -static_cast<double>(kLargest)) return -kInfinity;
    if (value >= static_cast<double>(kLargest)) return kLargest;
    const auto nearest = static_cast<float>(value);
    return static_cast<double>(nearest) > value ? std::nextafter(nearest, -kInfinity) : nearest;
}

float RoundUp(double value) {
    return -RoundDown(-value);
}

// The bits of `cell`, each followed by a free one.
std::uint32_t Spread(std::uint32_t cell) {
    cell = (cell | (cell << 8)) & 0x00FF00FFU;
    cell = (cell | (cell << 4)) & 0x0F0F0F0FU;
    cell = (cell | (cell << 2)) & 0x33333333U;
    return (cell | (cell << 1)) & 0x55555555U;
}

// One of 65536 cells across [low, high]; the first one where the range has no usable width.
std::uint32_t CellOf(double value, double low, double high) {
    const double share = (value - low) / (high - low);
    return share > 0.0 ? static_cast<std::uint32_t>(std::min(share, 1.0) * 65535.0) : 0U;
}

// Neighbours on the Z-curve through the floor are mostly neighbours in plan, which keeps the nodes
// small. A floor is too flat for its heights to help.
std::uint32_t PlaceOnCurve(const BoundingBox3d& box, const BoundingBox3d& bounds) {
    // Halved first: the sum of two far bounds could overflow.
    const double x = box.GetMinX() / 2.0 + box.GetMaxX() / 2.0;
    const double y = box.GetMinY() / 2.0 + box.GetMaxY() / 2.0;
    return Spread(CellOf(x, bounds.GetMinX(), bounds.GetMaxX())) |
           Spread(CellOf(y, bounds.GetMinY(), bounds.GetMaxY())) << 1;
}

}  // namespace

NeighbourIndex::NeighbourIndex(const std::vector<ObjectModelInfo*>& inDeliveryOrder)
    : objects_(inDeliveryOrder) {
    BoundingBox3d bounds;
    for (const ObjectModelInfo* obj : objects_) {
        bounds.Add(obj->GetBoundingBox());
    }
    std::vector<std::pair<std::uint32_t, std::uint32_t>> places;
    places.reserve(objects_.size());
    for (std::uint32_t rank = 0; rank < objects_.size(); ++rank) {
        const BoundingBox3d box = objects_[rank]->GetBoundingBox();
        if (!box.IsNull()) places.emplace_back(PlaceOnCurve(box, bounds), rank);
    }
    std::sort(places.begin(), places.end());
    std::vector<FloatBox> boxes;
    boxes.reserve(places.size());
    ranks_.reserve(places.size());
    for (const auto& [place, rank] : places) {
        ranks_.push_back(rank);
        boxes.push_back(RoundedOutward(objects_[rank]->GetBoundingBox()));
    }
    while (!boxes.empty()) {
        levels_.push_back(LevelOver(boxes));
        boxes.clear();
        if (levels_.back().size() == 1) break;
        for (const Node& node : levels_.back()) {
            boxes.push_back(Around(node));
        }
    }
}

NeighbourIndex::FloatBox NeighbourIndex::RoundedOutward(const BoundingBox3d& box) {
    return {RoundDown(box.GetMinX()), RoundDown(box.GetMinY()), RoundDown(box.GetMinZ()),
            RoundUp(box.GetMaxX()),   RoundUp(box.GetMaxY()),   RoundUp(box.GetMaxZ())};
}

NeighbourIndex::FloatBox NeighbourIndex::Around(const Node& node) {
    FloatBox box{kInfinity, kInfinity, kInfinity, -kInfinity, -kInfinity, -kInfinity};
    for (std::size_t i = 0; i < kWidth && !std::isnan(node.minX[i]); ++i) {
        box.minX = std::min(box.minX, node.minX[i]);
        box.minY = std::min(box.minY, node.minY[i]);
        box.minZ = std::min(box.minZ, node.minZ[i]);
        box.maxX = std::max(box.maxX, node.maxX[i]);
        box.maxY = std::max(box.maxY, node.maxY[i]);
        box.maxZ = std::max(box.maxZ, node.maxZ[i]);
    }
    return box;
}

NeighbourIndex::Level NeighbourIndex::LevelOver(const std::vector<FloatBox>& boxes) {
    Node unused;
    for (auto* lanes :
         {&unused.minX, &unused.minY, &unused.minZ, &unused.maxX, &unused.maxY, &unused.maxZ}) {
        lanes->fill(kUnused);
    }
    Level level((boxes.size() + kWidth - 1) / kWidth, unused);
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        Node& node = level[i / kWidth];
        const std::size_t lane = i % kWidth;
        node.minX[lane] = boxes[i].minX;
        node.minY[lane] = boxes[i].minY;
        node.minZ[lane] = boxes[i].minZ;
        node.maxX[lane] = boxes[i].maxX;
        node.maxY[lane] = boxes[i].maxY;
        node.maxZ[lane] = boxes[i].maxZ;
    }
    return level;
}

// A bit per lane that may hold a hit. Without branches, so that compilers take all lanes at once.
unsigned NeighbourIndex::Hits(const Node& node, const FloatBox& query) {
    unsigned mask = 0;
    for (std::size_t i = 0; i < kWidth; ++i) {
        const unsigned hit = static_cast<unsigned>(node.minX[i] <= query.maxX) &
                             static_cast<unsigned>(node.maxX[i] >= query.minX) &
                             static_cast<unsigned>(node.minY[i] <= query.maxY) &
                             static_cast<unsigned>(node.maxY[i] >= query.minY) &
                             static_cast<unsigned>(node.minZ[i] <= query.maxZ) &
                             static_cast<unsigned>(node.maxZ[i] >= query.minZ);
        mask |= hit << i;
    }
    return mask;
}

void NeighbourIndex::Descend(std::size_t level, std::size_t node, const FloatBox& query) {
    for (unsigned mask = Hits(levels_[level][node], query); mask != 0; mask &= mask - 1) {
        const std::size_t child = node * kWidth + static_cast<unsigned>(std::countr_zero(mask));
        if (level == 0) {
            hits_.push_back(ranks_[child]);
        } else {
            Descend(level - 1, child, query);
        }
    }
}

void NeighbourIndex::Query(const BoundingBox3d& box, double low, double high,
                           std::vector<ObjectModelInfo*>& found) {
    if (levels_.empty()) return;
    const BoundingBox2d plan = box.GetBoundingBox2d();
    const FloatBox query{RoundDown(plan.GetMinX()), RoundDown(plan.GetMinY()), RoundDown(low),
                         RoundUp(plan.GetMaxX()),   RoundUp(plan.GetMaxY()),   RoundUp(high)};
    hits_.clear();
    Descend(levels_.size() - 1, 0, query);
    std::sort(hits_.begin(), hits_.end());
    // Rounding outward lets boxes touch that lie apart, so the exact ones have the last word.
    for (const std::uint32_t rank : hits_) {
        ObjectModelInfo* obj = objects_[rank];
        const BoundingBox3d own = obj->GetBoundingBox();
        if (own.GetBoundingBox2d().IsIntersect(plan) &&
            KYTOOLS::Numeric::IsDoubleRangeOverLap(own.GetMinZ(), own.GetMaxZ(), low, high)) {
            found.push_back(obj);
        }
    }
}

}  // namespace kycb::model
