// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace Opcode {

class MeshInterface;

/// What `Model::Build` needs.
struct OPCODECREATE {
    /// The mesh to build from, borrowed: it must outlive the model's last query.
    MeshInterface* mIMesh = nullptr;
};

}  // namespace Opcode
