// SPDX-License-Identifier: Apache-2.0
#include "opcode/MeshTree.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kycb::opcode {
namespace {

bool IsFinite(const IceMaths::Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

float ReachOf(const Box& box) {
    float reach = 0.0F;
    for (std::size_t axis = 0; axis < 3; ++axis)
        if (box.low[axis] <= box.high[axis])
            reach = std::max({reach, std::fabs(box.low[axis]), std::fabs(box.high[axis])});
    return reach;
}

}  // namespace

MeshTree::MeshTree(const Opcode::MeshInterface& mesh)
    : mesh_(&mesh), box_(BoxOf(mesh)), reach_(ReachOf(box_)) {}

const MeshBounds& MeshTree::Bounds() {
    if (!bounds_) bounds_.emplace(*mesh_, static_cast<double>(reach_));
    return *bounds_;
}

std::vector<std::uint32_t>& MeshTree::Order() {
    if (ordered_) return order_;
    order_.resize(mesh_->GetNbTriangles());
    std::iota(order_.begin(), order_.end(), 0U);
    if (!AllVerticesFinite(*mesh_)) {
        const auto untouchable = [this](std::uint32_t i) {
            const auto& refs = mesh_->GetTris()[i].mVRef;
            return !std::all_of(std::begin(refs), std::end(refs), [this](std::uint32_t ref) {
                return IsFinite(mesh_->GetVerts()[ref]);
            });
        };
        order_.erase(std::remove_if(order_.begin(), order_.end(), untouchable), order_.end());
    }
    // Two thirds of the places of the leaves are in use, or more.
    leaves.Reserve(order_.size() / kWidth + 1);
    nodes.Reserve(order_.size() / (kWidth * kWidth) + 1);
    ordered_ = true;
    return order_;
}

}  // namespace kycb::opcode
