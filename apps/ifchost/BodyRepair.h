// SPDX-License-Identifier: Apache-2.0
// Turns a triangle list as modelling programs write it into solids with a known inside.
#pragma once

#include <cstddef>
#include <vector>

#include "BodyMesh.h"

namespace ifchost {

/// Vertices closer than this are one. Above the rounding of single-precision metre coordinates up
/// to 80 m from their origin (0.008 mm), far below anything that is built.
inline constexpr double kWeldToleranceMm = 0.01;

/// A triangle whose height over its longest edge is not above this has no area and no direction.
inline constexpr double kZeroHeightMm = 0.001;

/// What RepairBody found and did; all counts are 0 for a flawless mesh with one shell but `shells`.
struct RepairReport {
    std::size_t invalidTriangles = 0;    ///< dropped: coordinates not finite or index out of range
    std::size_t weldedVertices = 0;      ///< vertices that were merged into an earlier one
    std::size_t zeroAreaTriangles = 0;   ///< dropped
    std::size_t duplicateTriangles = 0;  ///< dropped: copies, and walls inside between two parts
    std::size_t splitEdges = 0;          ///< border edges split at a vertex that lay on them
    std::size_t shells = 0;              ///< connected pieces of surface, open ones too
    std::size_t turnedShells = 0;        ///< closed shells that were turned over
    std::size_t cavities = 0;            ///< closed shells that bound a hollow inside a solid
    std::size_t openShells = 0;          ///< shells without an inside
    std::size_t openEdges = 0;           ///< edges of open shells with one triangle
    std::size_t nonManifoldEdges = 0;    ///< edges of open shells whose three or more triangles
                                         ///< do not cancel out
};

/// The parts of a body after repair.
struct RepairedBody {
    /// Each an outer shell facing outward with its cavities facing inward. Solids may overlap or
    /// lie inside one another when the input had them so.
    std::vector<BodyMesh> solids;
    /// All triangles of shells that are not closed, in their input sense; empty when there are
    /// none.
    BodyMesh open;
    RepairReport report;
};

/// Welds vertices within kWeldToleranceMm (each to the first such vertex in input order, which
/// keeps its position), drops triangles without area and duplicates, splits border edges at
/// vertices on them, splits the surface into shells, gives each shell one sense, and turns closed
/// shells outward. A shell inside another one is a cavity when its sense in the input was opposite
/// to that of the outermost shell around it, and a solid of its own otherwise. Two triangles on
/// the same vertices with opposite senses are both dropped (a wall between two touching parts),
/// unless the whole connected surface is two-sided; then one sheet of it stays. Near-linear time.
RepairedBody RepairBody(const BodyMesh& input);

}  // namespace ifchost
