// SPDX-License-Identifier: Apache-2.0
#include "opcode/MeshTree.h"

namespace kycb::opcode {

MeshTree::MeshTree(const Opcode::MeshInterface& mesh) {
    const auto* verts = mesh.GetVerts();
    for (std::uint32_t i = 0; i < mesh.GetNbTriangles(); ++i) {
        const auto& refs = mesh.GetTris()[i].mVRef;
        const Triangle t = {{verts[refs[0]], verts[refs[1]], verts[refs[2]]}};
        if (IsFinite(t)) items_.push_back({t, i});
    }
}

}  // namespace kycb::opcode
