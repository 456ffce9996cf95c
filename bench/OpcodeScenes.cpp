// SPDX-License-Identifier: Apache-2.0
#include "OpcodeScenes.h"

#include <array>
#include <cmath>
#include <functional>
#include <numbers>

namespace kycb::bench {
namespace {

constexpr double kPi = std::numbers::pi;

using Vector = std::array<double, 3>;

class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    double In(double low, double high) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        return low + (high - low) * static_cast<double>(state_ >> 11) * 0x1p-53;
    }

  private:
    std::uint64_t state_;
};

Vector Along(const Vector& from, const Vector& direction, double length) {
    return {from[0] + direction[0] * length, from[1] + direction[1] * length,
            from[2] + direction[2] * length};
}

Vector Cross(const Vector& u, const Vector& v) {
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

Vector Unit(const Vector& v) {
    const double length = std::hypot(v[0], v[1], v[2]);
    return {v[0] / length, v[1] / length, v[2] / length};
}

IceMaths::Point Rounded(const Vector& v) {
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

/// A point somewhere on a storey.
Vector Place(Random& random) {
    return {random.In(0, 80000), random.In(0, 60000), random.In(0, 40000)};
}

enum class Seam { kOpen, kClosed };

/// A surface of columns by rows quadrilaterals, each cut in two; a closed seam joins the last
/// column to the first.
SceneMesh Surface(std::uint32_t columns, std::uint32_t rows, Seam seam,
                  const std::function<Vector(double, double)>& at) {
    SceneMesh mesh;
    const std::uint32_t width = seam == Seam::kClosed ? columns : columns + 1;
    for (std::uint32_t row = 0; row <= rows; ++row)
        for (std::uint32_t column = 0; column < width; ++column)
            mesh.vertices.push_back(Rounded(
                at(static_cast<double>(column) / columns, static_cast<double>(row) / rows)));
    for (std::uint32_t row = 0; row < rows; ++row) {
        for (std::uint32_t column = 0; column < columns; ++column) {
            const std::uint32_t p = row * width + column;
            const std::uint32_t q = row * width + (column + 1) % width;
            mesh.triangles.emplace_back(p, q, q + width);
            mesh.triangles.emplace_back(p, q + width, p + width);
        }
    }
    return mesh;
}

/// Closes an end of a tube: a fan over the `around` vertices from `first`.
void AddCap(SceneMesh& mesh, std::uint32_t first, std::uint32_t around, const Vector& centre) {
    const auto middle = static_cast<std::uint32_t>(mesh.vertices.size());
    mesh.vertices.push_back(Rounded(centre));
    for (std::uint32_t i = 0; i < around; ++i)
        mesh.triangles.emplace_back(middle, first + i, first + (i + 1) % around);
}

SceneMesh Pipe(const Vector& from, const Vector& axis, double length, double radius,
               std::uint32_t around, std::uint32_t along) {
    const Vector u =
        Unit(Cross(axis, std::fabs(axis[2]) < 0.9 ? Vector{0, 0, 1} : Vector{1, 0, 0}));
    const Vector v = Cross(axis, u);
    SceneMesh mesh = Surface(around, along, Seam::kClosed, [&](double s, double t) {
        const Vector centre = Along(from, axis, length * t);
        return Along(Along(centre, u, radius * std::cos(2 * kPi * s)), v,
                     radius * std::sin(2 * kPi * s));
    });
    AddCap(mesh, 0, around, from);
    AddCap(mesh, along * around, around, Along(from, axis, length));
    return mesh;
}

/// A bend of 90 degrees about `centre`, from angle `start` in the xy plane.
SceneMesh Elbow(const Vector& centre, double bend, double radius, std::uint32_t around,
                std::uint32_t along, double start, double sweep) {
    const auto ring = [&](double angle, double out, double up) {
        return Vector{centre[0] + (bend + out) * std::cos(angle),
                      centre[1] + (bend + out) * std::sin(angle), centre[2] + up};
    };
    SceneMesh mesh = Surface(around, along, Seam::kClosed, [&](double s, double t) {
        return ring(start + sweep * t, radius * std::cos(2 * kPi * s),
                    radius * std::sin(2 * kPi * s));
    });
    AddCap(mesh, 0, around, ring(start, 0, 0));
    AddCap(mesh, along * around, around, ring(start + sweep, 0, 0));
    return mesh;
}

SceneMesh Box(const Vector& low, const Vector& size, double turn = 0) {
    SceneMesh mesh;
    for (int i = 0; i < 8; ++i) {
        const double x = (i & 1) != 0 ? size[0] : 0;
        const double y = (i & 2) != 0 ? size[1] : 0;
        mesh.vertices.push_back(Rounded({low[0] + x * std::cos(turn) - y * std::sin(turn),
                                         low[1] + x * std::sin(turn) + y * std::cos(turn),
                                         low[2] + ((i & 4) != 0 ? size[2] : 0)}));
    }
    constexpr std::uint32_t kFaces[6][4] = {{0, 1, 3, 2}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                            {2, 3, 7, 6}, {0, 2, 6, 4}, {1, 3, 7, 5}};
    for (const auto& f : kFaces) {
        mesh.triangles.emplace_back(f[0], f[1], f[2]);
        mesh.triangles.emplace_back(f[0], f[2], f[3]);
    }
    return mesh;
}

SceneMesh RoughSphere(const Vector& centre, double radius, std::uint32_t rings, double phase) {
    return Surface(2 * rings, rings, Seam::kClosed, [&](double s, double t) {
        const double longitude = 2 * kPi * s;
        const double latitude = kPi * t;
        const double r =
            radius * (1 + 0.02 * std::sin(7 * longitude + phase) * std::sin(9 * latitude + phase));
        return Vector{centre[0] + r * std::sin(latitude) * std::cos(longitude),
                      centre[1] + r * std::sin(latitude) * std::sin(longitude),
                      centre[2] + r * std::cos(latitude)};
    });
}

SceneMesh Ground(double size, std::uint32_t cells) {
    return Surface(cells, cells, Seam::kOpen, [&](double s, double t) {
        const double x = size * s;
        const double y = size * t;
        return Vector{
            x, y, 300 * std::sin(x / 3100) * std::cos(y / 4300) + 40 * std::sin(x / 350 + y / 430)};
    });
}

constexpr int kSmallPairs = 256;

Scene BoxesCrossing() {
    Scene scene{"boxes_crossing", 4332, {}, {}};
    Random random(11);
    for (int i = 0; i < kSmallPairs; ++i) {
        const Vector p = Place(random);
        const double depth = random.In(200, 500);
        scene.a.push_back(Box(p, {random.In(3000, 8000), depth, depth}));
        const double across = random.In(300, 2000);
        const double width = random.In(100, 400);
        scene.b.push_back(
            Box({p[0] + across, p[1] - 2000, p[2] + depth / 3}, {width, 5000, depth}));
    }
    return scene;
}

Scene BoxesTouching() {
    Scene scene{"boxes_touching", 4096, {}, {}};
    Random random(12);
    for (int i = 0; i < kSmallPairs; ++i) {
        Vector p = Place(random);
        for (double& c : p)
            c = std::floor(c);
        const double depth = std::floor(random.In(200, 500));
        scene.a.push_back(Box(p, {std::floor(random.In(4000, 8000)), depth, depth}));
        const double across = std::floor(random.In(500, 3000));
        const double width = std::floor(random.In(100, 400));
        scene.b.push_back(Box({p[0] + across, p[1] - 1000, p[2] + depth}, {width, 4000, 300}));
    }
    return scene;
}

Scene BoxesApart() {
    Scene scene{"boxes_apart", 0, {}, {}};
    Random random(13);
    for (int i = 0; i < kSmallPairs; ++i) {
        const Vector p = Place(random);
        const double turn = random.In(0.4, 1.1);
        const double width = random.In(200, 600);
        const double length = random.In(4000, 9000);
        scene.a.push_back(Box(p, {length, width, width}, turn));
        const Vector middle = Along(p, {std::cos(turn), std::sin(turn), 0}, length / 2);
        const Vector beside = Along(middle, {-std::sin(turn), std::cos(turn), 0}, width + 250);
        scene.b.push_back(Box(Along(beside, {-1, -1, 0}, 100), {200, 200, width}));
    }
    return scene;
}

Scene PipeThroughWall() {
    Scene scene{"pipe_through_wall", 32936, {}, {}};
    Random random(14);
    for (int i = 0; i < kSmallPairs; ++i) {
        const Vector p = Place(random);
        const Vector axis = Unit({random.In(-0.2, 0.2), 1, random.In(-0.1, 0.1)});
        const double before = random.In(1000, 4000);
        const double radius = random.In(30, 200);
        scene.a.push_back(Pipe(Along(p, axis, -before), axis, 6000, radius, 32, 1));
        scene.b.push_back(
            Box({p[0] - random.In(1000, 4000), p[1], p[2] - 1500}, {6000, 200, 3200}));
    }
    return scene;
}

Scene Fittings() {
    Scene scene{"fittings_2k", 1474, {}, {}};
    Random random(15);
    for (int i = 0; i < 16; ++i) {
        const Vector p = Place(random);
        const double apart = 1400 * std::numbers::sqrt2 - random.In(30, 80);
        scene.a.push_back(Elbow(p, 1000, 400, 32, 30, 0, kPi / 2));
        scene.b.push_back(Elbow({p[0] + apart, p[1] + apart, p[2] + random.In(-50, 50)}, 1000, 400,
                                32, 30, kPi, kPi / 2));
    }
    return scene;
}

Scene ShallowContact() {
    Scene scene{"shallow_50k", 304, {}, {}};
    scene.a.push_back(RoughSphere({30000, 20000, 10000}, 2000, 112, 0.3));
    scene.b.push_back(RoughSphere({33200, 21900, 10900}, 2000, 112, 1.1));
    return scene;
}

Scene DeepContact() {
    Scene scene{"deep_100k_2k", 1135, {}, {}};
    scene.a.push_back(Ground(60000, 224));
    scene.b.push_back(Pipe({3000, 5000, 20}, Unit({53, 45, 0.1}), 69000, 600, 32, 31));
    return scene;
}

Scene SkewPipes() {
    Scene scene{"near_miss_500", 0, {}, {}};
    Random random(17);
    for (int i = 0; i < 64; ++i) {
        const Vector p = Place(random);
        const double r = random.In(50, 200);
        const double s = random.In(50, 200);
        const Vector d = Unit({1, random.In(-0.5, 0.5), random.In(-0.5, 0.5)});
        const Vector e = Unit({random.In(-0.5, 0.5), 1, random.In(-0.5, 0.5)});
        const Vector q = Along(p, Unit(Cross(d, e)), r + s + 2);
        scene.a.push_back(Pipe(Along(p, d, -2000), d, 4000, r, 24, 9));
        scene.b.push_back(Pipe(Along(q, e, -2000), e, 4000, s, 24, 9));
    }
    return scene;
}

Scene ElbowsSideBySide() {
    Scene scene{"near_miss_5k_side_by_side", 0, {}, {}};
    Random random(18);
    for (int i = 0; i < 16; ++i) {
        const Vector p = Place(random);
        const double apart = 1400 * std::numbers::sqrt2 + 4;
        scene.a.push_back(Elbow(p, 1000, 400, 50, 49, 0, kPi / 2));
        scene.b.push_back(Elbow({p[0] + apart, p[1] + apart, p[2] + random.In(-20, 20)}, 1000, 400,
                                50, 49, kPi, kPi / 2));
    }
    return scene;
}

Scene ElbowInCasing() {
    Scene scene{"near_miss_5k_nested", 0, {}, {}};
    Random random(19);
    for (int i = 0; i < 8; ++i) {
        const Vector p = Place(random);
        scene.a.push_back(Elbow(p, 1000, 200, 50, 49, 0.05, kPi / 2 - 0.1));
        scene.b.push_back(Elbow(p, 1000, 220, 50, 49, 0, kPi / 2));
    }
    return scene;
}

}  // namespace

std::vector<Scene> OpcodeScenes() {
    return {BoxesCrossing(),  BoxesTouching(), BoxesApart(), PipeThroughWall(),  Fittings(),
            ShallowContact(), DeepContact(),   SkewPipes(),  ElbowsSideBySide(), ElbowInCasing()};
}

}  // namespace kycb::bench
