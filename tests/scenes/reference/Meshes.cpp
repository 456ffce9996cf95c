// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Meshes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include <boost/multiprecision/cpp_int.hpp>

namespace kycb::scenes::reference {

namespace {

// Wide enough for the products below with coordinates of 2^24 grid steps, which is 260 m; beyond
// that it throws instead of wrapping round.
using Integer = boost::multiprecision::checked_int512_t;
using Vector = std::array<Integer, 3>;

// A number as a fraction with a positive denominator.
struct Fraction {
    Integer top = 0;
    Integer bottom = 1;
};

bool operator<(const Fraction& a, const Fraction& b) {
    return a.top * b.bottom < b.top * a.bottom;
}

double ToMillimetres(const Fraction& f) {
    // One rounding to the nearest single precision number is what is wanted of the collider, so
    // this step must be finer: the long double division is.
    const auto quotient = f.top.convert_to<long double>() / f.bottom.convert_to<long double>();
    return static_cast<double>(static_cast<float>(quotient / kGridPerMillimetre));
}

Vector operator-(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

Vector Cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Integer Dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool IsZero(const Vector& v) {
    return v[0] == 0 && v[1] == 0 && v[2] == 0;
}

using Triangle = std::array<Vector, 3>;

// The points on one side of a plane, those of the plane included: normal . x >= offset.
struct HalfSpace {
    Vector normal;
    Integer offset;

    Integer Above(const Vector& point) const { return Dot(normal, point) - offset; }
};

void AddSide(std::vector<HalfSpace>& body, const Vector& normal, const Vector& onPlane) {
    body.push_back({normal, Dot(normal, onPlane)});
}

void AddPlane(std::vector<HalfSpace>& body, const Vector& normal, const Vector& onPlane) {
    AddSide(body, normal, onPlane);
    AddSide(body, Vector{} - normal, onPlane);
}

// A segment: perpendicular to its direction it goes nowhere, along it no further than its ends.
std::vector<HalfSpace> HalfSpacesOfSegment(const Vector& from, const Vector& to) {
    std::vector<HalfSpace> body;
    const Vector along = to - from;
    for (const Vector& axis : {Vector{1, 0, 0}, Vector{0, 1, 0}, Vector{0, 0, 1}}) {
        // A point has no direction; it stays in place on all three axes.
        AddPlane(body, IsZero(along) ? axis : Cross(along, axis), from);
    }
    AddSide(body, along, from);
    AddSide(body, Vector{} - along, to);
    return body;
}

// The longest side of a triangle of no area is all of it.
std::vector<HalfSpace> HalfSpacesOfFlat(const Triangle& t) {
    std::size_t longest = 0;
    const auto lengthSquared = [&](std::size_t i) {
        const Vector side = t[(i + 1) % 3] - t[i];
        return Dot(side, side);
    };
    for (std::size_t i = 1; i < 3; ++i) {
        if (lengthSquared(i) > lengthSquared(longest)) longest = i;
    }
    return HalfSpacesOfSegment(t[longest], t[(longest + 1) % 3]);
}

// A closed triangle as the intersection of half spaces: its plane, and the inner side of each edge.
std::vector<HalfSpace> HalfSpacesOf(const Triangle& t) {
    const Vector normal = Cross(t[1] - t[0], t[2] - t[0]);
    if (IsZero(normal)) return HalfSpacesOfFlat(t);
    std::vector<HalfSpace> body;
    AddPlane(body, normal, t[0]);
    for (std::size_t i = 0; i < 3; ++i) {
        AddSide(body, Cross(normal, t[(i + 1) % 3] - t[i]), t[i]);
    }
    return body;
}

// The part of a segment inside a body, as parameters from 0 to 1; none when it misses.
struct Stretch {
    Fraction from{0, 1};
    Fraction to{1, 1};
};

std::optional<Stretch> Clip(const Vector& start, const Vector& end,
                            const std::vector<HalfSpace>& body) {
    Stretch inside;
    for (const HalfSpace& side : body) {
        const Integer atStart = side.Above(start);
        const Integer atEnd = side.Above(end);
        if (atStart < 0 && atEnd < 0) return std::nullopt;
        if (atStart < 0) {
            const Fraction entry{-atStart, atEnd - atStart};
            if (inside.from < entry) inside.from = entry;
        } else if (atEnd < 0) {
            const Fraction exit{atStart, atStart - atEnd};
            if (exit < inside.to) inside.to = exit;
        }
        if (inside.to < inside.from) return std::nullopt;
    }
    return inside;
}

// The smallest box around the points added, in grid steps.
struct Region {
    bool isEmpty = true;
    std::array<Fraction, 3> low;
    std::array<Fraction, 3> high;

    void Add(const Vector& start, const Vector& end, const Fraction& t) {
        for (std::size_t i = 0; i < 3; ++i) {
            const Fraction value{start[i] * t.bottom + (end[i] - start[i]) * t.top, t.bottom};
            if (isEmpty || value < low[i]) low[i] = value;
            if (isEmpty || high[i] < value) high[i] = value;
        }
        isEmpty = false;
    }
};

// Adds the parts of the edges of `edges` that lie in `other`.
bool AddEdgesInside(const Triangle& edges, const Triangle& other, Region& region) {
    const std::vector<HalfSpace> body = HalfSpacesOf(other);
    bool isAny = false;
    for (std::size_t i = 0; i < 3; ++i) {
        const Vector& start = edges[i];
        const Vector& end = edges[(i + 1) % 3];
        const auto inside = Clip(start, end, body);
        if (!inside) continue;
        isAny = true;
        region.Add(start, end, inside->from);
        region.Add(start, end, inside->to);
    }
    return isAny;
}

// What two closed triangles share is convex, and no corner of it lies inside both triangles: each
// lies on an edge of the one or of the other. So the edges' shares say all.
bool AddCommonPoints(const Triangle& a, const Triangle& b, Region& region) {
    const bool ofA = AddEdgesInside(a, b, region);
    const bool ofB = AddEdgesInside(b, a, region);
    return ofA || ofB;
}

struct IndexedShape {
    std::size_t index = 0;
    Triangle triangle;
    Vector low;
    Vector high;
};

bool AreApart(const IndexedShape& a, const IndexedShape& b) {
    for (std::size_t i = 0; i < 3; ++i) {
        if (a.high[i] < b.low[i] || b.high[i] < a.low[i]) return true;
    }
    return false;
}

bool IsFinite(const IceMaths::Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

Integer ToGrid(float value) {
    const double steps = static_cast<double>(value) * kGridPerMillimetre;
    if (steps != std::round(steps)) throw std::runtime_error("a vertex stands off the grid");
    return Integer(steps);
}

Vector ToGrid(const IceMaths::Point& p) {
    return {ToGrid(p.x), ToGrid(p.y), ToGrid(p.z)};
}

IndexedShape MakeShape(std::size_t index, const Triangle& t) {
    IndexedShape shape{index, t, t[0], t[0]};
    for (const Vector& v : t) {
        for (std::size_t i = 0; i < 3; ++i) {
            shape.low[i] = std::min(shape.low[i], v[i]);
            shape.high[i] = std::max(shape.high[i], v[i]);
        }
    }
    return shape;
}

// The triangles of a mesh that can touch anything: those without a vertex that is no number.
std::vector<IndexedShape> ShapesOf(const test::TestMesh& mesh) {
    std::vector<IndexedShape> shapes;
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        const auto& refs = mesh.triangles[i].mVRef;
        const auto& v = mesh.vertices;
        if (!IsFinite(v[refs[0]]) || !IsFinite(v[refs[1]]) || !IsFinite(v[refs[2]])) continue;
        shapes.push_back(
            MakeShape(i, {ToGrid(v[refs[0]]), ToGrid(v[refs[1]]), ToGrid(v[refs[2]])}));
    }
    return shapes;
}

}  // namespace

bool IsUsable(const test::TestMesh& mesh) {
    for (const IceMaths::IndexedTriangle& triangle : mesh.triangles) {
        for (const auto ref : triangle.mVRef) {
            if (ref >= mesh.vertices.size()) return false;
        }
    }
    return !mesh.triangles.empty();
}

std::optional<Contact> ContactOf(const test::TestMesh& a, const test::TestMesh& b) {
    const std::vector<IndexedShape> shapesA = ShapesOf(a);
    const std::vector<IndexedShape> shapesB = ShapesOf(b);
    Contact contact;
    Region region;
    for (const IndexedShape& shapeA : shapesA) {
        for (const IndexedShape& shapeB : shapesB) {
            if (AreApart(shapeA, shapeB)) continue;
            if (!AddCommonPoints(shapeA.triangle, shapeB.triangle, region)) continue;
            contact.pairs.emplace_back(shapeA.index, shapeB.index);
        }
    }
    if (contact.pairs.empty()) return std::nullopt;
    contact.low = {ToMillimetres(region.low[0]), ToMillimetres(region.low[1]),
                   ToMillimetres(region.low[2])};
    contact.high = {ToMillimetres(region.high[0]), ToMillimetres(region.high[1]),
                    ToMillimetres(region.high[2])};
    return contact;
}

}  // namespace kycb::scenes::reference
