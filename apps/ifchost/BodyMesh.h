// SPDX-License-Identifier: Apache-2.0
// An indexed triangle mesh in double precision, and what can be said about it as a body.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "BodyMath.h"

namespace ifchost {

/// Three indices into BodyMesh::positions, counter-clockwise seen from outside the body.
using BodyTriangle = std::array<std::uint32_t, 3>;

/// A plain value: positions in millimetres and the triangles between them. Nothing is promised
/// about the mesh until RepairBody has been over it; every index must be below the vertex count.
struct BodyMesh {
    std::vector<Vec3> positions;
    std::vector<BodyTriangle> triangles;

    bool IsEmpty() const { return triangles.empty(); }
    const Vec3& Corner(std::size_t triangle, std::size_t k) const {
        return positions[triangles[triangle][k]];
    }
};

/// Box of the vertices that triangles use; empty for a mesh without triangles.
BodyBox BoundingBox(const BodyMesh& mesh);

/// Enclosed volume in cubic millimetres, positive when the triangles face outward. It is that of
/// the cone over the surface when the mesh is open. Measured from the box centre, so bodies far
/// from the origin keep their digits.
double SignedVolume(const BodyMesh& mesh);

/// Appends `other` without sharing vertices between the two.
void Append(BodyMesh& mesh, const BodyMesh& other);

/// Turns every triangle over.
void TurnOver(BodyMesh& mesh);

/// The mesh placed by an affine `transform`: row-major, the last row 0 0 0 1. A mirroring one
/// (negative determinant) also turns the triangles over, so outward stays outward.
BodyMesh Transformed(const BodyMesh& mesh, const std::array<double, 16>& transform);

/// Single-precision arrays in the layout that a mesh collider reads.
struct OpcodeArrays {
    std::vector<float> positions;        ///< x, y, z per vertex, millimetres from the origin given
    std::vector<std::uint32_t> indices;  ///< three per triangle

    std::size_t VertexCount() const { return positions.size() / 3; }
    std::size_t TriangleCount() const { return indices.size() / 3; }
};

/// Subtracts `origin` in double precision and rounds to float. With an origin within 1 km of the
/// body the rounding stays below 0.04 mm. All bodies that are tested against one another need the
/// same origin. Vertices that no triangle uses are left out.
OpcodeArrays ToOpcodeArrays(const BodyMesh& mesh, const Vec3& origin);

}  // namespace ifchost
