// SPDX-License-Identifier: Apache-2.0
#include "BodyMesh.h"

#include <limits>
#include <utility>

namespace ifchost {

BodyBox BoundingBox(const BodyMesh& mesh) {
    BodyBox box;
    for (const BodyTriangle& triangle : mesh.triangles) {
        for (const std::uint32_t vertex : triangle)
            box.Add(mesh.positions[vertex]);
    }
    return box;
}

double SignedVolume(const BodyMesh& mesh) {
    if (mesh.IsEmpty()) return 0.0;
    const Vec3 center = BoundingBox(mesh).Center();
    double sixfold = 0.0;
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        const Vec3 a = mesh.Corner(t, 0) - center;
        const Vec3 b = mesh.Corner(t, 1) - center;
        const Vec3 c = mesh.Corner(t, 2) - center;
        sixfold += Dot(a, Cross(b, c));
    }
    return sixfold / 6.0;
}

void Append(BodyMesh& mesh, const BodyMesh& other) {
    const auto base = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.positions.insert(mesh.positions.end(), other.positions.begin(), other.positions.end());
    for (const BodyTriangle& t : other.triangles) {
        mesh.triangles.push_back({t[0] + base, t[1] + base, t[2] + base});
    }
}

void TurnOver(BodyMesh& mesh) {
    for (BodyTriangle& triangle : mesh.triangles)
        std::swap(triangle[1], triangle[2]);
}

BodyMesh Transformed(const BodyMesh& mesh, const std::array<double, 16>& transform) {
    const auto& m = transform;
    BodyMesh placed;
    placed.triangles = mesh.triangles;
    placed.positions.reserve(mesh.positions.size());
    for (const Vec3& p : mesh.positions) {
        placed.positions.push_back({m[0] * p.x + m[1] * p.y + m[2] * p.z + m[3],
                                    m[4] * p.x + m[5] * p.y + m[6] * p.z + m[7],
                                    m[8] * p.x + m[9] * p.y + m[10] * p.z + m[11]});
    }
    const Vec3 rowX{m[0], m[1], m[2]};
    const Vec3 rowY{m[4], m[5], m[6]};
    const Vec3 rowZ{m[8], m[9], m[10]};
    if (Dot(rowX, Cross(rowY, rowZ)) < 0.0) TurnOver(placed);
    return placed;
}

OpcodeArrays ToOpcodeArrays(const BodyMesh& mesh, const Vec3& origin) {
    constexpr std::uint32_t kUnused = std::numeric_limits<std::uint32_t>::max();
    std::vector<std::uint32_t> newIndex(mesh.positions.size(), kUnused);
    OpcodeArrays arrays;
    arrays.indices.reserve(mesh.triangles.size() * 3);
    for (const BodyTriangle& triangle : mesh.triangles) {
        for (const std::uint32_t vertex : triangle) {
            if (newIndex[vertex] == kUnused) {
                newIndex[vertex] = static_cast<std::uint32_t>(arrays.VertexCount());
                const Vec3 local = mesh.positions[vertex] - origin;
                for (const double value : {local.x, local.y, local.z}) {
                    arrays.positions.push_back(static_cast<float>(value));
                }
            }
            arrays.indices.push_back(newIndex[vertex]);
        }
    }
    return arrays;
}

}  // namespace ifchost
