// SPDX-License-Identifier: Apache-2.0
// The flat faces of a solid as a few convex polygons instead of many triangles.
#pragma once

#include <cstdint>
#include <vector>

#include "SolidSurface.h"

namespace ifchost {

/// The half-edges around a polygon, counter-clockwise seen from outside.
using HalfEdgeRing = std::vector<std::uint32_t>;

/// Covers the surface exactly: neighbouring triangles of a face are one polygon as long as its
/// outline stays convex. Edges between triangles are taken away one by one, the longest first,
/// which leaves at most four times as many polygons as the best cover has (Hertel and Mehlhorn,
/// Fast triangulation of simple polygons, 1983). Near-linear in the number of triangles.
std::vector<HalfEdgeRing> ConvexPatches(const SolidSurface& surface);

}  // namespace ifchost
