// SPDX-License-Identifier: Apache-2.0
// The offset of convex solids as an intersection of half-spaces.
#pragma once

#include <optional>

#include "SolidSurface.h"

namespace ifchost {

/// The convex solid grown by `distance` above 0: the intersection of its moved half-spaces, each
/// edge with too long a mitre cut off (see kMitreLimit), and each corner at that many offsets.
/// Nothing when the solid is not convex or has too many faces to cut each at each.
std::optional<BodyMesh> GrowConvex(const SolidSurface& surface, double distance);

}  // namespace ifchost
