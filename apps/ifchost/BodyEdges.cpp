// SPDX-License-Identifier: Apache-2.0
#include "BodyEdges.h"

#include <cmath>

namespace ifchost {
namespace {

/// The uses in the order in which a turn around the edge (right-handed, along its forward sense)
/// meets their triangles.
std::vector<EdgeUse> SortAround(const BodyMesh& mesh, std::span<const EdgeUse> uses) {
    const std::uint32_t a = EdgeStart(mesh, uses[0].halfEdge);
    const std::uint32_t b = EdgeEnd(mesh, uses[0].halfEdge);
    const Vec3& origin = mesh.positions[std::min(a, b)];
    const Vec3 axis = Normalized(mesh.positions[std::max(a, b)] - origin);
    const auto across = [&](const EdgeUse& use) {
        const Vec3 arm = mesh.positions[EdgeApex(mesh, use.halfEdge)] - origin;
        return arm - axis * Dot(arm, axis);
    };
    const Vec3 zero = Normalized(across(uses[0]));
    const Vec3 quarter = Cross(axis, zero);
    std::vector<std::pair<double, EdgeUse>> turns;
    for (const EdgeUse& use : uses) {
        const Vec3 arm = across(use);
        turns.emplace_back(std::atan2(Dot(arm, quarter), Dot(arm, zero)), use);
    }
    std::stable_sort(turns.begin(), turns.end(),
                     [](const auto& x, const auto& y) { return x.first < y.first; });
    std::vector<EdgeUse> sorted;
    for (const auto& [angle, use] : turns)
        sorted.push_back(use);
    return sorted;
}

}  // namespace

EdgePairs PairAroundEdge(const BodyMesh& mesh, std::span<const EdgeUse> uses) {
    EdgePairs pairs;
    if (uses.size() == 2) {
        pairs.halfEdges.emplace_back(uses[0].halfEdge, uses[1].halfEdge);
        return pairs;
    }
    // Turning back from a forward triangle leads into the body, so the body's other wall is the
    // nearest backward triangle there: match them like brackets, twice around the circle.
    const std::vector<EdgeUse> sorted = SortAround(mesh, uses);
    std::vector<bool> matched(sorted.size(), false);
    std::vector<std::uint32_t> open;
    for (std::size_t i = 0; i < sorted.size() * 2; ++i) {
        const std::size_t at = i % sorted.size();
        const EdgeUse& use = sorted[at];
        const EdgeUse& next = sorted[(at + 1) % sorted.size()];
        if (use.forward == next.forward) pairs.alternating = false;
        if (!use.forward) {
            if (i < sorted.size()) open.push_back(use.halfEdge);
        } else if (!matched[at] && !open.empty()) {
            pairs.halfEdges.emplace_back(use.halfEdge, open.back());
            matched[at] = true;
            open.pop_back();
        }
    }
    return pairs;
}

}  // namespace ifchost
