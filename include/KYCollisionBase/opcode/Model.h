// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/opcode/OPCODECREATE.h"

#include <memory>

namespace kycb::opcode {
class MeshTree;
}

namespace Opcode {

class MeshInterface;

/// A mesh prepared for collision queries.
///
/// `Build` checks the mesh and takes its bounding box. Everything else is made by the queries that
/// need it: the oriented box, then the boxes of the hierarchy, then the contents of those leaves
/// that another mesh comes near. A model that meets nothing costs nothing more. A whole hierarchy
/// takes less than 100 bytes for each triangle.
///
/// Ownership: the mesh interface and its arrays are borrowed. The destructor frees the hierarchy
/// alone and never looks at the mesh, so the host may have freed that before.
///
/// Threads: a query extends the hierarchy of both models it reads. One model may therefore be used
/// by one thread at a time; different models are independent.
class KYCB_API Model {
  public:
    Model();
    ~Model();
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// Takes the mesh of `create`, replacing an earlier one.
    ///
    /// Refused, with the model left without a tree, are: no mesh, an array that is missing while
    /// its count is not 0, and a triangle with a vertex index outside the vertex array. A mesh
    /// without triangles is accepted but has no tree. Vertices that are not finite are accepted;
    /// their triangles touch nothing.
    /// @return whether the mesh was accepted.
    bool Build(const OPCODECREATE& create);

    /// Builds the whole hierarchy now, so that no query has to. Pays for a large mesh that meets
    /// many others, or when models are prepared on several threads. Without a tree it does nothing.
    /// @throws std::bad_alloc when memory runs out; the model stays usable.
    void BuildWholeTree();

    /// The mesh last given to `Build`, also when it was refused (so that its owner finds it to
    /// free it); null before the first call.
    const MeshInterface* GetMeshInterface() const { return mesh_; }

    /// Not null once a mesh with at least one triangle was accepted. The type is internal: hosts
    /// only compare the pointer with null.
    const kycb::opcode::MeshTree* GetTree() const { return tree_.get(); }

  private:
    friend class AABBTreeCollider;

    const MeshInterface* mesh_ = nullptr;
    std::unique_ptr<kycb::opcode::MeshTree> tree_;
};

}  // namespace Opcode
