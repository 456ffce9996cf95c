// SPDX-License-Identifier: Apache-2.0
// Meshes of known bodies for tests, all closed and facing outward unless said otherwise.
#pragma once

#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

#include "ifchost/BodyMesh.h"

namespace ifchost::shapes {

inline void AddQuad(BodyMesh& mesh, const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
    const auto base = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.positions.insert(mesh.positions.end(), {a, b, c, d});
    mesh.triangles.push_back({base, base + 1, base + 2});
    mesh.triangles.push_back({base, base + 2, base + 3});
}

inline void AddTriangle(BodyMesh& mesh, const Vec3& a, const Vec3& b, const Vec3& c) {
    const auto base = static_cast<std::uint32_t>(mesh.positions.size());
    mesh.positions.insert(mesh.positions.end(), {a, b, c});
    mesh.triangles.push_back({base, base + 1, base + 2});
}

/// Sum of the triangle areas in square millimetres.
inline double SurfaceArea(const BodyMesh& mesh) {
    double twofold = 0.0;
    for (std::size_t t = 0; t < mesh.triangles.size(); ++t) {
        const Vec3 a = mesh.Corner(t, 0);
        twofold += Length(Cross(mesh.Corner(t, 1) - a, mesh.Corner(t, 2) - a));
    }
    return twofold / 2.0;
}

inline BodyMesh Box(const Vec3& lo, const Vec3& hi) {
    const auto at = [&](int i, int j, int k) {
        return Vec3{i == 0 ? lo.x : hi.x, j == 0 ? lo.y : hi.y, k == 0 ? lo.z : hi.z};
    };
    BodyMesh mesh;
    AddQuad(mesh, at(0, 0, 0), at(0, 1, 0), at(1, 1, 0), at(1, 0, 0));
    AddQuad(mesh, at(0, 0, 1), at(1, 0, 1), at(1, 1, 1), at(0, 1, 1));
    AddQuad(mesh, at(0, 0, 0), at(1, 0, 0), at(1, 0, 1), at(0, 0, 1));
    AddQuad(mesh, at(0, 1, 0), at(0, 1, 1), at(1, 1, 1), at(1, 1, 0));
    AddQuad(mesh, at(0, 0, 0), at(0, 0, 1), at(0, 1, 1), at(0, 1, 0));
    AddQuad(mesh, at(1, 0, 0), at(1, 1, 0), at(1, 1, 1), at(1, 0, 1));
    return mesh;
}

/// A polygon (counter-clockwise, seen as a fan from its first corner) swept from z0 to z1.
inline BodyMesh Prism(const std::vector<std::pair<double, double>>& ring, double z0, double z1) {
    BodyMesh mesh;
    const auto at = [&](std::size_t i, double z) {
        return Vec3{ring[i % ring.size()].first, ring[i % ring.size()].second, z};
    };
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        AddTriangle(mesh, at(0, z1), at(i, z1), at(i + 1, z1));
        AddTriangle(mesh, at(0, z0), at(i + 1, z0), at(i, z0));
    }
    for (std::size_t i = 0; i < ring.size(); ++i) {
        AddQuad(mesh, at(i, z0), at(i + 1, z0), at(i + 1, z1), at(i, z1));
    }
    return mesh;
}

inline std::vector<std::pair<double, double>> RegularRing(int count, double radius) {
    std::vector<std::pair<double, double>> ring;
    for (int i = 0; i < count; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / count;
        ring.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
    }
    return ring;
}

/// Boundary of the cells that `filled(i, j, k)` names, on a grid with the given coordinates.
inline BodyMesh Cells(const std::vector<double>& xs, const std::vector<double>& ys,
                      const std::vector<double>& zs,
                      const std::function<bool(int, int, int)>& filled) {
    const int nx = static_cast<int>(xs.size()) - 1;
    const int ny = static_cast<int>(ys.size()) - 1;
    const int nz = static_cast<int>(zs.size()) - 1;
    const auto full = [&](int i, int j, int k) {
        return i >= 0 && j >= 0 && k >= 0 && i < nx && j < ny && k < nz && filled(i, j, k);
    };
    const auto at = [&](int i, int j, int k) {
        return Vec3{xs[static_cast<std::size_t>(i)], ys[static_cast<std::size_t>(j)],
                    zs[static_cast<std::size_t>(k)]};
    };
    BodyMesh m;
    for (int i = 0; i < nx; ++i) {
        for (int j = 0; j < ny; ++j) {
            for (int k = 0; k < nz; ++k) {
                if (!full(i, j, k)) continue;
                const int p = i + 1, q = j + 1, r = k + 1;
                if (!full(i, j, k - 1))
                    AddQuad(m, at(i, j, k), at(i, q, k), at(p, q, k), at(p, j, k));
                if (!full(i, j, r)) AddQuad(m, at(i, j, r), at(p, j, r), at(p, q, r), at(i, q, r));
                if (!full(i, j - 1, k))
                    AddQuad(m, at(i, j, k), at(p, j, k), at(p, j, r), at(i, j, r));
                if (!full(i, q, k)) AddQuad(m, at(i, q, k), at(i, q, r), at(p, q, r), at(p, q, k));
                if (!full(i - 1, j, k))
                    AddQuad(m, at(i, j, k), at(i, j, r), at(i, q, r), at(i, q, k));
                if (!full(p, j, k)) AddQuad(m, at(p, j, k), at(p, q, k), at(p, q, r), at(p, j, r));
            }
        }
    }
    return m;
}

/// A pipe along z with a regular outline of `count` facets inside and outside.
inline BodyMesh Tube(int count, double outer, double inner, double z0, double z1) {
    const auto out = RegularRing(count, outer);
    const auto in = RegularRing(count, inner);
    BodyMesh mesh;
    for (std::size_t i = 0; i < out.size(); ++i) {
        const std::size_t j = (i + 1) % out.size();
        const auto a = [&](std::size_t n, double z) {
            return Vec3{out[n].first, out[n].second, z};
        };
        const auto b = [&](std::size_t n, double z) { return Vec3{in[n].first, in[n].second, z}; };
        AddQuad(mesh, a(i, z0), a(j, z0), a(j, z1), a(i, z1));
        AddQuad(mesh, b(i, z0), b(i, z1), b(j, z1), b(j, z0));
        AddQuad(mesh, a(i, z1), a(j, z1), b(j, z1), b(i, z1));
        AddQuad(mesh, a(i, z0), b(i, z0), b(j, z0), a(j, z0));
    }
    return mesh;
}

/// A quarter bend around the z axis: circle of `radius` at `bend` from the axis.
inline BodyMesh Elbow(int facets, int steps, double radius, double bend) {
    const auto at = [&](int step, int facet) {
        const double turn = std::numbers::pi / 2.0 * step / steps;
        const double angle = 2.0 * std::numbers::pi * (facet % facets) / facets;
        const double r = bend + radius * std::cos(angle);
        return Vec3{r * std::cos(turn), r * std::sin(turn), radius * std::sin(angle)};
    };
    BodyMesh mesh;
    for (int s = 0; s < steps; ++s) {
        for (int f = 0; f < facets; ++f) {
            AddQuad(mesh, at(s, f), at(s + 1, f), at(s + 1, f + 1), at(s, f + 1));
        }
    }
    for (int f = 1; f + 1 < facets; ++f) {
        AddTriangle(mesh, at(0, 0), at(0, f), at(0, f + 1));
        AddTriangle(mesh, at(steps, 0), at(steps, f + 1), at(steps, f));
    }
    if (SignedVolume(mesh) < 0.0) TurnOver(mesh);
    return mesh;
}

}  // namespace ifchost::shapes
