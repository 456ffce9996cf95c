// SPDX-License-Identifier: Apache-2.0
#include "desk/core/FeatureEdges.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <utility>

namespace desk {
namespace {

// Cosine of 30 degrees: a circle of 24 chords turns by 15 at each.
constexpr double kSmoothCosine = 0.866;

using Vector = std::array<double, 3>;

Vector PointOf(std::span<const double> positions, std::uint32_t vertex) {
    const std::size_t at = std::size_t{3} * vertex;
    return {positions[at], positions[at + 1], positions[at + 2]};
}

Vector Minus(const Vector& a, const Vector& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

double Dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector Cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// For each vertex the first one at the same place.
std::vector<std::uint32_t> Weld(std::span<const double> positions) {
    std::vector<std::uint32_t> order(positions.size() / 3);
    std::iota(order.begin(), order.end(), 0U);
    std::vector<std::uint32_t> first(order);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return PointOf(positions, a) < PointOf(positions, b);
    });
    for (std::size_t i = 1; i < order.size(); ++i) {
        if (PointOf(positions, order[i]) == PointOf(positions, order[i - 1]))
            first[order[i]] = first[order[i - 1]];
    }
    return first;
}

// One side of a triangle.
struct Side {
    std::pair<std::uint32_t, std::uint32_t> ends;  // the lower vertex first
    Vector normal{};                               // of the triangle, of length 1
};

std::vector<Side> SidesOf(std::span<const double> positions,
                          std::span<const std::uint32_t> indices) {
    const std::vector<std::uint32_t> welded = Weld(positions);
    std::vector<Side> sides;
    sides.reserve(indices.size());
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        const std::array<std::uint32_t, 3> corners{welded[indices[i]], welded[indices[i + 1]],
                                                   welded[indices[i + 2]]};
        const Vector a = PointOf(positions, corners[0]);
        Vector normal = Cross(Minus(PointOf(positions, corners[1]), a),
                              Minus(PointOf(positions, corners[2]), a));
        const double length = std::sqrt(Dot(normal, normal));
        if (!(length > 0.0)) continue;
        for (double& part : normal)
            part /= length;
        for (std::size_t k = 0; k < 3; ++k)
            sides.push_back({std::minmax(corners[k], corners[(k + 1) % 3]), normal});
    }
    return sides;
}

// Whether the triangles that share an edge make it worth drawing. Some files turn single faces
// over, so the sense of a normal does not count.
bool IsFeature(std::span<const Side> sides) {
    return sides.size() == 1 || std::any_of(sides.begin() + 1, sides.end(), [&](const Side& side) {
               return std::abs(Dot(sides.front().normal, side.normal)) < kSmoothCosine;
           });
}

}  // namespace

std::vector<std::uint32_t> FeatureEdges(std::span<const double> positions,
                                        std::span<const std::uint32_t> indices) {
    std::vector<Side> sides = SidesOf(positions, indices);
    std::stable_sort(sides.begin(), sides.end(),
                     [](const Side& a, const Side& b) { return a.ends < b.ends; });
    std::vector<std::uint32_t> edges;
    for (std::size_t first = 0, last = 0; first < sides.size(); first = last) {
        while (last < sides.size() && sides[last].ends == sides[first].ends)
            ++last;
        if (!IsFeature(std::span(sides).subspan(first, last - first))) continue;
        edges.push_back(sides[first].ends.first);
        edges.push_back(sides[first].ends.second);
    }
    return edges;
}

}  // namespace desk
