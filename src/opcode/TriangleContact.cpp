// SPDX-License-Identifier: Apache-2.0
#include "opcode/TriangleContact.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "opcode/Predicates.h"

namespace kycb::opcode {
namespace {

using Signs = std::array<int, 3>;

constexpr std::array<DroppedAxis, 3> kAllAxes = {DroppedAxis::kX, DroppedAxis::kY, DroppedAxis::kZ};

bool Same(const Point& p, const Point& q) {
    return p.x == q.x && p.y == q.y && p.z == q.z;
}

bool LexicographicallyLess(const Point& p, const Point& q) {
    if (p.x != q.x) return p.x < q.x;
    if (p.y != q.y) return p.y < q.y;
    return p.z < q.z;
}

double Difference(float a, float b) {
    return static_cast<double>(a) - static_cast<double>(b);
}

/// The common bounding box of two triangles. Contact points are kept inside it, whatever their
/// rounding: true ones lie there.
class CommonBox {
  public:
    CommonBox(const Triangle& a, const Triangle& b) {
        for (int axis = 0; axis < 3; ++axis) {
            const auto at = [axis](const Point& p) {
                return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
            };
            const auto [aLow, aHigh] = std::minmax({at(a.v[0]), at(a.v[1]), at(a.v[2])});
            const auto [bLow, bHigh] = std::minmax({at(b.v[0]), at(b.v[1]), at(b.v[2])});
            low_[static_cast<std::size_t>(axis)] = std::max(aLow, bLow);
            high_[static_cast<std::size_t>(axis)] = std::min(aHigh, bHigh);
        }
    }

    bool IsEmpty() const { return low_[0] > high_[0] || low_[1] > high_[1] || low_[2] > high_[2]; }

    Point Clamped(double x, double y, double z) const {
        return {Clamped(x, 0), Clamped(y, 1), Clamped(z, 2)};
    }

  private:
    float Clamped(double value, std::size_t axis) const {
        const auto low = static_cast<double>(low_[axis]);
        const auto high = static_cast<double>(high_[axis]);
        return static_cast<float>(std::min(std::max(value, low), high));
    }

