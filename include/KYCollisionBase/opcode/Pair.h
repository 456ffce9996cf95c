// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace Opcode {

/// Two triangles that touch: the index of each in the triangle array of its own mesh.
struct Pair {
    std::uint32_t id0 = 0;  ///< triangle of `BVTCache::Model0`
    std::uint32_t id1 = 0;  ///< triangle of `BVTCache::Model1`
};

}  // namespace Opcode
