// SPDX-License-Identifier: Apache-2.0
#include "BodyOffset.h"

#include <utility>

#include "ConvexOffset.h"
#include "ExposedSurface.h"
#include "InsideQuery.h"
#include "MovedSurface.h"
#include "OffsetPieces.h"
#include "SolidSurface.h"

namespace ifchost {
namespace {

/// The surface of the solid after the offset, put together from the layers over its faces.
ExposedSurface Rebuild(const BodyMesh& solid, double offset) {
    const InsideQuery body(solid);
    if (offset > 0.0) {
        const SolidSurface surface(solid);
        if (std::optional<BodyMesh> grown = GrowConvex(surface, offset)) {
            return {std::move(*grown), Exposure::Exact};
        }
        return FindExposedSurface(OffsetPieces(surface, offset), body, KeepSide::OutsideBody);
    }
    // Shrinking is growing of the empty space.
    BodyMesh space = solid;
    TurnOver(space);
    const SolidSurface surface(space);
    ExposedSurface shrunk =
        FindExposedSurface(OffsetPieces(surface, -offset), body, KeepSide::InsideBody);
    TurnOver(shrunk.mesh);
    return shrunk;
}

void OffsetSolid(const BodyMesh& solid, double offset, OffsetResult& result) {
    if (const std::optional<BodyMesh> moved = MoveSurface(solid, offset)) {
        Append(result.mesh, *moved);
        ++result.movedSolids;
        return;
    }
    const ExposedSurface rebuilt = Rebuild(solid, offset);
    if (rebuilt.exposure == Exposure::Simplified) ++result.simplifiedSolids;
    ++(rebuilt.mesh.IsEmpty() ? result.vanishedSolids : result.rebuiltSolids);
    Append(result.mesh, rebuilt.mesh);
}

void Shift(BodyMesh& mesh, const Vec3& by) {
    for (Vec3& p : mesh.positions)
        p = p + by;
}

}  // namespace

OffsetResult OffsetBody(const BodyMesh& input, double offsetMm) {
    RepairedBody body = RepairBody(input);
    OffsetResult result;
    result.repair = body.report;
    for (BodyMesh& solid : body.solids) {
        if (offsetMm == 0.0) {
            Append(result.mesh, solid);
            ++result.movedSolids;
            continue;
        }
        // Around the origin products of coordinates keep all their digits.
        const Vec3 center = BoundingBox(solid).Center();
        Shift(solid, -center);
        OffsetResult part;
        OffsetSolid(solid, offsetMm, part);
        Shift(part.mesh, center);
        Append(result.mesh, part.mesh);
        result.movedSolids += part.movedSolids;
        result.rebuiltSolids += part.rebuiltSolids;
        result.vanishedSolids += part.vanishedSolids;
        result.simplifiedSolids += part.simplifiedSolids;
    }
    Append(result.mesh, body.open);
    if (!body.open.IsEmpty()) {
        result.outcome = OffsetOutcome::OpenKept;
    } else if (!result.mesh.IsEmpty()) {
        result.outcome = OffsetOutcome::Offset;
    } else if (result.vanishedSolids > 0) {
        result.outcome = OffsetOutcome::Vanished;
    }
    return result;
}

}  // namespace ifchost
