// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "opcode/ExactOracle.h"
#include "opcode/HardTriangles.h"
#include "opcode/TriangleContact.h"

namespace kycb::opcode::test {
namespace {

using Coordinates = std::tuple<float, float, float>;

std::vector<Coordinates> Contact(const Triangle& a, const Triangle& b) {
    ContactPoints points;
    const bool touch = FindContact(a, b, points);
    EXPECT_EQ(touch, points.count > 0);
    std::vector<Coordinates> result;
    for (std::size_t i = 0; i < points.count; ++i)
        result.emplace_back(points.p[i].x, points.p[i].y, points.p[i].z);
    return result;
}

bool Touch(const Triangle& a, const Triangle& b) {
    return !Contact(a, b).empty();
}

Triangle Reordered(const Triangle& t, int order) {
    std::array<std::size_t, 3> index = {0, 1, 2};
    for (int i = 0; i < order; ++i)
        std::next_permutation(index.begin(), index.end());
    return {{t.v[index[0]], t.v[index[1]], t.v[index[2]]}};
}

testing::Matcher<std::vector<Coordinates>> Are(const std::vector<Coordinates>& points) {
    return testing::UnorderedElementsAreArray(points);
}

const Triangle kFloor = {{Point(0, 0, 0), Point(4, 0, 0), Point(0, 4, 0)}};

TEST(TriangleContact, GivesTheEndsOfTheSegmentOfTwoCrossingTriangles) {
    const Triangle wall = {{Point(1, 1, -2), Point(1, 1, 2), Point(1, -3, 0)}};
    EXPECT_THAT(Contact(kFloor, wall), Are({{1, 1, 0}, {1, 0, 0}}));
}

TEST(TriangleContact, GivesOnePointForAVertexOnAFace) {
    const Triangle above = {{Point(1, 1, 0), Point(1, 1, 2), Point(2, 1, 2)}};
    EXPECT_THAT(Contact(kFloor, above), Are({{1, 1, 0}}));
}

TEST(TriangleContact, GivesOnePointForCrossingEdges) {
    const Triangle beside = {{Point(2, 0, -1), Point(2, 0, 1), Point(2, -3, 0)}};
    EXPECT_THAT(Contact(kFloor, beside), Are({{2, 0, 0}}));
}

TEST(TriangleContact, GivesOnePointForASharedVertex) {
    const Triangle other = {{Point(4, 0, 0), Point(9, 1, 1), Point(9, -1, 2)}};
    EXPECT_THAT(Contact(kFloor, other), Are({{4, 0, 0}}));
}

TEST(TriangleContact, GivesBothEndsOfASharedEdge) {
    const Triangle other = {{Point(0, 0, 0), Point(4, 0, 0), Point(0, 0, 4)}};
    EXPECT_THAT(Contact(kFloor, other), Are({{0, 0, 0}, {4, 0, 0}}));
}

TEST(TriangleContact, GivesTheCornersOfACoplanarOverlap) {
    const Triangle shifted = {{Point(1, 1, 0), Point(5, 1, 0), Point(1, 5, 0)}};
    EXPECT_THAT(Contact(kFloor, shifted), Are({{1, 1, 0}, {3, 1, 0}, {1, 3, 0}}));
}

TEST(TriangleContact, GivesAHexagonForACoplanarStar) {
    const Triangle up = {{Point(0, 0, 0), Point(6, 0, 0), Point(3, 6, 0)}};
    const Triangle down = {{Point(0, 4, 0), Point(6, 4, 0), Point(3, -2, 0)}};
    EXPECT_THAT(Contact(up, down),
                Are({{1, 2, 0}, {2, 4, 0}, {4, 4, 0}, {5, 2, 0}, {4, 0, 0}, {2, 0, 0}}));
}

TEST(TriangleContact, GivesTheInnerTriangleWhenOneCoplanarTriangleHoldsTheOther) {
    const Triangle inner = {{Point(1, 1, 0), Point(2, 1, 0), Point(1, 2, 0)}};
    EXPECT_THAT(Contact(kFloor, inner), Are({{1, 1, 0}, {2, 1, 0}, {1, 2, 0}}));
    EXPECT_THAT(Contact(inner, kFloor), Are({{1, 1, 0}, {2, 1, 0}, {1, 2, 0}}));
}

TEST(TriangleContact, TreatsATriangleOfNoAreaAsTheSegmentThatItIs) {
    const Triangle pierces = {{Point(1, 1, -1), Point(1, 1, 3), Point(1, 1, 1)}};
    EXPECT_THAT(Contact(kFloor, pierces), Are({{1, 1, 0}}));
    const Triangle lies = {{Point(1, 1, 0), Point(9, 1, 0), Point(5, 1, 0)}};
    EXPECT_THAT(Contact(kFloor, lies), Are({{1, 1, 0}, {3, 1, 0}}));
    const Triangle misses = {{Point(3, 3, -1), Point(3, 3, 1), Point(3, 3, 0)}};
    EXPECT_FALSE(Touch(kFloor, misses));
}

TEST(TriangleContact, TreatsATriangleOfEqualVerticesAsThePointThatItIs) {
    const Point on(1, 1, 0);
    const Point off(1, 1, 1e-30F);
    EXPECT_THAT(Contact(kFloor, {{on, on, on}}), Are({{1, 1, 0}}));
    EXPECT_FALSE(Touch(kFloor, {{off, off, off}}));
    EXPECT_TRUE(Touch({{off, off, off}}, {{off, off, off}}));
    EXPECT_FALSE(Touch({{on, on, on}}, {{off, off, off}}));
}

TEST(TriangleContact, SeesTheSmallestGap) {
    const float gap = std::numeric_limits<float>::denorm_min();
    const Triangle over = {{Point(1, 1, gap), Point(2, 1, gap), Point(1, 2, 4)}};
    EXPECT_FALSE(Touch(kFloor, over));
}

TEST(TriangleContact, AcceptsCoordinatesWhoseDifferenceIsNoFloat) {
    const float big = std::numeric_limits<float>::max();
    const Triangle a = {{Point(-big, -big, 0), Point(big, -big, 0), Point(0, big, 0)}};
    const Triangle b = {{Point(0, -big, -big), Point(0, big, big), Point(0, -big, big)}};
    EXPECT_TRUE(Touch(a, b));
    const Triangle c = {{Point(0, -big, 1), Point(0, big, big), Point(0, -big, big)}};
    EXPECT_FALSE(Touch(a, c));
}

TEST(TriangleContact, KnowsWhichTrianglesAreFinite) {
    Triangle t = kFloor;
    EXPECT_TRUE(IsFinite(t));
    t.v[1].y = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(IsFinite(t));
    t.v[1].y = std::numeric_limits<float>::quiet_NaN();
    EXPECT_FALSE(IsFinite(t));
}

class HardPairs : public testing::TestWithParam<HardFamily> {};

TEST_P(HardPairs, AnswerIsThatOfRationalArithmeticInEveryOrder) {
    constexpr int kPairs = 600;
    Random random(17);
    int hits = 0;
    for (int i = 0; i < kPairs; ++i) {
        const TrianglePair pair = GetParam().make(random);
        const bool expected = TouchByRationals(pair.a, pair.b);
        hits += expected ? 1 : 0;
        for (int orders = 0; orders < 36; ++orders) {
            const Triangle a = Reordered(pair.a, orders % 6);
            const Triangle b = Reordered(pair.b, orders / 6);
            ASSERT_EQ(Touch(a, b), expected) << "pair " << i << " order " << orders;
            ASSERT_EQ(Touch(b, a), expected) << "pair " << i << " order " << orders << " swapped";
        }
    }
    EXPECT_GT(hits, kPairs / 50);
    EXPECT_LT(hits, kPairs - kPairs / 50);
}

TEST_P(HardPairs, ContactPointsLieInTheCommonBox) {
    Random random(23);
    int points = 0;
    for (int i = 0; i < 3000; ++i) {
        const TrianglePair pair = GetParam().make(random);
        for (const auto& [x, y, z] : Contact(pair.a, pair.b)) {
            ++points;
            for (const Triangle* t : {&pair.a, &pair.b}) {
                const auto& v = t->v;
                ASSERT_GE(x, std::min({v[0].x, v[1].x, v[2].x}));
                ASSERT_LE(x, std::max({v[0].x, v[1].x, v[2].x}));
                ASSERT_GE(y, std::min({v[0].y, v[1].y, v[2].y}));
                ASSERT_LE(y, std::max({v[0].y, v[1].y, v[2].y}));
                ASSERT_GE(z, std::min({v[0].z, v[1].z, v[2].z}));
                ASSERT_LE(z, std::max({v[0].z, v[1].z, v[2].z}));
            }
        }
    }
    EXPECT_GT(points, 50);
}

INSTANTIATE_TEST_SUITE_P(All, HardPairs, testing::ValuesIn(HardFamilies()),
                         [](const auto& family) { return family.param.name; });

using Vector = std::array<double, 3>;

Vector From(const Point& p, const Point& q) {
    return {static_cast<double>(q.x) - static_cast<double>(p.x),
            static_cast<double>(q.y) - static_cast<double>(p.y),
            static_cast<double>(q.z) - static_cast<double>(p.z)};
}

Vector Cross(const Vector& u, const Vector& v) {
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

double Dot(const Vector& u, const Vector& v) {
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
}

/// Whether `p` is within `distance` of the plane of `t` and of the inner side of each edge.
bool IsNear(const Triangle& t, const Point& p, double distance) {
    const Vector normal = Cross(From(t.v[0], t.v[1]), From(t.v[0], t.v[2]));
    if (std::fabs(Dot(normal, From(t.v[0], p))) > distance * std::sqrt(Dot(normal, normal)))
        return false;
    for (std::size_t i = 0; i < 3; ++i) {
        const Vector inward = Cross(normal, From(t.v[i], t.v[(i + 1) % 3]));
        if (Dot(inward, From(t.v[i], p)) < -distance * std::sqrt(Dot(inward, inward))) return false;
    }
    return true;
}

TEST(TriangleContact, PutsContactPointsOnBothTriangles) {
    // Coordinates are at most 1: some roundings to float.
    constexpr double kTolerance = 4e-7;
    Random random(5);
    int points = 0;
    for (int i = 0; i < 4000; ++i) {
        const auto point = [&] {
            return Point(static_cast<float>(random.In(-1, 1)), static_cast<float>(random.In(-1, 1)),
                         static_cast<float>(random.In(-1, 1)));
        };
        const Triangle a = {{point(), point(), point()}};
        const Triangle b = {{point(), point(), point()}};
        for (const auto& [x, y, z] : Contact(a, b)) {
            ASSERT_TRUE(IsNear(a, {x, y, z}, kTolerance)) << i;
            ASSERT_TRUE(IsNear(b, {x, y, z}, kTolerance)) << i;
            ++points;
        }
    }
    EXPECT_GT(points, 1000);
}

}  // namespace
}  // namespace kycb::opcode::test
