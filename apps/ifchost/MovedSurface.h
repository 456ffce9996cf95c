// SPDX-License-Identifier: Apache-2.0
// The offset of a solid as long as its triangles stay the same.
#pragma once

#include <optional>

#include "BodyMesh.h"

namespace ifchost {

/// The solid with each vertex where the moved planes of its faces meet; nothing when that is not
/// its offset: the planes at a vertex do not meet in one point, a mitre gets too long, an edge or
/// face turns over, or the surface of a shrunk solid comes to cross itself or swallow itself. The
/// solid must be closed and face outward.
std::optional<BodyMesh> MoveSurface(const BodyMesh& solid, double offset);

}  // namespace ifchost
