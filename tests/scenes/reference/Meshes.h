// SPDX-License-Identifier: Apache-2.0
// Which triangles of two meshes touch, and where: every triangle against every other, in whole
// numbers and fractions of them.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "scenes/Outcome.h"
#include "support/TestMesh.h"

namespace kycb::scenes::reference {

/// Vertices stand on a grid of 1/64 mm, which single precision holds exactly near the origin.
/// Everything below throws std::runtime_error for a finite vertex off the grid.
inline constexpr double kGridPerMillimetre = 64.0;

/// Whether the collider takes a mesh: it has triangles, and all of them have their vertices.
bool IsUsable(const test::TestMesh& mesh);

using TrianglePairs = std::vector<std::pair<std::size_t, std::size_t>>;

/// What two meshes have in common.
struct Contact {
    TrianglePairs pairs;  ///< ascending
    Point high;           ///< corners of the smallest box around all common points (mm)
    Point low;
};

/// Nothing when no triangles touch.
std::optional<Contact> ContactOf(const test::TestMesh& a, const test::TestMesh& b);

}  // namespace kycb::scenes::reference
