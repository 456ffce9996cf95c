// SPDX-License-Identifier: Apache-2.0
#include "OffsetPieces.h"

#include <utility>

namespace ifchost {
namespace {

/// Planes whose normals agree to this cosine make the same boundary of a piece.
constexpr double kSamePlaneCosine = 1.0 - 1e-12;

bool AddPlaneOnce(std::vector<PiecePlane>& planes, const PiecePlane& plane) {
    for (const PiecePlane& known : planes) {
        if (Dot(known.side.normal, plane.side.normal) > kSamePlaneCosine) return false;
    }
    planes.push_back(plane);
    return true;
}

/// Keeps a piece within `distance` of `at`: square to `out`, and sideways, where a nearly flat
/// knife's corner would run far along the edges.
void AddClamp(std::vector<PiecePlane>& planes, const Vec3& out, const Vec3& at, double distance) {
    for (const Vec3& direction : {out, Vec3{1, 0, 0}, Vec3{-1, 0, 0}, Vec3{0, 1, 0}, Vec3{0, -1, 0},
                                  Vec3{0, 0, 1}, Vec3{0, 0, -1}}) {
        const HalfSpace side{direction, Dot(direction, at) + distance};
        AddPlaneOnce(planes, {side, PiecePlane::Role::Surface});
    }
}

/// The part of the plane `planes[which]` that bounds the piece.
ConvexPolygon PieceFace(std::span<const PiecePlane> planes, std::size_t which, const Vec3& center,
                        double radius) {
    ConvexPolygon face = SquareOn(planes[which].side, center, radius);
    for (std::size_t i = 0; i < planes.size() && !face.corners.empty(); ++i) {
        if (i != which) face = CutPolygon(face, planes[i].side).inside;
    }
    if (PolygonWidth(face) < kMinPolygonWidthMm) face.corners.clear();
    return face;
}

/// Unit direction in the plane of the half-edge's face, square to the edge, off the face.
Vec3 AwayFromFace(const SolidSurface& surface, std::uint32_t halfEdge) {
    return Normalized(
        Cross(surface.Direction(halfEdge), surface.PlaneOfTriangle(halfEdge / 3).normal));
}

}  // namespace

double PolygonWidth(const ConvexPolygon& polygon) {
    if (polygon.corners.size() < 3) return 0.0;
    Vec3 twofoldArea;
    double longest = 0.0;
    const Vec3& origin = polygon.corners[0];
    for (std::size_t i = 1; i + 1 < polygon.corners.size(); ++i) {
        const Vec3 side = polygon.corners[i] - origin;
        const Vec3 next = polygon.corners[i + 1] - origin;
        twofoldArea = twofoldArea + Cross(side, next);
        longest = std::max({longest, Length(side), Length(next)});
    }
    return longest > 0.0 ? Length(twofoldArea) / longest : 0.0;
}

ConvexPolygon SquareOn(const HalfSpace& plane, const Vec3& center, double radius) {
    const Vec3& n = plane.normal;
    const Vec3 rough = std::abs(n.x) < 0.6 ? Vec3{1, 0, 0} : Vec3{0, 1, 0};
    const Vec3 u = Normalized(Cross(n, rough)) * radius;
    const Vec3 v = Cross(n, u);
    const Vec3 middle = center - n * plane.Distance(center);
    return {{middle - u - v, middle + u - v, middle + u + v, middle - u + v}, n};
}

bool IsBevelled(const SolidSurface& surface, std::uint32_t halfEdge) {
    // The tip is sqrt(2 / (1 + cosine)) offsets away from the edge.
    const double cosine = Dot(surface.PlaneOfTriangle(halfEdge / 3).normal,
                              surface.PlaneOfTriangle(surface.Opposite(halfEdge) / 3).normal);
    return (1.0 + cosine) * kMitreLimit * kMitreLimit < 2.0;
}

HalfSpace Bevel(const SolidSurface& surface, std::uint32_t halfEdge, double distance) {
    // Of a knife edge the two normals cancel out, but never both directions away from the faces.
    const Vec3 out = Normalized(AwayFromFace(surface, halfEdge) +
                                AwayFromFace(surface, surface.Opposite(halfEdge)));
    const Vec3& on = surface.Mesh().positions[EdgeStart(surface.Mesh(), halfEdge)];
    return {out, Dot(out, on) + distance};
}

PolygonParts CutPolygon(const ConvexPolygon& polygon, const HalfSpace& plane) {
    PolygonParts parts;
    parts.inside.normal = parts.outside.normal = polygon.normal;
    double lowest = 0.0;
    double highest = 0.0;
    for (const Vec3& p : polygon.corners) {
        lowest = std::min(lowest, plane.Distance(p));
        highest = std::max(highest, plane.Distance(p));
    }
    if (highest <= kCutToleranceMm || lowest >= -kCutToleranceMm) {
        (highest <= kCutToleranceMm ? parts.inside : parts.outside).corners = polygon.corners;
        return parts;
    }
    for (std::size_t i = 0; i < polygon.corners.size(); ++i) {
        const Vec3& p = polygon.corners[i];
        const Vec3& q = polygon.corners[(i + 1) % polygon.corners.size()];
        const double dp = plane.Distance(p);
        const double dq = plane.Distance(q);
        if (dp <= kCutToleranceMm) parts.inside.corners.push_back(p);
        if (dp >= -kCutToleranceMm) parts.outside.corners.push_back(p);
        const bool crosses = (dp < -kCutToleranceMm && dq > kCutToleranceMm) ||
                             (dp > kCutToleranceMm && dq < -kCutToleranceMm);
        if (!crosses) continue;
        // From the lower end always, so that both polygons along an edge get the same point.
        const Vec3 on = dp < dq ? p + (q - p) * (dp / (dp - dq)) : q + (p - q) * (dq / (dq - dp));
        parts.inside.corners.push_back(on);
        parts.outside.corners.push_back(on);
    }
    return parts;
}

/// The faces and edges around one vertex, as far as they hang together.
struct OffsetPieces::Corner {
    std::uint32_t vertex = 0;
    std::vector<std::uint32_t> edges;      ///< outgoing half-edges that are not flat
    std::vector<std::uint32_t> flatEdges;  ///< the other outgoing half-edges
    std::vector<std::uint32_t> triangles;  ///< all around
    bool allConvex = true;
};

OffsetPieces::OffsetPieces(const SolidSurface& surface, double distance)
    : surface_(surface), distance_(distance) {
    const auto triangles = static_cast<std::uint32_t>(surface.Mesh().triangles.size());
    plainEnd_.assign(triangles * std::size_t{3}, false);
    for (const HalfEdgeRing& outline : ConvexPatches(surface))
        AddPrism(outline);
    AddCorners();
    for (std::uint32_t h = 0; h < triangles * 3; ++h) {
        const bool once = h < surface.Opposite(h);
        if (once && surface.Kind(h) == EdgeKind::Convex) AddWedge(h);
    }
}

HalfSpace OffsetPieces::Moved(std::uint32_t triangle) const {
    HalfSpace plane = surface_.PlaneOfTriangle(triangle);
    plane.height += distance_;
    return plane;
}

void OffsetPieces::AddPrism(const HalfEdgeRing& outline) {
    const BodyMesh& mesh = surface_.Mesh();
    const std::uint32_t triangle = outline.front() / 3;
    const HalfSpace base = surface_.PlaneOfTriangle(triangle);
    std::vector<PiecePlane> planes;
    planes.push_back({Moved(triangle), PiecePlane::Role::Surface});
    planes.push_back({{-base.normal, -base.height}, PiecePlane::Role::Joint});
    SurfacePolygon top{{{}, base.normal}, static_cast<std::uint32_t>(Count())};
    std::vector<Vec3> points;
    for (const std::uint32_t h : outline) {
        const Vec3& p = mesh.positions[EdgeStart(mesh, h)];
        const Vec3 away = AwayFromFace(surface_, h);
        planes.push_back({{away, Dot(away, p)}, PiecePlane::Role::Joint});
        top.shape.corners.push_back(p - base.normal * planes[0].side.Distance(p));
        points.push_back(p);
    }
    AddPiece({planes.data() + 1, planes.size() - 1}, {}, 0.0, points);
    planes_.push_back(planes[0]);
    ++firstPlane_.back();
    for (const Vec3& p : top.shape.corners)
        boxes_.back().Add(p);
    polygons_.push_back(std::move(top));
}

void OffsetPieces::AddPiece(std::span<const PiecePlane> planes, const Vec3& center, double radius,
                            std::span<const Vec3> basePoints) {
    const auto piece = static_cast<std::uint32_t>(Count());
    BodyBox box;
    for (const Vec3& p : basePoints)
        box.Add(p);
    for (std::size_t i = 0; i < planes.size(); ++i) {
        if (planes[i].role != PiecePlane::Role::Surface) continue;
        ConvexPolygon face = PieceFace(planes, i, center, radius);
        if (face.corners.empty()) continue;
        for (const Vec3& p : face.corners)
            box.Add(p);
        polygons_.push_back({std::move(face), piece});
    }
    planes_.insert(planes_.end(), planes.begin(), planes.end());
    firstPlane_.push_back(planes_.size());
    const Vec3 margin{kCutToleranceMm, kCutToleranceMm, kCutToleranceMm};
    boxes_.push_back({box.min - margin, box.max + margin});
}

void OffsetPieces::AddWedge(std::uint32_t halfEdge) {
    const BodyMesh& mesh = surface_.Mesh();
    const std::uint32_t opposite = surface_.Opposite(halfEdge);
    const Vec3& from = mesh.positions[EdgeStart(mesh, halfEdge)];
    const Vec3& to = mesh.positions[EdgeEnd(mesh, halfEdge)];
    const Vec3 along = surface_.Direction(halfEdge);
    const Vec3 away = AwayFromFace(surface_, halfEdge);
    const Vec3 awayOther = AwayFromFace(surface_, opposite);
    const auto endRole = [this](std::uint32_t h) {
        return plainEnd_[h] ? PiecePlane::Role::Joint : PiecePlane::Role::Surface;
    };
    std::vector<PiecePlane> planes;
    planes.push_back({Moved(halfEdge / 3), PiecePlane::Role::Surface});
    planes.push_back({Moved(opposite / 3), PiecePlane::Role::Surface});
    if (IsBevelled(surface_, halfEdge)) {
        planes.push_back({Bevel(surface_, halfEdge, distance_), PiecePlane::Role::Surface});
    }
    planes.push_back({{-away, -Dot(away, from)}, PiecePlane::Role::Joint});
    planes.push_back({{-awayOther, -Dot(awayOther, from)}, PiecePlane::Role::Joint});
    planes.push_back({{-along, -Dot(along, from)}, endRole(halfEdge)});
    planes.push_back({{along, Dot(along, to)}, endRole(opposite)});
    const Vec3 ends[] = {from, to};
    AddPiece(planes, (from + to) * 0.5, Length(to - from) + 2.0 * kMitreLimit * distance_, ends);
}

OffsetPieces::Corner OffsetPieces::GoAround(std::uint32_t halfEdge, std::vector<bool>& seen) const {
    Corner corner;
    corner.vertex = EdgeStart(surface_.Mesh(), halfEdge);
    for (std::uint32_t h = halfEdge; !seen[h];) {
        seen[h] = true;
        corner.triangles.push_back(h / 3);
        const bool isFlat = surface_.Kind(h) == EdgeKind::Flat;
        (isFlat ? corner.flatEdges : corner.edges).push_back(h);
        if (surface_.Kind(h) == EdgeKind::Concave) corner.allConvex = false;
        h = surface_.Opposite(NextHalfEdge(NextHalfEdge(h)));
    }
    return corner;
}

void OffsetPieces::AddCorners() {
    std::vector<bool> seen(plainEnd_.size(), false);
    for (std::uint32_t h = 0; h < seen.size(); ++h) {
        if (seen[h]) continue;
        Corner corner = GoAround(h, seen);
        if (corner.edges.size() >= 2) AddCap(corner);
    }
}

void OffsetPieces::AddCap(Corner& corner) {
    const Vec3& at = surface_.Mesh().positions[corner.vertex];
    const double radius = 4.0 * kMitreLimit * distance_;
    std::vector<PiecePlane> planes;
    bool bevelled = false;
    double tips = distance_;
    for (const std::uint32_t t : corner.triangles) {
        AddPlaneOnce(planes, {Moved(t), PiecePlane::Role::Surface});
    }
    for (const std::uint32_t h : corner.edges) {
        if (surface_.Kind(h) != EdgeKind::Convex) continue;
        if (IsBevelled(surface_, h)) {
            AddPlaneOnce(planes, {Bevel(surface_, h, distance_), PiecePlane::Role::Surface});
            bevelled = true;
            continue;
        }
        const Vec3 sum = surface_.PlaneOfTriangle(h / 3).normal +
                         surface_.PlaneOfTriangle(surface_.Opposite(h) / 3).normal;
        tips = std::max(tips, 2.0 * distance_ / Length(sum));
    }
    const std::size_t surfaces = planes.size();
    for (const std::uint32_t h : corner.edges) {
        const Vec3 along = surface_.Direction(h);
        planes.push_back({{along, Dot(along, at)}, PiecePlane::Role::Joint});
    }

    // Where a face turns by more than half a circle around the corner, its two edges alone do not
    // tell that the body goes on between them.
    for (const std::uint32_t h : corner.flatEdges) {
        const Vec3& normal = surface_.PlaneOfTriangle(h / 3).normal;
        const Vec3 along = surface_.Direction(h);
        const Vec3 within = Normalized(along - normal * Dot(normal, along));
        planes.push_back({{within, Dot(within, at)}, PiecePlane::Role::Joint});
    }

    Vec3 middle;
    double reach = 0.0;
    for (std::size_t i = 0; i < surfaces; ++i) {
        for (const Vec3& p : PieceFace(planes, i, at, radius).corners) {
            middle = middle + Normalized(p - at);
            reach = std::max(reach, Length(p - at));
        }
    }
    const Vec3 out = Normalized(middle);
    if (reach == 0.0 || out == Vec3{}) return;
    // The edges that lie flattest are on the hull of all; if the body falls in there, this is the
    // tip of a pit and everything found so far lies inside the body.
    const auto flattest = std::max_element(
        corner.edges.begin(), corner.edges.end(), [&](std::uint32_t a, std::uint32_t b) {
            return Dot(surface_.Direction(a), out) < Dot(surface_.Direction(b), out);
        });
    if (surface_.Kind(*flattest) != EdgeKind::Convex) return;
    if (reach > kMitreLimit * distance_) {
        bevelled = true;
        AddClamp(planes, out, at, tips);
    }
    const bool plain = corner.allConvex && !bevelled;
    for (PiecePlane& plane : planes) {
        if (!plain) plane.role = PiecePlane::Role::Surface;
    }
    for (const std::uint32_t h : corner.edges)
        plainEnd_[h] = plain;
    AddPiece(planes, at, radius, std::span<const Vec3>(&at, 1));
}

}  // namespace ifchost
