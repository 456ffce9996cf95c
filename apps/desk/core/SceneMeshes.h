// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ifchost {
class IfcWorkset;
}

namespace desk {

/// An axis-aligned box in scene coordinates (mm); empty while min > max.
struct SceneBounds {
    std::array<float, 3> min{1.0F, 1.0F, 1.0F};
    std::array<float, 3> max{-1.0F, -1.0F, -1.0F};

    bool IsEmpty() const { return min[0] > max[0]; }
    void Add(float x, float y, float z);
    void Add(const SceneBounds& other);
};

/// A run of indices in SceneMeshes::indices (three make a triangle) or SceneMeshes::edges (two make
/// a line).
struct IndexRange {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};

/// The triangles of all components and the edges to draw on them, ready for the graphics card.
///
/// Scene coordinates are those of the collision model: millimetres relative to the work set's
/// origin, z up. Components of one specialty lie side by side, so that each is drawn at once.
struct SceneMeshes {
    struct Group {
        std::wstring specialty;
        IndexRange range;
    };

    std::vector<float> positions;  ///< x, y, z per vertex
    std::vector<std::uint32_t> indices;
    std::vector<std::uint32_t> edges;
    std::vector<IndexRange> ofComponent;  ///< by index in IfcWorkset::Components()
    std::vector<IndexRange> edgesOfComponent;
    std::vector<SceneBounds> boundsOfComponent;
    std::vector<Group> groups;  ///< by name
    SceneBounds bounds;

    std::size_t TriangleCount() const { return indices.size() / 3; }
};

/// Collects the meshes of all components that have one.
SceneMeshes CollectMeshes(const ifchost::IfcWorkset& workset);

}  // namespace desk
