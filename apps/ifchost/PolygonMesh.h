// SPDX-License-Identifier: Apache-2.0
// Builds a triangle mesh from convex polygons.
#pragma once

#include <bit>
#include <unordered_map>
#include <utility>
#include <vector>

#include "BodyMesh.h"

namespace ifchost {

/// Collects convex polygons as triangles; equal positions become one vertex.
class PolygonMesh {
  public:
    void Add(const std::vector<Vec3>& corners) {
        std::vector<std::uint32_t> ring;
        for (const Vec3& p : corners) {
            const std::uint32_t vertex = VertexAt(p);
            if (ring.empty() || (ring.back() != vertex && ring.front() != vertex)) {
                ring.push_back(vertex);
            }
        }
        for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
            mesh_.triangles.push_back({ring[0], ring[i], ring[i + 1]});
        }
    }

    BodyMesh Take() { return std::move(mesh_); }

  private:
    struct Hash {
        std::size_t operator()(const Vec3& p) const {
            // Adding 0 makes -0 and 0, which compare equal, hash alike.
            const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v + 0.0); };
            return bits(p.x) * 0x9E3779B97F4A7C15ULL ^ bits(p.y) * 0xC2B2AE3D27D4EB4FULL ^
                   bits(p.z) * 0x165667B19E3779F9ULL;
        }
    };

    std::uint32_t VertexAt(const Vec3& p) {
        const auto [it, isNew] =
            vertices_.try_emplace(p, static_cast<std::uint32_t>(mesh_.positions.size()));
        if (isNew) mesh_.positions.push_back(p);
        return it->second;
    }

    BodyMesh mesh_;
    std::unordered_map<Vec3, std::uint32_t, Hash> vertices_;
};

}  // namespace ifchost
