// SPDX-License-Identifier: Apache-2.0
// Finds the axis of a body that was swept along a straight line.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "ScenePackage.h"

namespace ifchost {

/// Triangles in world coordinates (mm).
struct WorldMesh {
    std::vector<Point3> points;
    std::vector<std::array<std::uint32_t, 3>> triangles;
};

/// All instances of a product in one mesh; empty without a body.
WorldMesh WorldMeshOf(const ScenePackage& package, const SceneProduct& product);

/// A straight run: pipe, duct, beam, column. Lengths in millimetres.
struct PrismShape {
    Point3 start{};  ///< middle of the section at one end
    Point3 end{};
    double width = 0.0;   ///< of the section, horizontally as far as that can be told
    double height = 0.0;  ///< of the section, across the width
    double radius = 0.0;  ///< above 0 for round sections only

    double Length() const;
    double Rise() const { return end[2] - start[2]; }
    /// The ends are at the same height to within the rounding of their coordinates.
    bool IsHorizontal() const;
    bool IsVertical() const;
};

/// The shape that the product's swept solid tells, when its body is one single solid swept along
/// a straight line that is longer than the section is wide.
std::optional<PrismShape> PrismOfSection(const SceneProduct& product);

/// The shape that the surface itself tells. The normals of a prism's sides are perpendicular to
/// its axis, so the axis is the eigenvector with the smallest eigenvalue of the area-weighted
/// normal matrix, however the surface is triangulated. Nothing when the body is no prism, or is
/// not longer than wide.
std::optional<PrismShape> PrismOfMesh(const WorldMesh& mesh);

/// Direction in plan along which the mesh extends most (unit length, z = 0); the x axis when there
/// is none.
Point3 PlanDirection(const WorldMesh& mesh);

/// Length of the mesh's shadow on a line along `direction` (unit length).
double ExtentAlong(const WorldMesh& mesh, const Point3& direction);

}  // namespace ifchost