    std::array<float, 3> low_;
    std::array<float, 3> high_;
};

/// The point that divides p-q as the weights tell, where `atP` and `atQ` are proportional to the
/// distances of the ends from what cuts the segment. Rounding may leave both 0; then any point of
/// the segment is as good as the other.
Point Divided(const Point& p, const Point& q, double atP, double atQ, const CommonBox& box) {
    const double span = std::fabs(atP) + std::fabs(atQ);
    const double t = span > 0.0 ? std::fabs(atP) / span : 0.5;
    return box.Clamped(static_cast<double>(p.x) + t * Difference(q.x, p.x),
                       static_cast<double>(p.y) + t * Difference(q.y, p.y),
                       static_cast<double>(p.z) + t * Difference(q.z, p.z));
}

/// A vertex that has the plane to itself: the others lie on the other closed side of the plane.
struct LoneVertex {
    std::size_t index;
    int side;
};

/// For signs that are neither all of one strict side nor all zero.
LoneVertex FindLoneVertex(const Signs& s) {
    for (std::size_t i = 0; i < 3; ++i) {
        const int p = s[(i + 1) % 3];
        const int q = s[(i + 2) % 3];
        if (s[i] > 0 && p <= 0 && q <= 0) return {i, 1};
        if (s[i] < 0 && p >= 0 && q >= 0) return {i, -1};
        if (s[i] == 0 && p * q > 0) return {i, -p};
    }
    return {0, 1};
}

bool AllStrictlyOneSide(const Signs& s) {
    return (s[0] > 0 && s[1] > 0 && s[2] > 0) || (s[0] < 0 && s[1] < 0 && s[2] < 0);
}

bool AllZero(const Signs& s) {
    return s[0] == 0 && s[1] == 0 && s[2] == 0;
}

Signs SidesOf(const Triangle& plane, const Triangle& t) {
    Signs s;
    for (std::size_t i = 0; i < 3; ++i)
        s[i] = SignOf(Orientation(plane.v[0], plane.v[1], plane.v[2], t.v[i]));
    return s;
}

Triangle Turned(const Triangle& t, std::size_t first) {
    return {{t.v[first], t.v[(first + 1) % 3], t.v[(first + 2) % 3]}};
}

/// In proportion to the distance of a point from the plane of a triangle.
double Above(const Triangle& plane, const Point& p) {
    return Orientation(plane.v[0], plane.v[1], plane.v[2], p);
}

/// Where the edge from vertex 0 to vertex `end` of `t` passes the plane of `other`.
Point Crossing(const Triangle& t, std::size_t end, const Signs& sides, const Triangle& other,
               const CommonBox& box) {
    if (sides[0] == 0) return t.v[0];
    if (sides[end] == 0) return t.v[end];
    return Divided(t.v[0], t.v[end], Above(other, t.v[0]), Above(other, t.v[end]), box);
}

/// The case in which each triangle has points off the other's plane, so that both meet the common
/// line of the planes in a segment or point, bounded by the two edges at the lone vertex. With both
/// lone vertices turned to the positive side of the other plane, the order of two crossings along
/// that line is the sign of the volume spanned by the two edges.
bool FindCrossing(const Triangle& a0, const Signs& sidesA, const Triangle& b0, const Signs& sidesB,
                  const CommonBox& box, ContactPoints& points) {
    const LoneVertex loneA = FindLoneVertex(sidesA);
    const LoneVertex loneB = FindLoneVertex(sidesB);
    Triangle a = Turned(a0, loneA.index);
    Triangle b = Turned(b0, loneB.index);
    Signs sa = {sidesA[loneA.index], sidesA[(loneA.index + 1) % 3], sidesA[(loneA.index + 2) % 3]};
    Signs sb = {sidesB[loneB.index], sidesB[(loneB.index + 1) % 3], sidesB[(loneB.index + 2) % 3]};
    // Turning one triangle's winding turns the sides of the other.
    if (loneA.side < 0) {
        std::swap(b.v[1], b.v[2]);
        std::swap(sb[1], sb[2]);
    }
    if (loneB.side < 0) {
        std::swap(a.v[1], a.v[2]);
        std::swap(sa[1], sa[2]);
    }
    const auto order = [&](std::size_t i, std::size_t j) {
        return SignOf(Orientation(a.v[0], a.v[i], b.v[0], b.v[j]));
    };
    // Along the common line, a covers [edge 2, edge 1] and b covers [edge 1, edge 2].
    const int atStartOfB = order(1, 1);
    if (atStartOfB > 0) return false;
    const int atEndOfB = order(2, 2);
    if (atEndOfB < 0) return false;
    points.Add(order(2, 1) >= 0 ? Crossing(b, 1, sb, a, box) : Crossing(a, 2, sa, b, box));
    // One interval ends where the other begins: the point is already there.
    if (atStartOfB == 0 || atEndOfB == 0) return true;
    points.Add(order(1, 2) >= 0 ? Crossing(a, 1, sa, b, box) : Crossing(b, 2, sb, a, box));
    return true;
}

bool HasArea(const Triangle& t) {
    return std::any_of(kAllAxes.begin(), kAllAxes.end(), [&](DroppedAxis axis) {
        return Orientation(t.v[0], t.v[1], t.v[2], axis) != 0;
    });
}

/// A triangle reduced to its extreme points: three, or two for a segment, or one.
struct Hull {
    std::array<Point, 3> v;
    std::size_t count;

