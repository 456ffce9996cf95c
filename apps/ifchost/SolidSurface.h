// SPDX-License-Identifier: Apache-2.0
// The flat faces, edges and corners of a closed triangle mesh.
#pragma once

#include <cstdint>
#include <vector>

#include "BodyEdges.h"
#include "BodyMesh.h"

namespace ifchost {

/// How two faces meet at an edge, seen from the empty side.
enum class EdgeKind : std::uint8_t {
    Flat,    ///< one face goes on in the other
    Convex,  ///< the body stands out; also a knife edge of no angle
    Concave  ///< the body falls in
};

/// Triangles grouped into flat faces, half-edges paired across the body. Borrows the mesh, which
/// must be balanced (each edge used equally often in both senses) and face one way throughout.
class SolidSurface {
  public:
    explicit SolidSurface(const BodyMesh& mesh);

    const BodyMesh& Mesh() const { return mesh_; }

    /// The half-edge that borders the same corner of the body. Where more than two triangles share
    /// an edge, those with the body between them belong together.
    std::uint32_t Opposite(std::uint32_t halfEdge) const { return opposite_[halfEdge]; }
    EdgeKind Kind(std::uint32_t halfEdge) const { return kinds_[halfEdge]; }

    std::uint32_t FaceOf(std::uint32_t triangle) const { return faces_[triangle]; }
    std::size_t FaceCount() const { return planes_.size(); }
    /// The plane of a face with the outward normal.
    const HalfSpace& Plane(std::uint32_t face) const { return planes_[face]; }
    const HalfSpace& PlaneOfTriangle(std::uint32_t triangle) const {
        return planes_[faces_[triangle]];
    }

    /// True when the body is the intersection of its faces' half-spaces.
    bool IsConvex() const;

    /// Unit direction of a half-edge, exactly opposite for its opposite.
    Vec3 Direction(std::uint32_t halfEdge) const;

  private:
    void PairHalfEdges();
    void GroupFaces();
    void GrowFace(std::uint32_t seed, std::uint32_t face);
    void FitPlanes();
    void ClassifyEdges();

    const BodyMesh& mesh_;
    std::vector<std::uint32_t> opposite_;
    std::vector<EdgeKind> kinds_;
    std::vector<Vec3> areaVectors_;
    std::vector<std::uint32_t> faces_;
    std::vector<HalfSpace> planes_;
};

}  // namespace ifchost
