// SPDX-License-Identifier: Apache-2.0
#include "PrismShape.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace ifchost {
namespace {

using Matrix3 = std::array<std::array<double, 3>, 3>;

// Heights are shown in whole millimetres, so ends this close (mm) are on one height.
constexpr double kHorizontalRise = 1.0;
// A vertical run may lean by this much (mm), or by this share of its length.
constexpr double kVerticalLean = 1.0;
constexpr double kVerticalLeanShare = 0.001;
// Faces count as sides or end faces when their normal is this close to across or along the axis.
constexpr double kSideCosine = 0.1;
constexpr double kEndCosine = 0.9;
// Share of the area that may be neither, for chamfers and the rims of branches.
constexpr double kOddAreaShare = 0.05;
// Corners of a round section lie on its circle, those of a square one 41 % outside of it.
constexpr double kRoundSlack = 1.05;
// A swept path this much longer than the straight line between its ends is bent (mm).
constexpr double kBentPath = 1.0;

Point3 Minus(const Point3& a, const Point3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
Point3 Plus(const Point3& a, const Point3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
Point3 Times(const Point3& a, double s) {
    return {a[0] * s, a[1] * s, a[2] * s};
}
double Dot(const Point3& a, const Point3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Point3 Cross(const Point3& a, const Point3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double Norm(const Point3& a) {
    return std::sqrt(Dot(a, a));
}
Point3 Unit(const Point3& a) {
    const double norm = Norm(a);
    return norm > 0.0 ? Times(a, 1.0 / norm) : Point3{};
}

struct Eigen {
    Point3 values{};
    Matrix3 vectors{};  // one per row
};

void Rotate(Matrix3& m, Matrix3& vectors, std::size_t p, std::size_t q) {
    if (m[p][q] == 0.0) return;
    const double theta = (m[q][q] - m[p][p]) / (2.0 * m[p][q]);
    const double t = std::copysign(1.0, theta) / (std::abs(theta) + std::hypot(theta, 1.0));
    const double c = 1.0 / std::hypot(t, 1.0);
    const double s = t * c;
    for (std::size_t k = 0; k < 3; ++k) {
        const double mkp = m[k][p];
        m[k][p] = c * mkp - s * m[k][q];
        m[k][q] = s * mkp + c * m[k][q];
    }
    for (std::size_t k = 0; k < 3; ++k) {
        const double mpk = m[p][k];
        m[p][k] = c * mpk - s * m[q][k];
        m[q][k] = s * mpk + c * m[q][k];
        const double vpk = vectors[p][k];
        vectors[p][k] = c * vpk - s * vectors[q][k];
        vectors[q][k] = s * vpk + c * vectors[q][k];
    }
}

// Jacobi's method; it converges quadratically, so this many sweeps are more than enough.
Eigen EigenOf(Matrix3 m) {
    constexpr int kSweeps = 30;
    Eigen eigen;
    eigen.vectors = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
        Rotate(m, eigen.vectors, 0, 1);
        Rotate(m, eigen.vectors, 0, 2);
        Rotate(m, eigen.vectors, 1, 2);
    }
    eigen.values = {m[0][0], m[1][1], m[2][2]};
    return eigen;
}

struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    void Add(double value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double Size() const { return high - low; }
    double Middle() const { return (low + high) / 2.0; }
};

Range RangeAlong(const WorldMesh& mesh, const Point3& direction) {
    Range range;
    for (const Point3& point : mesh.points)
        range.Add(Dot(point, direction));
    return range;
}

// Twice the area, in the direction of the normal.
Point3 AreaVector(const WorldMesh& mesh, const std::array<std::uint32_t, 3>& triangle) {
    const Point3& a = mesh.points[triangle[0]];
    return Cross(Minus(mesh.points[triangle[1]], a), Minus(mesh.points[triangle[2]], a));
}

Point3 SmallestEigenvector(const Matrix3& m) {
    const Eigen eigen = EigenOf(m);
    const auto smallest = std::min_element(eigen.values.begin(), eigen.values.end());
    return eigen.vectors[static_cast<std::size_t>(smallest - eigen.values.begin())];
}

Point3 AxisByNormals(const WorldMesh& mesh) {
    Matrix3 m{};
    for (const auto& triangle : mesh.triangles) {
        const Point3 area = AreaVector(mesh, triangle);
        const double size = Norm(area);
        if (size == 0.0) continue;
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t j = 0; j < 3; ++j)
                m[i][j] += area[i] * area[j] / size;
        }
    }
    return SmallestEigenvector(m);
}

bool IsPrismAlong(const WorldMesh& mesh, const Point3& axis) {
    double all = 0.0;
    double odd = 0.0;
    for (const auto& triangle : mesh.triangles) {
        const Point3 area = AreaVector(mesh, triangle);
        const double size = Norm(area);
        const double along = std::abs(Dot(area, axis));
        all += size;
        if (along > kSideCosine * size && along < kEndCosine * size) odd += size;
    }
    return all > 0.0 && odd <= kOddAreaShare * all;
}

// Across the axis and level; for upright axes the direction in plan that the body extends along.
Point3 LevelAcross(const WorldMesh& mesh, const Point3& axis) {
    const Point3 level = {axis[1], -axis[0], 0.0};
    return Norm(level) > kVerticalLeanShare ? Unit(level) : PlanDirection(mesh);
}

double LargestDistance(const WorldMesh& mesh, const Point3& origin, const Point3& axis) {
    double largest = 0.0;
    for (const Point3& point : mesh.points) {
        largest = std::max(largest, Norm(Cross(Minus(point, origin), axis)));
    }
    return largest;
}

}  // namespace

double PrismShape::Length() const {
    return Norm(Minus(end, start));
}

bool PrismShape::IsHorizontal() const {
    return std::abs(Rise()) <= kHorizontalRise;
}

bool PrismShape::IsVertical() const {
    const double lean = std::hypot(end[0] - start[0], end[1] - start[1]);
    return lean <= std::max(kVerticalLean, kVerticalLeanShare * Length());
}

WorldMesh WorldMeshOf(const ScenePackage& package, const SceneProduct& product) {
    WorldMesh mesh;
    for (const SceneInstance& instance : package.Instances(product)) {
        const SceneGeometry geometry = package.Geometry(instance.geometry);
        const auto first = static_cast<std::uint32_t>(mesh.points.size());
        for (std::size_t i = 0; i < geometry.VertexCount(); ++i) {
            const double* p = &geometry.positions[3 * i];
            mesh.points.push_back(instance.Apply(p[0], p[1], p[2]));
        }
        for (std::size_t i = 0; i < geometry.TriangleCount(); ++i) {
            const std::uint32_t* t = &geometry.indices[3 * i];
            mesh.triangles.push_back({first + t[0], first + t[1], first + t[2]});
        }
    }
    return mesh;
}

std::optional<PrismShape> PrismOfSection(const SceneProduct& product) {
    if (!product.section || product.section->solidCount != 1) return std::nullopt;
    const SceneSection& section = *product.section;
    PrismShape shape{section.start, section.end, section.width, section.height, 0.0};
    const bool isBent = section.length > shape.Length() + kBentPath;
    if (isBent || shape.Length() <= std::max(section.width, section.height)) return std::nullopt;
    if (section.shape == SectionShape::Circle) shape.radius = section.radius;
    const Point3 yAxis = Cross(Unit(Minus(section.end, section.start)), section.xAxis);
    if (std::abs(section.xAxis[2]) > std::abs(yAxis[2])) std::swap(shape.width, shape.height);
    return shape;
}

std::optional<PrismShape> PrismOfMesh(const WorldMesh& mesh) {
    if (mesh.triangles.empty()) return std::nullopt;
    const Point3 axis = AxisByNormals(mesh);
    if (!IsPrismAlong(mesh, axis)) return std::nullopt;
    const Point3 across = LevelAcross(mesh, axis);
    const Point3 upward = Cross(axis, across);
    const Range along = RangeAlong(mesh, axis);
    const Range wide = RangeAlong(mesh, across);
    const Range high = RangeAlong(mesh, upward);
    if (along.Size() <= std::max(wide.Size(), high.Size())) return std::nullopt;
    const Point3 middle = Plus(Times(across, wide.Middle()), Times(upward, high.Middle()));
    PrismShape shape{Plus(middle, Times(axis, along.low)), Plus(middle, Times(axis, along.high)),
                     wide.Size(), high.Size(), 0.0};
    const double half = std::max(shape.width, shape.height) / 2.0;
    if (LargestDistance(mesh, middle, axis) <= kRoundSlack * half) shape.radius = half;
    return shape;
}

Point3 PlanDirection(const WorldMesh& mesh) {
    if (mesh.points.empty()) return {1, 0, 0};
    Point3 mean{};
    for (const Point3& point : mesh.points)
        mean = Plus(mean, point);
    mean = Times(mean, 1.0 / static_cast<double>(mesh.points.size()));
    double xx = 0.0;
    double xy = 0.0;
    double yy = 0.0;
    for (const Point3& point : mesh.points) {
        const Point3 d = Minus(point, mean);
        xx += d[0] * d[0];
        xy += d[0] * d[1];
        yy += d[1] * d[1];
    }
    const double angle = 0.5 * std::atan2(2.0 * xy, xx - yy);
    return {std::cos(angle), std::sin(angle), 0.0};
}

double ExtentAlong(const WorldMesh& mesh, const Point3& direction) {
    return mesh.points.empty() ? 0.0 : RangeAlong(mesh, direction).Size();
}

}  // namespace ifchost
