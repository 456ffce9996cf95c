// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace desk {

/// The edges of a mesh that a draughtsman would draw: those of open rims, and those at which two
/// faces meet at more than 30 degrees; neither the diagonals of a flat face nor the seams between
/// the chords of a round one. Vertices at the same place count as one; degenerate triangles do not
/// count.
///
/// `positions` has x, y, z per vertex. Returns two vertex indices per edge.
std::vector<std::uint32_t> FeatureEdges(std::span<const double> positions,
                                        std::span<const std::uint32_t> indices);

}  // namespace desk
