// SPDX-License-Identifier: Apache-2.0
// The collider against every triangle tested with every other.
#include <algorithm>
#include <cstdint>
#include <vector>

#include <gmock/gmock.h>

#include "opcode/TestMesh.h"
#include "scenes/RandomBodies.h"
#include "scenes/reference/Meshes.h"
#include "support/Random.h"

namespace kycb::scenes {
namespace {

using opcode::test::BuiltMesh;
using opcode::test::MeshData;
using opcode::test::Query;
using opcode::test::QueryResult;
using reference::Contact;
using reference::ContactOf;
using reference::TrianglePairs;
using test::Random;
using test::TestMesh;

TestMesh UsableMesh(Random& random) {
    while (true) {
        const auto mesh = RandomBody(random, {0.0, 0.0, 0.0})(0);
        if (mesh && reference::IsUsable(*mesh)) return *mesh;
    }
}

QueryResult Collided(const TestMesh& a, const TestMesh& b) {
    const BuiltMesh builtA(MeshData{a.vertices, a.triangles});
    const BuiltMesh builtB(MeshData{b.vertices, b.triangles});
    return Query(builtA, builtB);
}

TrianglePairs PairsOf(const QueryResult& result) {
    TrianglePairs pairs(result.pairs.begin(), result.pairs.end());
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

TrianglePairs PairsOf(const std::optional<Contact>& contact) {
    return contact ? contact->pairs : TrianglePairs{};
}

/// The pairs of the swapped question.
TrianglePairs Swapped(const TrianglePairs& pairs) {
    TrianglePairs swapped;
    for (const auto& [a, b] : pairs) {
        swapped.emplace_back(b, a);
    }
    std::sort(swapped.begin(), swapped.end());
    return swapped;
}

/// The same triangles in another order, each begun at another vertex and wound either way.
struct ShuffledMesh {
    TestMesh mesh;
    std::vector<std::size_t> formerIndex;
};

ShuffledMesh ShuffleTriangles(const TestMesh& mesh, Random& random) {
    ShuffledMesh shuffled;
    shuffled.mesh.vertices = mesh.vertices;
    for (std::size_t i = 0; i < mesh.triangles.size(); ++i) {
        shuffled.formerIndex.push_back(i);
    }
    random.Shuffle(shuffled.formerIndex);
    for (const std::size_t former : shuffled.formerIndex) {
        std::vector<std::uint32_t> refs(mesh.triangles[former].mVRef,
                                        mesh.triangles[former].mVRef + 3);
        random.Shuffle(refs);
        shuffled.mesh.triangles.emplace_back(refs[0], refs[1], refs[2]);
    }
    return shuffled;
}

TEST(RandomMeshes, TouchingTrianglesAreThoseOfTheReference) {
    int touching = 0;
    int apart = 0;
    for (std::uint64_t seed = 0; seed < 1500; ++seed) {
        Random random(seed);
        const TestMesh a = UsableMesh(random);
        const TestMesh b = UsableMesh(random);
        const auto expected = ContactOf(a, b);
        EXPECT_EQ(PairsOf(Collided(a, b)), PairsOf(expected)) << "seed " << seed;
        ++(expected ? touching : apart);
    }
    EXPECT_GT(touching, 100);
    EXPECT_GT(apart, 100);
}

TEST(RandomMeshes, SwappedMeshesHaveTheSamePairs) {
    for (std::uint64_t seed = 0; seed < 500; ++seed) {
        Random random(seed);
        const TestMesh a = UsableMesh(random);
        const TestMesh b = UsableMesh(random);
        EXPECT_EQ(PairsOf(Collided(b, a)), Swapped(PairsOf(Collided(a, b)))) << "seed " << seed;
    }
}

TEST(RandomMeshes, OrderOfTrianglesAndVerticesPlaysNoPart) {
    for (std::uint64_t seed = 0; seed < 500; ++seed) {
        Random random(seed);
        const TestMesh a = UsableMesh(random);
        const TestMesh b = UsableMesh(random);
        const ShuffledMesh shuffled = ShuffleTriangles(a, random);
        TrianglePairs found;
        for (const auto& [shuffledIndex, other] : PairsOf(Collided(shuffled.mesh, b))) {
            found.emplace_back(shuffled.formerIndex[shuffledIndex], other);
        }
        std::sort(found.begin(), found.end());
        EXPECT_EQ(found, PairsOf(Collided(a, b))) << "seed " << seed;
    }
}

// What the reference must itself get right, by hand.

TestMesh OneTriangle(const IceMaths::Point& a, const IceMaths::Point& b, const IceMaths::Point& c) {
    TestMesh mesh;
    mesh.vertices = {a, b, c};
    mesh.triangles = {{0, 1, 2}};
    return mesh;
}

TEST(ReferenceMeshes, CrossingTrianglesShareASegment) {
    const TestMesh flat = OneTriangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
    const TestMesh upright = OneTriangle({1, 1, -2}, {1, 1, 2}, {1, 9, 0});
    const auto contact = ContactOf(flat, upright);
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->low, Point(1, 1, 0));
    EXPECT_EQ(contact->high, Point(1, 3, 0));
}

TEST(ReferenceMeshes, TrianglesInOnePlaneShareAnArea) {
    const TestMesh a = OneTriangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
    const TestMesh b = OneTriangle({1, 1, 0}, {9, 1, 0}, {1, 9, 0});
    const auto contact = ContactOf(a, b);
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->low, Point(1, 1, 0));
    EXPECT_EQ(contact->high, Point(3, 3, 0));
}

TEST(ReferenceMeshes, OneCommonPointIsContact) {
    const TestMesh a = OneTriangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
    const TestMesh b = OneTriangle({2, 2, 0}, {5, 5, 3}, {5, 5, -3});
    const auto contact = ContactOf(a, b);
    ASSERT_TRUE(contact);
    EXPECT_EQ(contact->low, Point(2, 2, 0));
    EXPECT_EQ(contact->high, Point(2, 2, 0));
}

TEST(ReferenceMeshes, OneGridStepApartIsNoContact) {
    const TestMesh a = OneTriangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0});
    const TestMesh b = OneTriangle({2, 2.015625F, 0}, {5, 5, 3}, {5, 5, -3});
    EXPECT_FALSE(ContactOf(a, b));
}

TEST(ReferenceMeshes, TriangleOfNoAreaIsItsSegment) {
    const TestMesh segment = OneTriangle({0, 0, 0}, {4, 4, 0}, {2, 2, 0});
    const TestMesh touching = OneTriangle({3, 3, 0}, {3, 3, 5}, {9, 9, 5});
    const TestMesh beside = OneTriangle({3, 4, 0}, {3, 4, 5}, {9, 9, 5});
    ASSERT_TRUE(ContactOf(segment, touching));
    EXPECT_EQ(ContactOf(segment, touching)->high, Point(3, 3, 0));
    EXPECT_FALSE(ContactOf(segment, beside));
}

}  // namespace
}  // namespace kycb::scenes
