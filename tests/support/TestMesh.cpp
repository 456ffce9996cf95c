// SPDX-License-Identifier: Apache-2.0
#include "support/TestMesh.h"

#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/opcode/OPCODECREATE.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace kycb::test {

namespace {

using Corner = std::pair<double, double>;

// The line through an edge, moved outward: a point on it and its direction of length 1.
struct EdgeLine {
    Corner point;
    Corner direction;
};

EdgeLine MovedEdge(const Corner& from, const Corner& to, double offset) {
    const double dx = to.first - from.first;
    const double dy = to.second - from.second;
    const double length = std::hypot(dx, dy);
    const Corner direction{dx / length, dy / length};
    return {{from.first + direction.second * offset, from.second - direction.first * offset},
            direction};
}

Corner Crossing(const EdgeLine& a, const EdgeLine& b) {
    const double det =
        a.direction.first * b.direction.second - a.direction.second * b.direction.first;
    const double dx = b.point.first - a.point.first;
    const double dy = b.point.second - a.point.second;
    const double t = (dx * b.direction.second - dy * b.direction.first) / det;
    return {a.point.first + t * a.direction.first, a.point.second + t * a.direction.second};
}

std::vector<Corner> MovedPolygon(const std::vector<Corner>& corners, double offset) {
    const std::size_t n = corners.size();
    std::vector<EdgeLine> edges;
    for (std::size_t i = 0; i < n; ++i) {
        edges.push_back(MovedEdge(corners[i], corners[(i + 1) % n], offset));
    }
    std::vector<Corner> moved;
    for (std::size_t i = 0; i < n; ++i) {
        moved.push_back(Crossing(edges[(i + n - 1) % n], edges[i]));
    }
    return moved;
}

// A convex polygon shrunk past nothing comes out with a corner on the wrong side of an edge.
bool IsConvexCounterClockwise(const std::vector<Corner>& corners) {
    const std::size_t n = corners.size();
    for (std::size_t i = 0; i < n; ++i) {
        const Corner& a = corners[i];
        const Corner& b = corners[(i + 1) % n];
        for (const Corner& c : corners) {
            const double cross = (b.first - a.first) * (c.second - a.second) -
                                 (b.second - a.second) * (c.first - a.first);
            if (cross < -1e-6) return false;
        }
    }
    return true;
}

IceMaths::Point ToPoint(const Corner& corner, double z) {
    return {static_cast<float>(corner.first), static_cast<float>(corner.second),
            static_cast<float>(z)};
}

void AddSide(TestMesh& mesh, std::uint32_t i, std::uint32_t n) {
    const std::uint32_t next = (i + 1) % n;
    mesh.triangles.emplace_back(i, next, n + next);
    mesh.triangles.emplace_back(i, n + next, n + i);
}

TestMesh PrismMesh(const std::vector<Corner>& corners, double minZ, double maxZ) {
    const auto n = static_cast<std::uint32_t>(corners.size());
    TestMesh mesh;
    for (const double z : {minZ, maxZ}) {
        for (const Corner& corner : corners) {
            mesh.vertices.push_back(ToPoint(corner, z));
        }
    }
    for (std::uint32_t i = 1; i + 1 < n; ++i) {
        mesh.triangles.emplace_back(0U, i + 1, i);
        mesh.triangles.emplace_back(n, n + i, n + i + 1);
    }
    for (std::uint32_t i = 0; i < n; ++i) {
        AddSide(mesh, i, n);
    }
    return mesh;
}

}  // namespace

Body PrismBody(std::vector<Corner> corners, double minZ, double maxZ) {
    return [=](int bodyOffset) -> std::optional<TestMesh> {
        const double offset = bodyOffset;
        const std::vector<Corner> moved = MovedPolygon(corners, offset);
        const bool isBody = minZ - offset < maxZ + offset && IsConvexCounterClockwise(moved);
        if (!isBody) return std::nullopt;
        return PrismMesh(moved, minZ - offset, maxZ + offset);
    };
}

Body BoxBody(const BoundingBox3d& box) {
    return [=](int bodyOffset) -> std::optional<TestMesh> {
        const double o = bodyOffset;
        const double x0 = box.GetMinX() - o;
        const double x1 = box.GetMaxX() + o;
        const double y0 = box.GetMinY() - o;
        const double y1 = box.GetMaxY() + o;
        if (!(x0 < x1 && y0 < y1 && box.GetMinZ() - o < box.GetMaxZ() + o)) return std::nullopt;
        return PrismMesh({{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}, box.GetMinZ() - o,
                         box.GetMaxZ() + o);
    };
}

Body FixedBody(TestMesh mesh) {
    return [mesh = std::move(mesh)](int) { return std::optional<TestMesh>(mesh); };
}

TestMesh LooseTriangles(int count) {
    TestMesh mesh;
    for (int i = 0; i < count; ++i) {
        const auto x = static_cast<float>(10 * i);
        const auto first = static_cast<std::uint32_t>(mesh.vertices.size());
        mesh.vertices.emplace_back(x, 0.0F, 0.0F);
        mesh.vertices.emplace_back(x + 5.0F, 0.0F, 0.0F);
        mesh.vertices.emplace_back(x, 5.0F, 0.0F);
        mesh.triangles.emplace_back(first, first + 1, first + 2);
    }
    return mesh;
}

Opcode::Model* MakeOpcodeModel(const TestMesh& mesh) {
    auto* vertices = new IceMaths::Point[mesh.vertices.size()];
    auto* triangles = new IceMaths::IndexedTriangle[mesh.triangles.size()];
    std::copy(mesh.vertices.begin(), mesh.vertices.end(), vertices);
    std::copy(mesh.triangles.begin(), mesh.triangles.end(), triangles);
    auto* interface = new Opcode::MeshInterface;
    interface->SetNbTriangles(static_cast<std::uint32_t>(mesh.triangles.size()));
    interface->SetNbVertices(static_cast<std::uint32_t>(mesh.vertices.size()));
    interface->SetPointers(triangles, vertices);
    Opcode::OPCODECREATE create;
    create.mIMesh = interface;
    auto* model = new Opcode::Model;
    model->Build(create);
    return model;
}

}  // namespace kycb::test
