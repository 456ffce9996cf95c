// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <numbers>
#include <utility>

#include <gmock/gmock.h>

#include "desk/core/FeatureEdges.h"

using desk::FeatureEdges;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

namespace {

using Edge = std::pair<std::uint32_t, std::uint32_t>;
using Indices = std::vector<std::uint32_t>;
using Positions = std::vector<double>;

std::vector<Edge> EdgesOf(const Positions& positions, const Indices& indices) {
    const Indices flat = FeatureEdges(positions, indices);
    std::vector<Edge> edges;
    for (std::size_t i = 0; i + 1 < flat.size(); i += 2)
        edges.emplace_back(flat[i], flat[i + 1]);
    return edges;
}

// Corner i of a cube of 1000 has x, y, z by the bits 0, 1, 2 of i.
Positions CubeCorners() {
    Positions positions;
    for (unsigned i = 0; i < 8; ++i) {
        for (unsigned axis = 0; axis < 3; ++axis)
            positions.push_back((i >> axis & 1U) * 1000.0);
    }
    return positions;
}

const Indices kCube = {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                       2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5};

}  // namespace

TEST(FeatureEdges, AreTheTwelveOfACubeWithoutItsDiagonals) {
    EXPECT_THAT(EdgesOf(CubeCorners(), kCube),
                UnorderedElementsAre(Edge(0, 1), Edge(2, 3), Edge(4, 5), Edge(6, 7), Edge(0, 2),
                                     Edge(1, 3), Edge(4, 6), Edge(5, 7), Edge(0, 4), Edge(1, 5),
                                     Edge(2, 6), Edge(3, 7)));
}

TEST(FeatureEdges, CountVerticesAtOnePlaceAsOne) {
    // The cube again, each triangle with three vertices of its own.
    const Positions corners = CubeCorners();
    Positions apart;
    Indices indices;
    for (const std::uint32_t corner : kCube) {
        indices.push_back(static_cast<std::uint32_t>(indices.size()));
        apart.insert(apart.end(), corners.begin() + 3 * corner, corners.begin() + 3 * corner + 3);
    }
    EXPECT_THAT(EdgesOf(apart, indices), SizeIs(12));
}

TEST(FeatureEdges, AreTheRimOfAnOpenSurface) {
    const Positions square = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    EXPECT_THAT(EdgesOf(square, {0, 1, 2, 0, 2, 3}),
                UnorderedElementsAre(Edge(0, 1), Edge(1, 2), Edge(2, 3), Edge(0, 3)));
}

TEST(FeatureEdges, IgnoreWhichWayRoundAFaceIs) {
    const Positions square = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    EXPECT_THAT(EdgesOf(square, {0, 1, 2, 0, 3, 2}), SizeIs(4));
}

TEST(FeatureEdges, AreTheTwoRimsOfATubeNotItsSeams) {
    constexpr std::uint32_t kChords = 24;
    Positions tube;
    Indices indices;
    for (std::uint32_t i = 0; i < kChords; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / kChords;
        for (const double z : {0.0, 500.0}) {
            tube.insert(tube.end(), {50.0 * std::cos(angle), 50.0 * std::sin(angle), z});
        }
        const std::uint32_t low = 2 * i;
        const std::uint32_t next = 2 * ((i + 1) % kChords);
        const Indices quad = {low, next, low + 1, next, next + 1, low + 1};
        indices.insert(indices.end(), quad.begin(), quad.end());
    }
    const auto edges = EdgesOf(tube, indices);
    EXPECT_THAT(edges, SizeIs(2 * kChords));
    for (const auto& [a, b] : edges)
        EXPECT_EQ(a % 2, b % 2) << "an edge from rim to rim";
}

TEST(FeatureEdges, AreNotLookedForOnDegenerateTriangles) {
    EXPECT_THAT(EdgesOf({0, 0, 0, 1, 0, 0, 2, 0, 0}, {0, 1, 2}), IsEmpty());
    EXPECT_THAT(EdgesOf({}, {}), IsEmpty());
}
