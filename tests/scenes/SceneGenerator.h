// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "scenes/Scene.h"

namespace kycb::scenes {

/// A small random scene, the same for a seed on every machine.
///
/// Coordinates snap to a coarse raster, so that bodies touch, share planes, contain and repeat each
/// other far more often than they would by chance; all vertices stand on the reference's grid.
/// Everything else is drawn from short lists for the same reason: kinds, GUIDs, names, heights,
/// sizes and grid axes coincide often.
Scene MakeScene(std::uint64_t seed);

}  // namespace kycb::scenes
