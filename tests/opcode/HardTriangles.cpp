// SPDX-License-Identifier: Apache-2.0
#include "opcode/HardTriangles.h"

#include <cmath>
#include <limits>

namespace kycb::opcode::test {
namespace {

float Float(double value) {
    return static_cast<float>(value);
}

Point GridPoint(Random& random, int cells) {
    return {Float(random.Below(cells)), Float(random.Below(cells)), Float(random.Below(cells))};
}

template <class MakePoint>
Triangle MakeTriangle(const MakePoint& makePoint) {
    return {{makePoint(), makePoint(), makePoint()}};
}

template <class Change>
TrianglePair Changed(TrianglePair pair, const Change& change) {
    for (Triangle* t : {&pair.a, &pair.b})
        for (Point& p : t->v)
            p = change(p);
    return pair;
}

TrianglePair Grid(Random& random, int cells) {
    const auto point = [&] { return GridPoint(random, cells); };
    return {MakeTriangle(point), MakeTriangle(point)};
}

TrianglePair CoarseGrid(Random& random) {
    return Grid(random, 3);
}
TrianglePair FineGrid(Random& random) {
    return Grid(random, 7);
}

// Grid points off the origin by a step that a float can hardly hold beside them.
TrianglePair FarGrid(Random& random) {
    return Changed(Grid(random, 4), [](const Point& p) {
        return Point(16777216.0F + 2 * p.x, -8388608.0F + p.y, 1.0e6F + p.z / 16);
    });
}

// All six points in one plane that no axis is normal to, exactly.
TrianglePair ObliquePlane(Random& random) {
    const auto point = [&] {
        const double u = random.Below(5);
        const double v = random.Below(5);
        return Point(Float(3 * u + v), Float(u - 2 * v), Float(7 * v - u));
    };
    return {MakeTriangle(point), MakeTriangle(point)};
}

// The same, with one coordinate moved by one unit in the last place.
TrianglePair AlmostObliquePlane(Random& random) {
    TrianglePair pair = ObliquePlane(random);
    Point& p = pair.b.v[static_cast<std::size_t>(random.Below(3))];
    p.z = std::nextafterf(p.z, random.Below(2) == 0 ? -1e9F : 1e9F);
    return pair;
}

// Points computed in a plane of irrational slope: six roundings to the left or right of it.
TrianglePair RoundedPlane(Random& random) {
    const double cosine = std::cos(0.7);
    const double sine = std::sin(0.7);
    const auto point = [&] {
        const double u = random.Below(6);
        const double v = random.Below(6);
        return Point(Float(100 + u * cosine), Float(100 + u * sine), Float(v));
    };
    return {MakeTriangle(point), MakeTriangle(point)};
}

TrianglePair SharedEdge(Random& random) {
    const auto point = [&] {
        return Point(Float(random.In(-9, 9)), Float(random.In(-9, 9)), Float(random.In(-9, 9)));
    };
    TrianglePair pair = {MakeTriangle(point), MakeTriangle(point)};
    const int shared = random.Below(3);
    for (int i = 0; i < shared; ++i)
        pair.b.v[static_cast<std::size_t>(i)] = pair.a.v[static_cast<std::size_t>(i)];
    return pair;
}

// A vertex of b put on a, or beside it, as closely as rounding puts it.
TrianglePair VertexOnFace(Random& random) {
    TrianglePair pair = SharedEdge(random);
    const auto& v = pair.a.v;
    double s = random.Unit();
    double r = random.Unit();
    if (s + r > 1) s = 1 - s, r = 1 - r;
    if (random.Below(3) == 0) r = 0;
    const auto mix = [&](float p, float q, float w) {
        return Float(p * (1 - s - r) + q * s + w * r);
    };
    pair.b.v[2] = {mix(v[0].x, v[1].x, v[2].x), mix(v[0].y, v[1].y, v[2].y),
                   mix(v[0].z, v[1].z, v[2].z)};
    for (int i = 0; i < 2; ++i) {
        Point& p = pair.b.v[static_cast<std::size_t>(i)];
        p = {Float(pair.b.v[2].x + random.Unit()), Float(pair.b.v[2].y + random.Unit()),
             Float(pair.b.v[2].z + random.Unit())};
    }
    return pair;
}

// Triangles of no area: three points of a short line of grid points, often equal.
TrianglePair NoArea(Random& random) {
    TrianglePair pair = Grid(random, 3);
    const auto flatten = [&](Triangle& t) {
        const Point d(Float(random.Below(3) - 1), Float(random.Below(3) - 1),
                      Float(random.Below(3) - 1));
        const Point o = GridPoint(random, 3);
        for (Point& p : t.v) {
            const auto k = Float(random.Below(3));
            p = {o.x + k * d.x, o.y + k * d.y, o.z + k * d.z};
        }
    };
    flatten(pair.a);
    if (random.Below(2) == 0) flatten(pair.b);
    if (random.Below(2) == 0) std::swap(pair.a, pair.b);
    return pair;
}

// Long and thin, all near one line.
TrianglePair Slivers(Random& random) {
    const auto point = [&] {
        const double t = random.Below(9) - 4;
        const auto jitter = [&] { return (random.Below(5) - 2) * 0x1p-20; };
        return Point(Float(1000 * t), Float(700 * t + jitter()), Float(jitter()));
    };
    return {MakeTriangle(point), MakeTriangle(point)};
}

// The grid at the far end of the range of floats; differences overflow single precision.
TrianglePair NearLargest(Random& random) {
    const float unit = std::numeric_limits<float>::max() / 3;
    return Changed(Grid(random, 7), [&](const Point& p) {
        return Point((p.x - 3) * unit, (p.y - 3) * unit, (p.z - 3) * unit);
    });
}

// The grid in the smallest subnormal steps.
TrianglePair Subnormal(Random& random) {
    const float unit = std::numeric_limits<float>::denorm_min();
    return Changed(Grid(random, 5),
                   [&](const Point& p) { return Point(p.x * unit, p.y * unit, p.z * unit); });
}

// A huge triangle against one of any size, down to subnormal.
TrianglePair HugeAgainstTiny(Random& random) {
    TrianglePair pair = Grid(random, 3);
    const auto scale = [&](Triangle& t, int exponent) {
        for (Point& p : t.v)
            p = {std::ldexp(p.x - 1, exponent), std::ldexp(p.y - 1, exponent),
                 std::ldexp(p.z - 1, exponent)};
    };
    scale(pair.a, random.Below(126));
    scale(pair.b, -random.Below(148));
    return pair;
}

// Crossing edges whose closest points are within rounding of each other.
TrianglePair GrazingEdges(Random& random) {
    TrianglePair pair = SharedEdge(random);
    const auto& v = pair.a.v;
    const double t = random.Unit();
    const auto mix = [&](float p, float q) { return p * (1 - t) + q * t; };
    const double c[3] = {mix(v[0].x, v[1].x), mix(v[0].y, v[1].y), mix(v[0].z, v[1].z)};
    const double d[3] = {random.In(-1, 1), random.In(-1, 1), random.In(-1, 1)};
    pair.b.v[0] = {Float(c[0] + d[0]), Float(c[1] + d[1]), Float(c[2] + d[2])};
    pair.b.v[1] = {Float(c[0] - d[0]), Float(c[1] - d[1]), Float(c[2] - d[2])};
    return pair;
}

TrianglePair Anywhere(Random& random) {
    const auto point = [&] {
        return Point(Float(random.In(-1, 1)), Float(random.In(-1, 1)), Float(random.In(-1, 1)));
    };
    return {MakeTriangle(point), MakeTriangle(point)};
}

}  // namespace

const std::vector<HardFamily>& HardFamilies() {
    static const std::vector<HardFamily> families = {
        {"CoarseGrid", CoarseGrid},
        {"FineGrid", FineGrid},
        {"FarGrid", FarGrid},
        {"ObliquePlane", ObliquePlane},
        {"AlmostObliquePlane", AlmostObliquePlane},
        {"RoundedPlane", RoundedPlane},
        {"SharedEdge", SharedEdge},
        {"VertexOnFace", VertexOnFace},
        {"NoArea", NoArea},
        {"Slivers", Slivers},
        {"NearLargest", NearLargest},
        {"Subnormal", Subnormal},
        {"HugeAgainstTiny", HugeAgainstTiny},
        {"GrazingEdges", GrazingEdges},
        {"Anywhere", Anywhere},
    };
    return families;
}

}  // namespace kycb::opcode::test
