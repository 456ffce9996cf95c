// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/MeshInterface.h"

namespace Opcode {

bool MeshInterface::SetPointers(const IceMaths::IndexedTriangle* tris,
                                const IceMaths::Point* verts) {
    tris_ = tris;
    verts_ = verts;
    return tris != nullptr && verts != nullptr;
}

}  // namespace Opcode
