// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/opcode/IndexedTriangle.h"
#include "KYCollisionBase/opcode/Point.h"

#include <cstdint>

namespace Opcode {

/// A host's triangle mesh as the collider sees it: two borrowed arrays and their lengths.
///
/// Ownership: neither array is owned. The host frees, in this order, the triangle array, the vertex
/// array, the mesh interface and the model; no destructor here or in `Model` reads what was freed.
/// Threads: no lock is taken; set everything before the mesh is given to `Model::Build`.
class KYCB_API MeshInterface {
  public:
    /// Borrows both arrays. The contents must stay as they are from `Model::Build` to the last
    /// query, because a model reads them again when it first needs its tree.
    /// @return whether both pointers are set; null pointers are stored all the same.
    bool SetPointers(const IceMaths::IndexedTriangle* tris, const IceMaths::Point* verts);

    void SetNbTriangles(std::uint32_t count) { nbTriangles_ = count; }
    void SetNbVertices(std::uint32_t count) { nbVertices_ = count; }

    const IceMaths::IndexedTriangle* GetTris() const { return tris_; }
    const IceMaths::Point* GetVerts() const { return verts_; }
    std::uint32_t GetNbTriangles() const { return nbTriangles_; }
    std::uint32_t GetNbVertices() const { return nbVertices_; }

  private:
    const IceMaths::IndexedTriangle* tris_ = nullptr;
    const IceMaths::Point* verts_ = nullptr;
    std::uint32_t nbTriangles_ = 0;
    std::uint32_t nbVertices_ = 0;
};

}  // namespace Opcode
