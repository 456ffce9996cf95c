// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/Model.h"

#include "KYCollisionBase/opcode/MeshInterface.h"

#include <algorithm>

#include "opcode/MeshTree.h"
#include "opcode/Query.h"

namespace Opcode {
namespace {

bool IsUsable(const MeshInterface& mesh) {
    if (mesh.GetNbVertices() != 0 && mesh.GetVerts() == nullptr) return false;
    if (mesh.GetNbTriangles() == 0) return true;
    if (mesh.GetTris() == nullptr) return false;
    std::uint32_t largest = 0;
    for (std::uint32_t i = 0; i < mesh.GetNbTriangles(); ++i)
        for (const std::uint32_t ref : mesh.GetTris()[i].mVRef)
            largest = std::max(largest, ref);
    return largest < mesh.GetNbVertices();
}

}  // namespace

Model::Model() = default;
Model::~Model() = default;

bool Model::Build(const OPCODECREATE& create) {
    tree_.reset();
    mesh_ = create.mIMesh;
    if (mesh_ == nullptr || !IsUsable(*mesh_)) return false;
    if (mesh_->GetNbTriangles() > 0) tree_ = std::make_unique<kycb::opcode::MeshTree>(*mesh_);
    return true;
}

void Model::BuildWholeTree() {
    if (tree_) kycb::opcode::BuildWholeTree(*tree_);
}

}  // namespace Opcode
