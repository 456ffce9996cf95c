// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace IceMaths {

/// A triangle as three indices into the vertex array of its mesh.
///
/// The winding order carries no meaning for the collider. Equal indices, or vertices on one line,
/// make a triangle of no area, which is treated as the segment or the point that it is.
struct IndexedTriangle {
    std::uint32_t mVRef[3] = {0, 0, 0};

    IndexedTriangle() = default;
    IndexedTriangle(std::uint32_t r0, std::uint32_t r1, std::uint32_t r2) : mVRef{r0, r1, r2} {}
};

}  // namespace IceMaths
