// SPDX-License-Identifier: Apache-2.0
// Meshes of which every triangle of the one touches every triangle of the other: nobody can list
// all pairs, so a query must end with what it is asked for.
#include <gtest/gtest.h>

#include "opcode/TestMesh.h"

namespace kycb::opcode::test {
namespace {

// A hundred times slower under the sanitizers.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kBlades = 2000;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr int kBlades = 2000;
#else
constexpr int kBlades = 100000;
#endif
#else
constexpr int kBlades = 100000;
#endif

// A sixteenth: sums of it are exact.
constexpr float kStep = 0.0625F;
constexpr float kEnd = kStep * static_cast<float>(kBlades - 1);

/// Upright blades of two triangles, one for each step, each as long as the other mesh is wide.
MeshData Blades(bool alongX) {
    MeshData mesh;
    for (int i = 0; i < kBlades; ++i) {
        const float at = kStep * static_cast<float>(i);
        const auto corner = [&](float along, float z) {
            return alongX ? Point(along, at, z) : Point(at, along, z);
        };
        const Point low = corner(-1, -1);
        const Point high = corner(kEnd + 1, 1);
        mesh.AddTriangle(low, corner(kEnd + 1, -1), high);
        mesh.AddTriangle(low, high, corner(-1, 1));
    }
    return mesh;
}

class WorstCase : public testing::Test {
  protected:
    const BuiltMesh a{Blades(true)};
    const BuiltMesh b{Blades(false)};
    Opcode::AABBTreeCollider collider;
    Opcode::BVTCache cache;

    void SetUp() override {
        cache.Model0 = &a.Model();
        cache.Model1 = &b.Model();
    }
};

TEST_F(WorstCase, EndsWithAsManyPairsAsAreAskedFor) {
    constexpr std::uint32_t kAsked = 30000;
    collider.SetMaxNbPairs(kAsked);
    ASSERT_TRUE(collider.Collide(cache));
    EXPECT_EQ(collider.GetNbPairs(), kAsked);
}

TEST_F(WorstCase, FindsTheRegionFromFewPairs) {
    collider.SetContactRegion(Opcode::ContactRegion::kOnly);
    ASSERT_TRUE(collider.Collide(cache));
    Point low;
    Point high;
    ASSERT_TRUE(collider.GetContactRegion(low, high));
    EXPECT_EQ(low.x, 0);
    EXPECT_EQ(low.y, 0);
    EXPECT_EQ(low.z, -1);
    EXPECT_EQ(high.x, kEnd);
    EXPECT_EQ(high.y, kEnd);
    EXPECT_EQ(high.z, 1);
    // Each visited pair of leaves, of 64 pairs of triangles at most, holds a row or column that
    // the region did not reach yet, and there are half as many of these as blades.
    EXPECT_LE(collider.GetNbPairs(), 64U * static_cast<std::uint32_t>(kBlades));
}

}  // namespace
}  // namespace kycb::opcode::test
