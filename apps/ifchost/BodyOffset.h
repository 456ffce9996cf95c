// SPDX-License-Identifier: Apache-2.0
// Bodies grown by a clearance or shrunk by a tolerance.
#pragma once

#include <cstddef>
#include <cstdint>

#include "BodyMesh.h"
#include "BodyRepair.h"

namespace ifchost {

/// What became of a body as a whole.
enum class OffsetOutcome : std::uint8_t {
    Offset,      ///< every part was moved by the offset (or the offset is 0)
    Vanished,    ///< shrunk to nothing: there is no mesh
    OpenKept,    ///< at least one shell is open and is kept as it is; closed ones are offset
    NoTriangles  ///< the input had no usable triangle
};

/// The offset body and how each of its solids was made.
struct OffsetResult {
    BodyMesh mesh;
    OffsetOutcome outcome = OffsetOutcome::NoTriangles;
    RepairReport repair;
    std::size_t movedSolids = 0;       ///< same triangles, corners recomputed
    std::size_t rebuiltSolids = 0;     ///< surface put together anew, see OffsetBody
    std::size_t vanishedSolids = 0;    ///< nothing left of them
    std::size_t simplifiedSolids = 0;  ///< rebuilt ones that were too intricate to cut exactly
};

/// Moves each face plane of a body by `offsetMm` along its outward normal (positive grows, negative
/// shrinks) and recomputes the corners. The input is repaired first (see RepairBody); each solid
/// of it is offset for itself.
///
/// As long as nothing collapses, each vertex moves to the point where the moved planes of its
/// faces meet: exactly for up to three different planes, by the smallest displacement for fewer,
/// and by least squares for more if the planes then agree within a few hundredths of a millimetre.
///
/// When they do not, or a mitre is longer than kMitreLimit offsets, or an edge or face would turn
/// over (a gap closes, a thin part vanishes), or the shrunk surface would cross itself, the surface
/// is rebuilt from the union of the layers over each face, edge and corner (see OffsetPieces). The
/// rebuilt surface covers the boundary of the result exactly once, but neighbouring triangles meet
/// in T-junctions.
///
/// Grown: every point of the body is inside, and no vertex is farther from it than its mitre. A
/// moved surface may pass through itself where two parts of the body grow together; what then lies
/// hidden is inside the grown body. Where two solids of the body overlap, both surfaces remain.
/// Shrunk: the result lies inside the body, at least the offset away from each face.
///
/// Lengths in millimetres; coordinates may be far from the origin. Near-linear in the number of
/// triangles unless these are small against the offset and the surface needs rebuilding.
OffsetResult OffsetBody(const BodyMesh& input, double offsetMm);

}  // namespace ifchost
