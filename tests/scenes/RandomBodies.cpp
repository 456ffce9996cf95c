// SPDX-License-Identifier: Apache-2.0
#include "scenes/RandomBodies.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <utility>
#include <vector>

#include "scenes/reference/Meshes.h"

namespace kycb::scenes {

using test::Body;
using test::Random;
using test::TestMesh;

namespace {

using Matrix = std::array<std::array<double, 3>, 3>;

constexpr double kRaster = 250.0;  // mm

const Matrix kNotTurned = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
const Matrix kAlongX = {{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}};
const Matrix kAlongY = {{{1, 0, 0}, {0, 0, 1}, {0, 1, 0}}};

// Rational cosines, so that turned corners often fall on the raster again.
const Matrix kThreeFourFive = {{{0.6, -0.8, 0}, {0.8, 0.6, 0}, {0, 0, 1}}};
const Matrix kTilted = {{{1, 0, 0}, {0, 0.8, -0.6}, {0, 0.6, 0.8}}};

Matrix Product(const Matrix& a, const Matrix& b) {
    Matrix product{};
    for (std::size_t r = 0; r < 3; ++r) {
        for (std::size_t c = 0; c < 3; ++c) {
            product[r][c] = a[r][0] * b[0][c] + a[r][1] * b[1][c] + a[r][2] * b[2][c];
        }
    }
    return product;
}

Matrix AnyTurn(Random& random) {
    const double angle = random.In(0.0, 2.0 * std::numbers::pi);
    const Matrix turn = {
        {{std::cos(angle), -std::sin(angle), 0}, {std::sin(angle), std::cos(angle), 0}, {0, 0, 1}}};
    return random.OneIn(2) ? turn : Product(turn, kTilted);
}

// Zero comes without a sign, which no arithmetic on the grid could tell.
float OnGrid(double value) {
    const double steps = std::round(value * reference::kGridPerMillimetre);
    return static_cast<float>(steps / reference::kGridPerMillimetre + 0.0);
}

// A body that was made around its own origin, turned and brought to its place.
Body Placed(Body local, const Matrix& turn, const Origin& at) {
    return [=](int bodyOffset) {
        std::optional<TestMesh> mesh = local(bodyOffset);
        if (!mesh) return mesh;
        for (IceMaths::Point& p : mesh->vertices) {
            const std::array<double, 3> v = {p.x, p.y, p.z};
            const auto row = [&](std::size_t r) {
                return OnGrid(turn[r][0] * v[0] + turn[r][1] * v[1] + turn[r][2] * v[2] + at[r]);
            };
            p = {row(0), row(1), row(2)};
        }
        return mesh;
    };
}

double RasterSize(Random& random) {
    return kRaster * (1 + random.Below(6));
}

// Thin ones are thinner than what neighbours must overlap by.
double Height(Random& random) {
    static const std::vector<double> heights = {0.5,   1.0,    1.5,    2.0,    250.0,
                                                250.0, 1000.0, 1000.0, 1001.0, 3000.0};
    return random.Pick(heights);
}

Body RandomBox(Random& random) {
    return test::BoxBody({0, 0, 0, RasterSize(random), RasterSize(random), Height(random)});
}

std::vector<std::pair<double, double>> Polygon(int corners, double radius) {
    std::vector<std::pair<double, double>> polygon;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / corners;
        polygon.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
    }
    return polygon;
}

Body RandomPrism(Random& random) {
    return test::PrismBody(Polygon(3 + random.Below(5), RasterSize(random) / 2.0), 0.0,
                           Height(random));
}

Body RandomPipe(Random& random) {
    return test::PrismBody(Polygon(6, 25.0 * (1 + random.Below(6))), 0.0, 2.0 * RasterSize(random));
}

Matrix RandomTurn(Random& random) {
    switch (random.Below(8)) {
        case 0:
            return kThreeFourFive;
        case 1:
            return AnyTurn(random);
        default:
            return kNotTurned;
    }
}

IceMaths::Point LoosePoint(Random& random) {
    const auto coordinate = [&] { return static_cast<float>(kRaster * random.Below(5)); };
    IceMaths::Point point(coordinate(), coordinate(), coordinate());
    if (random.OneIn(40)) point.x = std::numeric_limits<float>::quiet_NaN();
    if (random.OneIn(40)) point.y = std::numeric_limits<float>::infinity();
    return point;
}

// Triangles between any of a few points: of no area, doubled and crossing ones come by themselves.
TestMesh LooseMesh(Random& random) {
    TestMesh mesh;
    const int points = 3 + random.Below(6);
    for (int i = 0; i < points; ++i) {
        mesh.vertices.push_back(LoosePoint(random));
    }
    const auto ref = [&] { return static_cast<std::uint32_t>(random.Below(points)); };
    for (int i = 1 + random.Below(8); i > 0; --i) {
        mesh.triangles.emplace_back(ref(), ref(), ref());
    }
    return mesh;
}

// A mesh that is there, but of no use.
TestMesh UselessMesh(Random& random) {
    TestMesh mesh = LooseMesh(random);
    if (random.OneIn(2)) {
        mesh.triangles.clear();
    } else {
        mesh.triangles.back().mVRef[1] = static_cast<std::uint32_t>(mesh.vertices.size());
    }
    return mesh;
}

Body NoBody() {
    return [](int) { return std::optional<TestMesh>(); };
}

}  // namespace

Body RandomBody(Random& random, const Origin& origin) {
    const int choice = random.Below(20);
    if (choice == 0) return NoBody();
    if (choice == 1) return Placed(test::FixedBody(UselessMesh(random)), kNotTurned, origin);
    if (choice <= 3) return Placed(test::FixedBody(LooseMesh(random)), kNotTurned, origin);
    if (choice <= 7) {
        return Placed(RandomPipe(random), random.OneIn(2) ? kAlongX : kAlongY, origin);
    }
    if (choice <= 10) return Placed(RandomPrism(random), RandomTurn(random), origin);
    return Placed(RandomBox(random), RandomTurn(random), origin);
}

test::BoundingBox3d BoxAround(const Body& body) {
    test::BoundingBox3d box;
    const auto mesh = body(0);
    if (!mesh) return box;
    for (const IceMaths::Point& p : mesh->vertices) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) continue;
        box.Add({p.x, p.y, p.z, p.x, p.y, p.z});
    }
    return box;
}

}  // namespace kycb::scenes
