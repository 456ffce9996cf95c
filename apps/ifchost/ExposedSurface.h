// SPDX-License-Identifier: Apache-2.0
// The part of overlapping convex pieces that shows from outside.
#pragma once

#include "InsideQuery.h"
#include "OffsetPieces.h"

namespace ifchost {

/// On which side of the body's own surface the pieces' surface counts.
enum class KeepSide {
    OutsideBody,  ///< pieces laid on the body
    InsideBody    ///< pieces cut into the body
};

/// How exactly the exposed surface was found.
enum class Exposure {
    Exact,      ///< every polygon was cut at every piece
    Simplified  ///< the limit on work was reached: polygons after that were kept whole (on the
                ///< body, where hidden ones do no harm) or kept or dropped by their middle point
};

struct ExposedSurface {
    BodyMesh mesh;  ///< faces away from the pieces; covers the boundary of their union (together
                    ///< with the body) once, but meets itself in T-junctions
    Exposure exposure = Exposure::Exact;
};

/// Cuts away from each polygon of the pieces what lies in another piece or on the wrong side of
/// the body. Of coinciding polygons one is kept when the pieces lie on the same side of them and
/// none when they lie on both. The work grows with the number of pieces that overlap.
ExposedSurface FindExposedSurface(const OffsetPieces& pieces, const InsideQuery& body,
                                  KeepSide side);

}  // namespace ifchost
