// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/opcode/MeshInterface.h"

#include <cstdint>
#include <vector>

#include "opcode/TriangleContact.h"

namespace kycb::opcode {

/// What a model keeps beside its mesh: here, the finite triangles.
class MeshTree {
  public:
    struct Item {
        Triangle triangle;
        std::uint32_t id;
    };

    explicit MeshTree(const Opcode::MeshInterface& mesh);

    const std::vector<Item>& Items() const { return items_; }

  private:
    std::vector<Item> items_;
};

}  // namespace kycb::opcode
