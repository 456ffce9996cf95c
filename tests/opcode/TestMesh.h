// SPDX-License-Identifier: Apache-2.0
// Meshes that own their arrays, and queries in one call.
#pragma once

#include "KYCollisionBase/opcode/AABBTreeCollider.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace kycb::opcode::test {

using IceMaths::IndexedTriangle;
using IceMaths::Point;

struct MeshData {
    std::vector<Point> vertices;
    std::vector<IndexedTriangle> triangles;

    void AddTriangle(const Point& a, const Point& b, const Point& c) {
        const auto first = static_cast<std::uint32_t>(vertices.size());
        vertices.insert(vertices.end(), {a, b, c});
        triangles.emplace_back(first, first + 1, first + 2);
    }
};

/// An axis-parallel box of 8 vertices and 12 triangles.
inline MeshData MakeBox(const Point& low, const Point& high) {
    MeshData mesh;
    for (int corner = 0; corner < 8; ++corner)
        mesh.vertices.emplace_back((corner & 1) != 0 ? high.x : low.x,
                                   (corner & 2) != 0 ? high.y : low.y,
                                   (corner & 4) != 0 ? high.z : low.z);
    const std::uint32_t faces[6][4] = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                       {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};
    for (const auto& f : faces) {
        mesh.triangles.emplace_back(f[0], f[1], f[2]);
        mesh.triangles.emplace_back(f[0], f[2], f[3]);
    }
    return mesh;
}

/// A built model over mesh data of its own.
class BuiltMesh {
  public:
    explicit BuiltMesh(MeshData data) : data_(std::move(data)) {
        mesh_.SetPointers(data_.triangles.data(), data_.vertices.data());
        mesh_.SetNbTriangles(static_cast<std::uint32_t>(data_.triangles.size()));
        mesh_.SetNbVertices(static_cast<std::uint32_t>(data_.vertices.size()));
        Opcode::OPCODECREATE create;
        create.mIMesh = &mesh_;
        accepted_ = model_.Build(create);
    }
    BuiltMesh(const BuiltMesh&) = delete;
    BuiltMesh& operator=(const BuiltMesh&) = delete;

    const Opcode::MeshInterface& Mesh() const { return mesh_; }
    const Opcode::Model& Model() const { return model_; }
    Opcode::Model& Model() { return model_; }
    bool Accepted() const { return accepted_; }

  private:
    MeshData data_;
    Opcode::MeshInterface mesh_;
    Opcode::Model model_;
    bool accepted_ = false;
};

using PairList = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

struct QueryResult {
    bool done = false;
    PairList pairs;
    std::vector<Point> points;
};

inline void KeepPoint(const Point& point, void* points) {
    static_cast<std::vector<Point>*>(points)->push_back(point);
}

inline QueryResult Query(Opcode::AABBTreeCollider& collider, const BuiltMesh& a,
                         const BuiltMesh& b) {
    Opcode::BVTCache cache;
    cache.Model0 = &a.Model();
    cache.Model1 = &b.Model();
    QueryResult result;
    collider.SetContactCallback(&KeepPoint, &result.points);
    result.done = collider.Collide(cache);
    for (std::uint32_t i = 0; i < collider.GetNbPairs(); ++i)
        result.pairs.emplace_back(collider.GetPairs()[i].id0, collider.GetPairs()[i].id1);
    return result;
}

inline QueryResult Query(const BuiltMesh& a, const BuiltMesh& b) {
    Opcode::AABBTreeCollider collider;
    return Query(collider, a, b);
}

}  // namespace kycb::opcode::test
