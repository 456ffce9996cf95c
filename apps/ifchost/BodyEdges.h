// SPDX-License-Identifier: Apache-2.0
// Half-edges of a triangle mesh. Half-edge 3 t + k runs from corner k of triangle t to the next.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "BodyMesh.h"

namespace ifchost {

/// One triangle's use of an edge; `forward` when it runs from the smaller vertex index up.
struct EdgeUse {
    std::uint32_t halfEdge = 0;
    bool forward = false;
};

inline std::uint32_t NextHalfEdge(std::uint32_t h) {
    return h % 3 == 2 ? h - 2 : h + 1;
}
inline std::uint32_t EdgeStart(const BodyMesh& mesh, std::uint32_t h) {
    return mesh.triangles[h / 3][h % 3];
}
inline std::uint32_t EdgeEnd(const BodyMesh& mesh, std::uint32_t h) {
    return EdgeStart(mesh, NextHalfEdge(h));
}
inline std::uint32_t EdgeApex(const BodyMesh& mesh, std::uint32_t h) {
    return EdgeEnd(mesh, NextHalfEdge(h));
}

/// How the triangles around one edge belong together.
struct EdgePairs {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> halfEdges;
    bool alternating = true;  ///< the senses alternate around the edge, so body and empty space do
};

/// Pairs the triangles around an edge that have the body between them. The edge must be used
/// equally often in both senses.
EdgePairs PairAroundEdge(const BodyMesh& mesh, std::span<const EdgeUse> uses);

/// Calls `visit(std::span<const EdgeUse>)` once for each edge, in the order of its vertex indices,
/// with the uses in triangle order.
template <typename Visitor>
void ForEachEdge(const BodyMesh& mesh, Visitor&& visit) {
    struct Entry {
        std::uint64_t key;
        EdgeUse use;
    };
    std::vector<Entry> entries;
    entries.reserve(mesh.triangles.size() * 3);
    for (std::uint32_t h = 0; h < mesh.triangles.size() * 3; ++h) {
        const std::uint64_t a = EdgeStart(mesh, h);
        const std::uint64_t b = EdgeEnd(mesh, h);
        entries.push_back({std::min(a, b) << 32 | std::max(a, b), {h, a < b}});
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
        return a.key != b.key ? a.key < b.key : a.use.halfEdge < b.use.halfEdge;
    });
    std::vector<EdgeUse> uses;
    for (std::size_t first = 0, last = 0; first < entries.size(); first = last) {
        uses.clear();
        for (; last < entries.size() && entries[last].key == entries[first].key; ++last) {
            uses.push_back(entries[last].use);
        }
        visit(std::span<const EdgeUse>(uses));
    }
}

}  // namespace ifchost
