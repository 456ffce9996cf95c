// SPDX-License-Identifier: Apache-2.0
#include "BoxTree.h"

#include <algorithm>
#include <numeric>

namespace ifchost {
namespace {

constexpr std::uint32_t kLeafSize = 4;

double Coordinate(const Vec3& v, int axis) {
    return axis == 0 ? v.x : axis == 1 ? v.y : v.z;
}

int WidestAxis(const Vec3& size) {
    if (size.x >= size.y && size.x >= size.z) return 0;
    return size.y >= size.z ? 1 : 2;
}

/// Cuts the ray's parameter range to the slab between `low` and `high`.
void CutSlab(double origin, double direction, double low, double high, double& near, double& far) {
    if (direction == 0.0) {
        if (origin < low || origin > high) far = -1.0;
        return;
    }
    const double a = (low - origin) / direction;
    const double b = (high - origin) / direction;
    near = std::max(near, std::min(a, b));
    far = std::min(far, std::max(a, b));
}

}  // namespace

BoxTree::BoxTree(std::span<const BodyBox> boxes) : order_(boxes.size()) {
    std::iota(order_.begin(), order_.end(), 0U);
    if (boxes.empty()) return;
    nodes_.reserve(boxes.size());
    Build(boxes, 0, static_cast<std::uint32_t>(boxes.size()));
    leafBoxes_.reserve(boxes.size());
    for (const std::uint32_t index : order_)
        leafBoxes_.push_back(boxes[index]);
}

void BoxTree::Build(std::span<const BodyBox> boxes, std::uint32_t first, std::uint32_t last) {
    const std::size_t at = nodes_.size();
    nodes_.emplace_back();
    BodyBox centers;
    for (std::uint32_t i = first; i < last; ++i) {
        nodes_[at].box.Add(boxes[order_[i]]);
        centers.Add(boxes[order_[i]].Center());
    }
    if (last - first <= kLeafSize) {
        nodes_[at].first = first;
        nodes_[at].count = last - first;
        return;
    }
    const int axis = WidestAxis(centers.Size());
    const std::uint32_t middle = first + (last - first) / 2;
    std::nth_element(order_.begin() + first, order_.begin() + middle, order_.begin() + last,
                     [&](std::uint32_t a, std::uint32_t b) {
                         const double ca = Coordinate(boxes[a].Center(), axis);
                         const double cb = Coordinate(boxes[b].Center(), axis);
                         return ca != cb ? ca < cb : a < b;
                     });
    Build(boxes, first, middle);
    nodes_[at].first = static_cast<std::uint32_t>(nodes_.size());
    Build(boxes, middle, last);
}

bool BoxTree::RayMeets(const BodyBox& box, const Vec3& origin, const Vec3& direction) {
    double near = 0.0;
    double far = std::numeric_limits<double>::infinity();
    CutSlab(origin.x, direction.x, box.min.x, box.max.x, near, far);
    CutSlab(origin.y, direction.y, box.min.y, box.max.y, near, far);
    CutSlab(origin.z, direction.z, box.min.z, box.max.z, near, far);
    return near <= far;
}

}  // namespace ifchost
