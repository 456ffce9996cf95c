// SPDX-License-Identifier: Apache-2.0
#include "InsideQuery.h"

#include <vector>

namespace ifchost {
namespace {

/// Directions that no building is aligned with, so that a ray along an edge is the exception.
constexpr Vec3 kDirections[] = {{0.5773123, 0.2718281, 0.7699311}, {-0.3141592, 0.8431775, 0.43612},
                                {0.1618033, -0.4669201, 0.869364}, {-0.71, -0.3321928, -0.6209},
                                {0.9159655, 0.3819660, -0.12345},  {-0.1202056, -0.91596, 0.38263}};

/// A ray that passes closer than this share of the triangle to its border is not trusted.
constexpr double kBorderShare = 1e-9;

std::vector<BodyBox> TriangleBoxes(const BodyMesh& mesh) {
    std::vector<BodyBox> boxes(mesh.triangles.size());
    for (std::size_t t = 0; t < boxes.size(); ++t) {
        for (std::size_t k = 0; k < 3; ++k)
            boxes[t].Add(mesh.Corner(t, k));
    }
    return boxes;
}

struct Crossing {
    int sign = 0;  ///< +1 the ray leaves the body, -1 it enters, 0 it passes by
    bool doubtful = false;
};

/// Signed volumes of the ray with each edge; all of one sign when it passes through.
Crossing CrossRay(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& direction) {
    const double u = Dot(direction, Cross(a, b));
    const double v = Dot(direction, Cross(b, c));
    const double w = Dot(direction, Cross(c, a));
    const double scale = std::abs(u) + std::abs(v) + std::abs(w);
    const double border = kBorderShare * scale;
    const bool front = u >= -border && v >= -border && w >= -border;
    const bool back = u <= border && v <= border && w <= border;
    if (!front && !back) return {};
    const Vec3 normal = Cross(b - a, c - a);
    const double slope = Dot(normal, direction);
    const double side = Dot(normal, a);
    const bool clear = std::min({std::abs(u), std::abs(v), std::abs(w)}) > border;
    if (!clear || std::abs(slope) <= kBorderShare * Length(normal)) return {0, true};
    if (side / slope < 0.0) return {};
    return {slope > 0.0 ? 1 : -1, false};
}

}  // namespace

InsideQuery::InsideQuery(const BodyMesh& mesh)
    : mesh_(mesh), box_(BoundingBox(mesh)), tree_(TriangleBoxes(mesh)) {}

int InsideQuery::WindingNumber(const Vec3& point) const {
    if (!box_.Contains(point)) return 0;
    int winding = 0;
    for (const Vec3& direction : kDirections) {
        winding = 0;
        bool doubtful = false;
        tree_.VisitRay(point, direction, [&](std::uint32_t t) {
            const Crossing crossing =
                CrossRay(mesh_.Corner(t, 0) - point, mesh_.Corner(t, 1) - point,
                         mesh_.Corner(t, 2) - point, direction);
            winding += crossing.sign;
            doubtful = doubtful || crossing.doubtful;
            return true;
        });
        if (!doubtful) break;
    }
    return winding;
}

}  // namespace ifchost
