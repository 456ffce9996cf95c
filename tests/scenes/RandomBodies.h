// SPDX-License-Identifier: Apache-2.0
// Bodies for random scenes.
#pragma once

#include <array>

#include "support/Random.h"
#include "support/TestMesh.h"

namespace kycb::scenes {

/// A place on the raster of a scene, from its origin (mm).
using Origin = std::array<double, 3>;

/// A body near `origin`: most often a box, a prism or a pipe, along the axes or turned; at times
/// loose triangles, broken ones among them, a mesh that no collider takes, or nothing at all.
test::Body RandomBody(test::Random& random, const Origin& origin);

/// The smallest box around the finite vertices of a body as it is; null without any.
test::BoundingBox3d BoxAround(const test::Body& body);

}  // namespace kycb::scenes
