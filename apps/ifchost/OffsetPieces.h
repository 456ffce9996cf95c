// SPDX-License-Identifier: Apache-2.0
// The layer that a body gains when its faces move out, as overlapping convex pieces.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "BoxTree.h"
#include "ConvexPatches.h"
#include "SolidSurface.h"

namespace ifchost {

/// A corner or edge whose mitre would stand out farther than this many offsets is cut off square
/// at one offset (4 keeps wedges of 30 degrees and every right-angled corner sharp).
inline constexpr double kMitreLimit = 4.0;

/// Distances up to this are rounding when pieces are cut at one another's planes.
inline constexpr double kCutToleranceMm = 1e-5;

/// A boundary plane of a convex piece.
struct PiecePlane {
    enum class Role : std::uint8_t {
        Surface,  ///< may be part of the grown body's surface
        Joint     ///< borders on the body or on the neighbouring piece
    };
    HalfSpace side;
    Role role = Role::Joint;
};

/// A convex flat polygon, counter-clockwise seen against its normal.
struct ConvexPolygon {
    std::vector<Vec3> corners;
    Vec3 normal;
};

/// A polygon that may show on the grown body, and the piece that it belongs to.
struct SurfacePolygon {
    ConvexPolygon shape;
    std::uint32_t piece = 0;
};

/// Polygons narrower than this are rounding of the cuts; the cracks they leave let nothing through.
inline constexpr double kMinPolygonWidthMm = 2e-5;

/// Twice the area over the longest distance from the first corner; 0 for less than three corners.
double PolygonWidth(const ConvexPolygon& polygon);

/// Cuts `polygon` at the plane; parts thinner than the cut tolerance go with the larger part.
/// An absent part comes back without corners.
struct PolygonParts {
    ConvexPolygon inside;
    ConvexPolygon outside;
};
PolygonParts CutPolygon(const ConvexPolygon& polygon, const HalfSpace& plane);

/// A square on the plane around its point nearest to `center`, `radius` from middle to side.
ConvexPolygon SquareOn(const HalfSpace& plane, const Vec3& center, double radius);

/// Whether the mitre between the faces at a convex edge would be longer than kMitreLimit.
bool IsBevelled(const SolidSurface& surface, std::uint32_t halfEdge);

/// The plane that cuts the mitre of an edge off, square to its middle direction.
HalfSpace Bevel(const SolidSurface& surface, std::uint32_t halfEdge, double distance);

/// For each convex part of a face the prism over it, for each convex edge the wedge between the two
/// prisms, and for each corner the cap between the wedges: all points whose nearest point of the
/// body is there and which no moved plane of the faces at that place cuts off. Their union with the
/// body is the body grown with mitred edges. For bodies with axis-parallel faces it is exactly the
/// set of points at Chebyshev distance up to the offset; for convex ones it is the intersection of
/// the moved half-spaces; it always holds every point at Euclidean distance up to the offset.
class OffsetPieces {
  public:
    /// `distance` is above 0. The surface faces away from the side that grows.
    OffsetPieces(const SolidSurface& surface, double distance);

    std::size_t Count() const { return boxes_.size(); }
    std::span<const PiecePlane> Planes(std::uint32_t piece) const {
        return {planes_.data() + firstPlane_[piece], planes_.data() + firstPlane_[piece + 1]};
    }
    /// Boxes of all pieces, a little larger than these.
    std::span<const BodyBox> Boxes() const { return boxes_; }
    std::span<const SurfacePolygon> Polygons() const { return polygons_; }

  private:
    struct Corner;

    void AddPrism(const HalfEdgeRing& outline);
    void AddWedge(std::uint32_t halfEdge);
    void AddCorners();
    Corner GoAround(std::uint32_t halfEdge, std::vector<bool>& seen) const;
    void AddCap(Corner& corner);
    void AddPiece(std::span<const PiecePlane> planes, const Vec3& center, double radius,
                  std::span<const Vec3> basePoints);
    HalfSpace Moved(std::uint32_t triangle) const;

    const SolidSurface& surface_;
    double distance_;
    std::vector<bool> plainEnd_;  ///< per half-edge: its start has a cap that fits the wedge
    std::vector<PiecePlane> planes_;
    std::vector<std::size_t> firstPlane_{0};
    std::vector<BodyBox> boxes_;
    std::vector<SurfacePolygon> polygons_;
};

}  // namespace ifchost
