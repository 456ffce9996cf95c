// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/AABBTreeCollider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "opcode/TestMesh.h"

namespace kycb::opcode::test {
namespace {

MeshData OneTriangle(const Point& a, const Point& b, const Point& c) {
    MeshData mesh;
    mesh.AddTriangle(a, b, c);
    return mesh;
}

TEST(AABBTreeCollider, FailsWithoutBothTrees) {
    const BuiltMesh box(MakeBox({0, 0, 0}, {1, 1, 1}));
    const BuiltMesh empty(MeshData{});
    Opcode::AABBTreeCollider collider;
    Opcode::BVTCache cache;
    EXPECT_FALSE(collider.Collide(cache));
    cache.Model0 = &box.Model();
    EXPECT_FALSE(collider.Collide(cache));
    EXPECT_FALSE(Query(collider, box, empty).done);
    EXPECT_FALSE(Query(collider, empty, box).done);
    EXPECT_FALSE(collider.GetContactStatus());
}

TEST(AABBTreeCollider, ForgetsThePairsOfTheQueryBefore) {
    const BuiltMesh box(MakeBox({0, 0, 0}, {1, 1, 1}));
    const BuiltMesh far(MakeBox({5, 5, 5}, {6, 6, 6}));
    Opcode::AABBTreeCollider collider;
    EXPECT_FALSE(Query(collider, box, box).pairs.empty());
    EXPECT_TRUE(collider.GetContactStatus());
    EXPECT_TRUE(Query(collider, box, far).done);
    EXPECT_FALSE(collider.GetContactStatus());
    EXPECT_EQ(collider.GetNbPairs(), 0U);
    EXPECT_EQ(collider.GetPairs(), nullptr);
}

TEST(AABBTreeCollider, DeliversBothEndsOfTheCommonSegment) {
    const BuiltMesh a(OneTriangle({0, 0, 0}, {4, 0, 0}, {0, 4, 0}));
    const BuiltMesh b(OneTriangle({1, 1, -1}, {1, 1, 1}, {9, 1, -1}));
    const QueryResult result = Query(a, b);
    ASSERT_THAT(result.pairs, testing::ElementsAre(std::pair(0U, 0U)));
    ASSERT_EQ(result.points.size(), 2U);
    std::vector<float> xs = {result.points[0].x, result.points[1].x};
    EXPECT_THAT(xs, testing::UnorderedElementsAre(1.0F, 3.0F));
    for (const Point& p : result.points) {
        EXPECT_EQ(p.y, 1.0F);
        EXPECT_EQ(p.z, 0.0F);
    }
}

TEST(AABBTreeCollider, StopsAtTheFirstPairWhenOnlyThatIsAskedFor) {
    const BuiltMesh box(MakeBox({0, 0, 0}, {1, 1, 1}));
    Opcode::AABBTreeCollider collider;
    EXPECT_GT(Query(collider, box, box).pairs.size(), 12U);
    collider.SetFirstContact(true);
    EXPECT_EQ(Query(collider, box, box).pairs.size(), 1U);
}

TEST(AABBTreeCollider, StopsAtTheLargestNumberOfPairsAskedFor) {
    const BuiltMesh box(MakeBox({0, 0, 0}, {1, 1, 1}));
    Opcode::AABBTreeCollider collider;
    const PairList all = Query(collider, box, box).pairs;
    collider.SetMaxNbPairs(7);
    const PairList some = Query(collider, box, box).pairs;
    EXPECT_EQ(some, PairList(all.begin(), all.begin() + 7));
}

TEST(AABBTreeCollider, GivesTheSameAnswerWhateverTestsAreAskedFor) {
    const BuiltMesh a(MakeBox({0, 0, 0}, {1, 1, 1}));
    const BuiltMesh b(MakeBox({0.5F, 0.5F, 0.5F}, {2, 2, 2}));
    Opcode::AABBTreeCollider collider;
    const PairList full = Query(collider, a, b).pairs;
    collider.SetFullBoxBoxTest(false);
    collider.SetFullPrimBoxTest(false);
    collider.SetTemporalCoherence(true);
    EXPECT_EQ(Query(collider, a, b).pairs, full);
}

TEST(AABBTreeCollider, DoesNotTouchABodyWhollyInsideAnother) {
    const BuiltMesh outer(MakeBox({0, 0, 0}, {10, 10, 10}));
    const BuiltMesh inner(MakeBox({4, 4, 4}, {5, 5, 5}));
    const QueryResult result = Query(outer, inner);
    EXPECT_TRUE(result.done);
    EXPECT_TRUE(result.pairs.empty());
}

}  // namespace
}  // namespace kycb::opcode::test
