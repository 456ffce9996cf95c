// SPDX-License-Identifier: Apache-2.0
#include "SolidSurface.h"

#include <limits>
#include <numeric>

namespace ifchost {
namespace {

/// Triangles whose corners are this near the plane of a neighbour belong to its face. Above the
/// rounding of single-precision metre coordinates, below the sagitta of any curve worth a facet.
constexpr double kPlaneToleranceMm = 0.005;

/// Triangles of one face may differ that much in direction (cosine); only tiny ones do.
constexpr double kFaceCosine = 0.9;

/// Triangles lower than this have a direction made of rounding.
constexpr double kSliverHeightMm = 0.01;

/// Sine of the angle below which two faces go on in each other. A face 10 m long then strays by
/// 0.1 mm at most.
constexpr double kFlatSine = 1e-5;

/// How far a vertex may stand out of a face's plane in a convex body: two roundings of a plane.
constexpr double kConvexSlackMm = 0.02;

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();

}  // namespace

SolidSurface::SolidSurface(const BodyMesh& mesh) : mesh_(mesh) {
    areaVectors_.reserve(mesh.triangles.size());
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        const Vec3 a = mesh.Corner(t, 0);
        areaVectors_.push_back(Cross(mesh.Corner(t, 1) - a, mesh.Corner(t, 2) - a) * 0.5);
    }
    PairHalfEdges();
    GroupFaces();
    FitPlanes();
    ClassifyEdges();
}

Vec3 SolidSurface::Direction(std::uint32_t halfEdge) const {
    const Vec3& from = mesh_.positions[EdgeStart(mesh_, halfEdge)];
    return Normalized(mesh_.positions[EdgeEnd(mesh_, halfEdge)] - from);
}

bool SolidSurface::IsConvex() const {
    for (std::uint32_t t = 0; t < faces_.size(); ++t) {
        for (std::uint32_t h = t * 3; h < t * 3 + 3; ++h) {
            if (kinds_[h] == EdgeKind::Concave) return false;
        }
    }
    // Locally convex everywhere and yet wound around itself would leave a vertex out.
    for (const HalfSpace& plane : planes_) {
        for (const Vec3& p : mesh_.positions) {
            if (plane.Distance(p) > kConvexSlackMm) return false;
        }
    }
    return true;
}

void SolidSurface::PairHalfEdges() {
    opposite_.assign(mesh_.triangles.size() * 3, kNone);
    ForEachEdge(mesh_, [this](std::span<const EdgeUse> uses) {
        for (const auto& [a, b] : PairAroundEdge(mesh_, uses).halfEdges) {
            opposite_[a] = b;
            opposite_[b] = a;
        }
    });
}

void SolidSurface::GroupFaces() {
    std::vector<std::uint32_t> order(mesh_.triangles.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [this](std::uint32_t a, std::uint32_t b) {
        return Length(areaVectors_[a]) > Length(areaVectors_[b]);
    });
    faces_.assign(mesh_.triangles.size(), kNone);
    std::uint32_t face = 0;
    for (const std::uint32_t seed : order) {
        if (faces_[seed] == kNone) GrowFace(seed, face++);
    }
    planes_.resize(face);
}

void SolidSurface::GrowFace(std::uint32_t seed, std::uint32_t face) {
    // Measured against the seed alone: comparing neighbours would creep around a fine cylinder.
    const Vec3 normal = Normalized(areaVectors_[seed]);
    const HalfSpace plane{normal, Dot(normal, mesh_.Corner(seed, 0))};
    const auto fits = [&](std::uint32_t t) {
        double longest = 0.0;
        for (std::size_t k = 0; k < 3; ++k) {
            if (std::abs(plane.Distance(mesh_.Corner(t, k))) > kPlaneToleranceMm) return false;
            longest = std::max(longest, Length(mesh_.Corner(t, (k + 1) % 3) - mesh_.Corner(t, k)));
        }
        const double area = Length(areaVectors_[t]);
        return 2.0 * area < kSliverHeightMm * longest ||
               Dot(areaVectors_[t], normal) > kFaceCosine * area;
    };
    std::vector<std::uint32_t> front{seed};
    faces_[seed] = face;
    while (!front.empty()) {
        const std::uint32_t t = front.back();
        front.pop_back();
        for (std::uint32_t h = t * 3; h < t * 3 + 3; ++h) {
            const std::uint32_t other = opposite_[h] / 3;
            if (faces_[other] != kNone || !fits(other)) continue;
            faces_[other] = face;
            front.push_back(other);
        }
    }
}

void SolidSurface::FitPlanes() {
    std::vector<Vec3> sums(planes_.size());
    for (std::size_t t = 0; t < faces_.size(); ++t) {
        sums[faces_[t]] = sums[faces_[t]] + areaVectors_[t];
    }
    std::vector<double> weights(planes_.size(), 0.0);
    for (std::size_t f = 0; f < planes_.size(); ++f)
        planes_[f].normal = Normalized(sums[f]);
    for (std::size_t t = 0; t < faces_.size(); ++t) {
        HalfSpace& plane = planes_[faces_[t]];
        const double area = Length(areaVectors_[t]);
        const Vec3 middle =
            (mesh_.Corner(t, 0) + mesh_.Corner(t, 1) + mesh_.Corner(t, 2)) * (1.0 / 3.0);
        plane.height += area * Dot(plane.normal, middle);
        weights[faces_[t]] += area;
    }
    for (std::size_t f = 0; f < planes_.size(); ++f)
        planes_[f].height /= weights[f];
}

void SolidSurface::ClassifyEdges() {
    kinds_.assign(opposite_.size(), EdgeKind::Flat);
    for (std::uint32_t h = 0; h < opposite_.size(); ++h) {
        const std::uint32_t own = faces_[h / 3];
        const std::uint32_t other = faces_[opposite_[h] / 3];
        if (own == other) continue;
        const Vec3& a = planes_[own].normal;
        const Vec3& b = planes_[other].normal;
        const double sine = Dot(Cross(a, b), Direction(h));
        if (sine > kFlatSine) kinds_[h] = EdgeKind::Convex;
        if (sine < -kFlatSine) kinds_[h] = EdgeKind::Concave;
        if (std::abs(sine) <= kFlatSine && Dot(a, b) < 0.0) kinds_[h] = EdgeKind::Convex;
    }
}

}  // namespace ifchost
