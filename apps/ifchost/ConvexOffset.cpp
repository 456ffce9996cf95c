// SPDX-License-Identifier: Apache-2.0
#include "ConvexOffset.h"

#include "OffsetPieces.h"
#include "PolygonMesh.h"

namespace ifchost {
namespace {

/// Above this, cutting each face at each other one takes longer than laying layers.
constexpr std::size_t kMaxFaces = 1500;

/// Half-spaces whose directions agree to this cosine and whose heights to the cut tolerance are
/// one.
constexpr double kSameDirection = 1.0 - 1e-12;

void AddOnce(std::vector<HalfSpace>& sides, const HalfSpace& side) {
    for (HalfSpace& known : sides) {
        if (Dot(known.normal, side.normal) <= kSameDirection) continue;
        known.height = std::min(known.height, side.height);
        return;
    }
    sides.push_back(side);
}

std::vector<HalfSpace> GrownSides(const SolidSurface& surface, double distance) {
    std::vector<HalfSpace> sides;
    for (std::uint32_t face = 0; face < surface.FaceCount(); ++face) {
        const HalfSpace& plane = surface.Plane(face);
        AddOnce(sides, {plane.normal, plane.height + distance});
    }
    const auto halfEdges = static_cast<std::uint32_t>(surface.Mesh().triangles.size() * 3);
    for (std::uint32_t h = 0; h < halfEdges; ++h) {
        const bool convex = h < surface.Opposite(h) && surface.Kind(h) == EdgeKind::Convex;
        if (convex && IsBevelled(surface, h)) AddOnce(sides, Bevel(surface, h, distance));
    }
    // Corners sharper than their edges: a box at the mitre limit around the body.
    const BodyBox box = BoundingBox(surface.Mesh());
    const double limit = kMitreLimit * distance;
    const Vec3 reach{limit, limit, limit};
    const Vec3 high = box.max + reach;
    const Vec3 low = box.min - reach;
    AddOnce(sides, {{1, 0, 0}, high.x});
    AddOnce(sides, {{0, 1, 0}, high.y});
    AddOnce(sides, {{0, 0, 1}, high.z});
    AddOnce(sides, {{-1, 0, 0}, -low.x});
    AddOnce(sides, {{0, -1, 0}, -low.y});
    AddOnce(sides, {{0, 0, -1}, -low.z});
    return sides;
}

}  // namespace

std::optional<BodyMesh> GrowConvex(const SolidSurface& surface, double distance) {
    if (surface.FaceCount() > kMaxFaces || !surface.IsConvex()) return std::nullopt;
    const std::vector<HalfSpace> sides = GrownSides(surface, distance);
    const BodyBox box = BoundingBox(surface.Mesh());
    const double radius = Length(box.Size()) + 2.0 * kMitreLimit * distance;
    PolygonMesh mesh;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        ConvexPolygon face = SquareOn(sides[i], box.Center(), radius);
        for (std::size_t j = 0; j < sides.size() && !face.corners.empty(); ++j) {
            if (j != i) face = CutPolygon(face, sides[j]).inside;
        }
        if (PolygonWidth(face) >= kMinPolygonWidthMm) mesh.Add(face.corners);
    }
    return mesh.Take();
}

}  // namespace ifchost