    std::size_t Edges() const { return count == 3 ? 3 : count - 1; }
};

Hull HullOf(const Triangle& t) {
    if (HasArea(t)) return {t.v, 3};
    const auto [low, high] = std::minmax_element(t.v.begin(), t.v.end(), LexicographicallyLess);
    if (Same(*low, *high)) return {{*low}, 1};
    return {{*low, *high}, 2};
}

/// A projection that maps the common plane (or line) of all points one to one; none when the points
/// span no single plane.
std::optional<DroppedAxis> FindProjection(const Hull& a, const Hull& b) {
    std::array<Point, 6> all;
    const auto middle = std::copy_n(a.v.begin(), a.count, all.begin());
    const auto end = std::copy_n(b.v.begin(), b.count, middle);
    const auto n = static_cast<std::size_t>(end - all.begin());
    if (a.count == 2 && b.count == 2 && Orientation(all[0], all[1], all[2], all[3]) != 0)
        return std::nullopt;
    for (std::size_t i = 0; i < n; ++i)
        for (std::size_t j = i + 1; j < n; ++j)
            for (std::size_t k = j + 1; k < n; ++k)
                for (const DroppedAxis axis : kAllAxes)
                    if (Orientation(all[i], all[j], all[k], axis) != 0) return axis;
    // All on one line: any projection will do that keeps the line a line.
    const auto low = *std::min_element(all.begin(), end, LexicographicallyLess);
    const auto high = *std::max_element(all.begin(), end, LexicographicallyLess);
    return low.x != high.x || low.y != high.y ? DroppedAxis::kZ : DroppedAxis::kX;
}

/// Two convex sets of one plane. Every corner of the common set is a corner of one that the other
/// contains, or a proper crossing of two edges; the signs decide exactly which of these exist.
class PlanarContact {
  public:
    PlanarContact(const Hull& a, const Hull& b, DroppedAxis dropped, const CommonBox& box)
        : a_(a), b_(b), box_(box) {
        const Corners ofA = ProjectAll(a, dropped);
        const Corners ofB = ProjectAll(b, dropped);
        FillSides(ofB, b, ofA, a.count, ofA_);
        FillSides(ofA, a, ofB, b.count, ofB_);
    }

    bool Find(ContactPoints& points) const {
        for (std::size_t i = 0; i < a_.count; ++i)
            if (Contains(b_, ofA_, i, a_.v[i])) points.Add(a_.v[i]);
        for (std::size_t i = 0; i < b_.count; ++i)
            if (Contains(a_, ofB_, i, b_.v[i])) points.Add(b_.v[i]);
        for (std::size_t e = 0; e < a_.Edges(); ++e)
            for (std::size_t f = 0; f < b_.Edges(); ++f)
                AddCrossing(e, f, points);
        return points.count > 0;
    }

  private:
    // Edge of the one set, vertex of the other: in proportion to the distance of the vertex from
    // the edge's line, with the exact sign.
    using SideTable = std::array<std::array<double, 3>, 3>;

    using Corners = std::array<Projected, 3>;

    static Corners ProjectAll(const Hull& hull, DroppedAxis dropped) {
        Corners corners{};
        for (std::size_t i = 0; i < hull.count; ++i)
            corners[i] = Project(hull.v[i], dropped);
        return corners;
    }

    static void FillSides(const Corners& ends, const Hull& hull, const Corners& points,
                          std::size_t count, SideTable& sides) {
        for (std::size_t e = 0; e < hull.Edges(); ++e) {
            const Projected& end = ends[e + 1 == hull.count ? 0 : e + 1];
            for (std::size_t i = 0; i < count; ++i)
                sides[e][i] = Orientation(ends[e], end, points[i]);
        }
    }

    static bool Contains(const Hull& hull, const SideTable& sides, std::size_t i, const Point& p) {
        if (hull.count == 1) return Same(hull.v[0], p);
        if (hull.count == 2)
            return sides[0][i] == 0 && !LexicographicallyLess(p, hull.v[0]) &&
                   !LexicographicallyLess(hull.v[1], p);
        const double least = std::min(std::min(sides[0][i], sides[1][i]), sides[2][i]);
        const double most = std::max(std::max(sides[0][i], sides[1][i]), sides[2][i]);
        return least >= 0 || most <= 0;
    }

    static bool AreOpposite(double s, double t) { return (s < 0 && t > 0) || (s > 0 && t < 0); }

    void AddCrossing(std::size_t e, std::size_t f, ContactPoints& points) const {
        const std::size_t e1 = e + 1 == a_.count ? 0 : e + 1;
        const std::size_t f1 = f + 1 == b_.count ? 0 : f + 1;
        if (!AreOpposite(ofA_[f][e], ofA_[f][e1]) || !AreOpposite(ofB_[e][f], ofB_[e][f1])) return;
        points.Add(Divided(a_.v[e], a_.v[e1], ofA_[f][e], ofA_[f][e1], box_));
    }

