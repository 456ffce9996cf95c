// SPDX-License-Identifier: Apache-2.0
#include "ExposedSurface.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "PolygonMesh.h"

namespace ifchost {
namespace {

/// Cuts at one plane per surface polygon, on average, before the rest is simplified. Bodies whose
/// facets are small against the offset have every piece overlap thousands of others; this bounds
/// the time to a few tens of microseconds a polygon.
constexpr std::uint64_t kCutsPerPolygon = 3000;

/// Even a small body gets this much, a fraction of a second.
constexpr std::uint64_t kCutsAlways = 3'000'000;

Vec3 Middle(const ConvexPolygon& polygon) {
    Vec3 sum;
    for (const Vec3& p : polygon.corners)
        sum = sum + p;
    return sum * (1.0 / static_cast<double>(polygon.corners.size()));
}

class Exposer {
  public:
    Exposer(const OffsetPieces& pieces, const InsideQuery& body, KeepSide side)
        : pieces_(pieces),
          body_(body),
          side_(side),
          tree_(pieces.Boxes()),
          cutsLeft_(kCutsAlways + kCutsPerPolygon * pieces.Polygons().size()) {}

    ExposedSurface Run() {
        ExposedSurface result;
        for (const SurfacePolygon& polygon : pieces_.Polygons()) {
            if (cutsLeft_ > 0) {
                KeepExposed(polygon);
            } else {
                result.exposure = Exposure::Simplified;
                KeepSimplified(polygon);
            }
        }
        result.mesh = writer_.Take();
        return result;
    }

  private:
    void KeepExposed(const SurfacePolygon& polygon) {
        std::vector<ConvexPolygon> parts{polygon.shape};
        BodyBox box;
        for (const Vec3& p : polygon.shape.corners)
            box.Add(p);
        for (const std::uint32_t piece : LargestFirst(box, polygon.piece)) {
            std::vector<ConvexPolygon> left;
            for (ConvexPolygon& part : parts) {
                const bool wins = polygon.piece < piece;
                if (Misses(part, piece) || !CutAway(part, piece, wins, left)) {
                    left.push_back(std::move(part));
                }
            }
            parts = std::move(left);
            if (parts.empty()) return;
        }
        for (const ConvexPolygon& part : parts) {
            if (IsOnKeptSide(part)) writer_.Add(part.corners);
        }
    }

    /// The pieces but `own` that may cut a polygon with this box. What a large piece takes away
    /// need not be cut at small ones any more.
    std::vector<std::uint32_t> LargestFirst(const BodyBox& box, std::uint32_t own) const {
        std::vector<std::pair<double, std::uint32_t>> found;
        tree_.VisitMeeting(box, [&](std::uint32_t piece) {
            if (piece != own) found.emplace_back(-SharedArea(box, pieces_.Boxes()[piece]), piece);
            return true;
        });
        std::sort(found.begin(), found.end());
        std::vector<std::uint32_t> order;
        for (const auto& [area, piece] : found)
            order.push_back(piece);
        return order;
    }

    /// Half the surface of what two boxes have in common; flat boxes share an area, too.
    static double SharedArea(const BodyBox& a, const BodyBox& b) {
        const double x = std::min(a.max.x, b.max.x) - std::max(a.min.x, b.min.x);
        const double y = std::min(a.max.y, b.max.y) - std::max(a.min.y, b.min.y);
        const double z = std::min(a.max.z, b.max.z) - std::max(a.min.z, b.min.z);
        return x * y + y * z + z * x;
    }

    void KeepSimplified(const SurfacePolygon& polygon) {
        if (side_ == KeepSide::OutsideBody) {
            writer_.Add(polygon.shape.corners);
            return;
        }
        const Vec3 middle = Middle(polygon.shape);
        BodyBox box;
        box.Add(middle);
        bool hidden = false;
        tree_.VisitMeeting(box, [&](std::uint32_t piece) {
            hidden = piece != polygon.piece && Holds(piece, middle);
            return !hidden;
        });
        if (!hidden && IsOnKeptSide(polygon.shape)) writer_.Add(polygon.shape.corners);
    }

    bool Holds(std::uint32_t piece, const Vec3& p) const {
        for (const PiecePlane& plane : pieces_.Planes(piece)) {
            if (plane.side.Distance(p) > -kCutToleranceMm) return false;
        }
        return true;
    }

    bool IsOnKeptSide(const ConvexPolygon& polygon) const {
        const bool inside = body_.Contains(Middle(polygon));
        return inside == (side_ == KeepSide::InsideBody);
    }

    /// True when one plane of the piece has the whole polygon on its far side.
    bool Misses(const ConvexPolygon& polygon, std::uint32_t piece) {
        const std::span<const PiecePlane> planes = pieces_.Planes(piece);
        SpendCuts(planes.size());
        for (const PiecePlane& plane : planes) {
            double lowest = std::numeric_limits<double>::infinity();
            double highest = -lowest;
            for (const Vec3& p : polygon.corners) {
                lowest = std::min(lowest, plane.side.Distance(p));
                highest = std::max(highest, plane.side.Distance(p));
            }
            if (lowest >= -kCutToleranceMm && highest > kCutToleranceMm) return true;
        }
        return false;
    }

    /// Puts the parts of `polygon` outside the piece into `left`; false when nothing is inside.
    /// `wins` decides who keeps a polygon that lies in the same surface as the piece's own.
    bool CutAway(const ConvexPolygon& polygon, std::uint32_t piece, bool wins,
                 std::vector<ConvexPolygon>& left) {
        const std::size_t before = left.size();
        const auto giveUp = [&] {
            left.resize(before);
            return false;
        };
        ConvexPolygon rest = polygon;
        SpendCuts(pieces_.Planes(piece).size());
        for (const PiecePlane& plane : pieces_.Planes(piece)) {
            const bool sameSense = Dot(polygon.normal, plane.side.normal) > 0.0;
            const bool yields = wins && sameSense && plane.role == PiecePlane::Role::Surface;
            if (yields && LiesIn(rest, plane.side)) return giveUp();
            PolygonParts parts = CutPolygon(rest, plane.side);
            if (PolygonWidth(parts.inside) < kMinPolygonWidthMm) return giveUp();
            if (PolygonWidth(parts.outside) >= kMinPolygonWidthMm)
                left.push_back(std::move(parts.outside));
            rest = std::move(parts.inside);
        }
        return true;
    }

    static bool LiesIn(const ConvexPolygon& polygon, const HalfSpace& plane) {
        for (const Vec3& p : polygon.corners) {
            if (std::abs(plane.Distance(p)) > kCutToleranceMm) return false;
        }
        return true;
    }

    void SpendCuts(std::size_t count) { cutsLeft_ -= std::min<std::uint64_t>(cutsLeft_, count); }

    const OffsetPieces& pieces_;
    const InsideQuery& body_;
    KeepSide side_;
    BoxTree tree_;
    std::uint64_t cutsLeft_;
    PolygonMesh writer_;
};

}  // namespace

ExposedSurface FindExposedSurface(const OffsetPieces& pieces, const InsideQuery& body,
                                  KeepSide side) {
    return Exposer(pieces, body, side).Run();
}

}  // namespace ifchost
