// SPDX-License-Identifier: Apache-2.0
#include "opcode/MeshBounds.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace kycb::opcode {
namespace {

using IceMaths::Point;
using Vector = std::array<double, 3>;
using Frame = std::array<Vector, 3>;

constexpr float kLargest = std::numeric_limits<float>::max();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Rounding of the sums of products below, relative to the largest coordinate: some tens of half
// ulps (1.1e-16) at most. A larger margin only lets a few more pairs through to the exact test.
constexpr double kRelativeMargin = 1e-13;

// Triangles that are looked at for the directions of the oriented box. A sample serves: a wrong
// direction costs speed, never an answer.
constexpr std::uint32_t kSampledTriangles = 128;

// Sine of the angle below which two face normals count as parallel.
constexpr double kParallelSine = 0.1;

double Dot(const Vector& u, const Vector& v) {
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
}

Vector Cross(const Vector& u, const Vector& v) {
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

Vector From(const Point& p, const Point& q) {
    return {static_cast<double>(q.x) - static_cast<double>(p.x),
            static_cast<double>(q.y) - static_cast<double>(p.y),
            static_cast<double>(q.z) - static_cast<double>(p.z)};
}

std::optional<Vector> Normalized(const Vector& v) {
    const double length = std::sqrt(Dot(v, v));
    if (!(length > 0.0) || !std::isfinite(length)) return std::nullopt;
    return Vector{v[0] / length, v[1] / length, v[2] / length};
}

bool IsFinite(const Point& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The doubled area vectors of some triangles.
class NormalSample {
  public:
    explicit NormalSample(const Opcode::MeshInterface& mesh) {
        const std::uint32_t triangles = mesh.GetNbTriangles();
        const std::uint32_t step = 1 + (triangles - 1) / kSampledTriangles;
        const Point* v = mesh.GetVerts();
        for (std::uint32_t i = 0; i < triangles; i += step) {
            const auto& refs = mesh.GetTris()[i].mVRef;
            normals_[count_++] = Cross(From(v[refs[0]], v[refs[1]]), From(v[refs[0]], v[refs[2]]));
        }
    }
    const Vector* begin() const { return normals_.data(); }
    const Vector* end() const { return normals_.data() + count_; }

  private:
    std::array<Vector, kSampledTriangles> normals_;
    std::size_t count_ = 0;
};

/// Axes along the normal of the largest face and of the largest face that is not parallel to it:
/// the sides of a box or profile, the axis of a pipe.
std::optional<Frame> FrameOfFaces(const Opcode::MeshInterface& mesh) {
    const NormalSample sample(mesh);
    Vector first = {0, 0, 0};
    double largest = 0.0;
    for (const Vector& n : sample) {
        if (const double size = Dot(n, n); size > largest) {
            largest = size;
            first = n;
        }
    }
    const auto x = Normalized(first);
    if (!x) return std::nullopt;
    Vector second = {0, 0, 0};
    largest = 0.0;
    for (const Vector& n : sample) {
        const double size = Dot(n, n);
        if (!(size > largest)) continue;  // nor when it is not a number
        const Vector across = Cross(*x, n);
        if (!(Dot(across, across) > kParallelSine * kParallelSine * size)) continue;
        largest = size;
        second = n;
    }
    const auto z = Normalized(Cross(*x, second));
    if (!z) return std::nullopt;
    return Frame{*x, Cross(*z, *x), *z};
}

bool IsAlongAnAxis(const Vector& v) {
    return (v[0] == 0.0) + (v[1] == 0.0) + (v[2] == 0.0) == 2;
}

constexpr Frame kWorldAxes = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

}  // namespace

Box EmptyBox() {
    return {{kLargest, kLargest, kLargest}, {-kLargest, -kLargest, -kLargest}};
}

Box BoxOf(const Opcode::MeshInterface& mesh) {
    Box box = EmptyBox();
    const auto include = [&](std::size_t axis, float value) {
        // Not finite values change nothing. NaN fails the test too.
        if (!(std::fabs(value) <= kLargest)) return;
        box.low[axis] = std::min(box.low[axis], value);
        box.high[axis] = std::max(box.high[axis], value);
    };
    for (std::uint32_t i = 0; i < mesh.GetNbVertices(); ++i) {
        const Point& p = mesh.GetVerts()[i];
        include(0, p.x);
        include(1, p.y);
        include(2, p.z);
    }
    return box;
}

bool AllVerticesFinite(const Opcode::MeshInterface& mesh) {
    const Point* begin = mesh.GetVerts();
    return std::all_of(begin, begin + mesh.GetNbVertices(), IsFinite);
}

MeshBounds::MeshBounds(const Opcode::MeshInterface& mesh, double reach)
    : margin_(kRelativeMargin * reach) {
    TakeDiagonals(mesh);
    TakeOrientedBox(mesh, FrameOfFaces(mesh).value_or(kWorldAxes));
}

void MeshBounds::TakeDiagonals(const Opcode::MeshInterface& mesh) {
    low_.fill(kInfinity);
    high_.fill(-kInfinity);
    for (std::uint32_t i = 0; i < mesh.GetNbVertices(); ++i) {
        const Point& p = mesh.GetVerts()[i];
        if (!IsFinite(p)) continue;
        const double x = static_cast<double>(p.x);
        const double y = static_cast<double>(p.y);
        const double z = static_cast<double>(p.z);
        const std::array<double, kDiagonals> along = {x + y, x - y, x + z, x - z, y + z, y - z};
        for (std::size_t k = 0; k < kDiagonals; ++k) {
            low_[k] = std::min(low_[k], along[k]);
            high_[k] = std::max(high_[k], along[k]);
        }
    }
}

void MeshBounds::TakeOrientedBox(const Opcode::MeshInterface& mesh, const Frame& frame) {
    axes_ = frame;
    isAxisParallel_ = std::all_of(frame.begin(), frame.end(), IsAlongAnAxis);
    Vector low = {kInfinity, kInfinity, kInfinity};
    Vector high = {-kInfinity, -kInfinity, -kInfinity};
    for (std::uint32_t i = 0; i < mesh.GetNbVertices(); ++i) {
        const Point& p = mesh.GetVerts()[i];
        if (!IsFinite(p)) continue;
        const Vector v = From(Point(0, 0, 0), p);
        for (std::size_t k = 0; k < 3; ++k) {
            const double along = Dot(axes_[k], v);
            low[k] = std::min(low[k], along);
            high[k] = std::max(high[k], along);
        }
    }
    centre_ = {0, 0, 0};
    for (std::size_t k = 0; k < 3; ++k) {
        half_[k] = 0.5 * (high[k] - low[k]);
        const double middle = 0.5 * (high[k] + low[k]);
        for (std::size_t axis = 0; axis < 3; ++axis)
            centre_[axis] += middle * axes_[k][axis];
    }
}

bool MeshBounds::IsApartFrom(const MeshBounds& other) const {
    if (HasGapAlongDiagonals(other)) return true;
    // What the bounding boxes have told already, as for most parts of a building.
    if (isAxisParallel_ && other.isAxisParallel_) return false;
    return HasGapBetweenOrientedBoxes(other);
}

bool MeshBounds::HasGapAlongDiagonals(const MeshBounds& other) const {
    const double margin = margin_ + other.margin_;
    bool gap = false;
    for (std::size_t k = 0; k < kDiagonals; ++k)
        gap |= low_[k] > other.high_[k] + margin || other.low_[k] > high_[k] + margin;
    return gap;
}

/// The separating-axis test of Gottschalk et al. on the axes of both boxes and their products.
bool MeshBounds::HasGapBetweenOrientedBoxes(const MeshBounds& other) const {
    const double margin = margin_ + other.margin_;
    const Vector t = {other.centre_[0] - centre_[0], other.centre_[1] - centre_[1],
                      other.centre_[2] - centre_[2]};
    double r[3][3];
    double a[3][3];
    Vector mine;
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = 0; j < 3; ++j) {
            r[i][j] = Dot(axes_[i], other.axes_[j]);
            a[i][j] = std::fabs(r[i][j]);
        }
        mine[i] = Dot(t, axes_[i]);
        const double reach = half_[i] + other.half_[0] * a[i][0] + other.half_[1] * a[i][1] +
                             other.half_[2] * a[i][2];
        if (std::fabs(mine[i]) > reach + margin) return true;
    }
    for (std::size_t j = 0; j < 3; ++j) {
        const double reach =
            other.half_[j] + half_[0] * a[0][j] + half_[1] * a[1][j] + half_[2] * a[2][j];
        if (std::fabs(Dot(t, other.axes_[j])) > reach + margin) return true;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t i1 = (i + 1) % 3;
        const std::size_t i2 = (i + 2) % 3;
        for (std::size_t j = 0; j < 3; ++j) {
            const std::size_t j1 = (j + 1) % 3;
            const std::size_t j2 = (j + 2) % 3;
            const double reach = half_[i1] * a[i2][j] + half_[i2] * a[i1][j] +
                                 other.half_[j1] * a[i][j2] + other.half_[j2] * a[i][j1];
            if (std::fabs(mine[i2] * r[i1][j] - mine[i1] * r[i2][j]) > reach + margin) return true;
        }
    }
    return false;
}

}  // namespace kycb::opcode