    const Hull a_;
    const Hull b_;
    const CommonBox& box_;
    SideTable ofA_{};
    SideTable ofB_{};
};

DroppedAxis LargestComponentOfNormal(const Triangle& t) {
    std::array<double, 3> size;
    for (std::size_t k = 0; k < 3; ++k)
        size[k] = std::fabs(Orientation(t.v[0], t.v[1], t.v[2], kAllAxes[k]));
    return kAllAxes[static_cast<std::size_t>(std::max_element(size.begin(), size.end()) -
                                             size.begin())];
}

/// A segment whose ends lie on different closed sides of the triangle's plane, not both in it.
bool FindPiercing(const Hull& segment, const Triangle& t, const CommonBox& box,
                  ContactPoints& points) {
    const Point& p = segment.v[0];
    const Point& q = segment.v[1];
    const auto [least, most] =
        std::minmax({Orientation(p, q, t.v[0], t.v[1]), Orientation(p, q, t.v[1], t.v[2]),
                     Orientation(p, q, t.v[2], t.v[0])});
    if (least < 0 && most > 0) return false;
    const double sideP = Above(t, p);
    const double sideQ = Above(t, q);
    if (sideP == 0)
        points.Add(p);
    else if (sideQ == 0)
        points.Add(q);
    else
        points.Add(Divided(p, q, sideP, sideQ, box));
    return true;
}

/// At least one triangle has all vertices in the plane of the other, or has no plane of its own.
bool FindFlatContact(const Triangle& a, const Signs& sidesA, const Triangle& b, const Signs& sidesB,
                     const CommonBox& box, ContactPoints& points) {
    const Hull hullA = HullOf(a);
    const Hull hullB = HullOf(b);
    // A triangle with area that a segment or point does not lie in the plane of.
    const bool offA = hullB.count < 3 && !AllZero(sidesB);
    const bool offB = hullA.count < 3 && !AllZero(sidesA);
    if (offA) return hullB.count == 2 && FindPiercing(hullB, a, box, points);
    if (offB) return hullA.count == 2 && FindPiercing(hullA, b, box, points);
    const std::optional<DroppedAxis> dropped = FindProjection(hullA, hullB);
    return dropped.has_value() && PlanarContact(hullA, hullB, *dropped, box).Find(points);
}

}  // namespace

void ContactPoints::Add(const Point& point) {
    const auto end = p.begin() + static_cast<std::ptrdiff_t>(count);
    const auto same = [&](const Point& q) { return Same(q, point); };
    if (count < kCapacity && std::none_of(p.begin(), end, same)) p[count++] = point;
}

bool IsFinite(const Triangle& t) {
    return std::all_of(t.v.begin(), t.v.end(), [](const Point& p) {
        return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
    });
}

bool FindCoplanarContact(const Triangle& a, const Triangle& b, ContactPoints& points) {
    const CommonBox box(a, b);
    // Along the largest component, the normal is the least likely to be 0.
    const DroppedAxis dropped = LargestComponentOfNormal(a);
    if (Orientation(a.v[0], a.v[1], a.v[2], dropped) == 0 ||
        Orientation(b.v[0], b.v[1], b.v[2], dropped) == 0)
        return FindContact(a, b, points);
    return PlanarContact({a.v, 3}, {b.v, 3}, dropped, box).Find(points);
}

bool FindContact(const Triangle& a, const Triangle& b, ContactPoints& points) {
    const CommonBox box(a, b);
    if (box.IsEmpty()) return false;
    const Signs sidesB = SidesOf(a, b);
    if (AllStrictlyOneSide(sidesB)) return false;
    const Signs sidesA = SidesOf(b, a);
    if (AllStrictlyOneSide(sidesA)) return false;
    if (AllZero(sidesA) || AllZero(sidesB))
        return FindFlatContact(a, sidesA, b, sidesB, box, points);
    return FindCrossing(a, sidesA, b, sidesB, box, points);
}

}  // namespace kycb::opcode
