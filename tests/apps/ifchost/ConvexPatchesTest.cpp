// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

#include "BodyShapes.h"
#include "ifchost/BodyRepair.h"
#include "ifchost/ConvexPatches.h"

namespace ifchost {
namespace {

// The one solid of a body, welded, and its patches.
struct Patched {
    explicit Patched(const BodyMesh& body)
        : solid(RepairBody(body).solids.at(0)), surface(solid), patches(ConvexPatches(surface)) {}

    std::vector<std::size_t> Sizes() const {
        std::vector<std::size_t> sizes;
        for (const HalfEdgeRing& ring : patches)
            sizes.push_back(ring.size());
        std::sort(sizes.begin(), sizes.end());
        return sizes;
    }

    // Area of a ring along the normal of its face.
    double AreaOf(const HalfEdgeRing& ring) const {
        Vec3 sum;
        for (const std::uint32_t h : ring) {
            sum = sum +
                  Cross(solid.positions[EdgeStart(solid, h)], solid.positions[EdgeEnd(solid, h)]);
        }
        return Dot(sum, surface.PlaneOfTriangle(ring[0] / 3).normal) / 2.0;
    }

    void ExpectClosedConvexRings() const {
        for (const HalfEdgeRing& ring : patches) {
            for (std::size_t i = 0; i < ring.size(); ++i) {
                const std::uint32_t h = ring[i];
                const std::uint32_t after = ring[(i + 1) % ring.size()];
                EXPECT_EQ(EdgeEnd(solid, h), EdgeStart(solid, after));
                EXPECT_EQ(surface.FaceOf(h / 3), surface.FaceOf(after / 3));
                const Vec3 turn = Cross(surface.Direction(h), surface.Direction(after));
                EXPECT_GT(Dot(turn, surface.PlaneOfTriangle(h / 3).normal), -1e-7);
            }
        }
    }

    double Area() const {
        return std::accumulate(
            patches.begin(), patches.end(), 0.0,
            [this](double sum, const HalfEdgeRing& ring) { return sum + AreaOf(ring); });
    }

    BodyMesh solid;
    SolidSurface surface;
    std::vector<HalfEdgeRing> patches;
};

using Sizes = std::vector<std::size_t>;

TEST(ConvexPatches, OfABoxAreItsSixSides) {
    const Patched box(shapes::Box({0, 0, 0}, {3, 2, 1}));
    EXPECT_EQ(box.Sizes(), Sizes(6, 4));
    EXPECT_DOUBLE_EQ(box.Area(), 2.0 * (6 + 3 + 2));
}

TEST(ConvexPatches, OfACylinderAreItsFacetsAndTwoWholeEnds) {
    const Patched cylinder(shapes::Prism(shapes::RegularRing(24, 100.0), 0, 50));
    Sizes expected(24, 4);
    expected.insert(expected.end(), {24, 24});
    EXPECT_EQ(cylinder.Sizes(), expected);
}

TEST(ConvexPatches, OfAHollowFaceAreSeveralThatCoverIt) {
    // An L whose end faces are fans from the corner that lies opposite to the hollow one.
    const Patched l(
        shapes::Prism({{0, 0}, {200, 0}, {200, 30}, {20, 30}, {20, 200}, {0, 200}}, 0, 10));
    l.ExpectClosedConvexRings();
    EXPECT_EQ(l.patches.size(), 6U + 2U * 2U) << "six sides, and two parts of each end";
    const double end = 200.0 * 30 + 20.0 * 170;
    const double around = 200.0 + 30 + 180 + 170 + 20 + 200;
    EXPECT_NEAR(l.Area(), 2 * end + 10 * around, 1e-6);
}

TEST(ConvexPatches, CoverTheSurfaceOfEveryShape) {
    for (const BodyMesh& body :
         {shapes::Tube(16, 50, 40, 0, 100), shapes::Elbow(12, 6, 50, 100),
          shapes::Cells({0, 10, 20, 30}, {0, 10, 20, 30}, {0, 10, 20, 30},
                        [](int i, int j, int k) { return (i + j + k) % 2 == 0 || j == 1; })}) {
        const Patched patched(body);
        patched.ExpectClosedConvexRings();
        EXPECT_NEAR(patched.Area(), shapes::SurfaceArea(patched.solid),
                    shapes::SurfaceArea(patched.solid) * 1e-6);
        EXPECT_LT(patched.patches.size(), patched.solid.triangles.size() * 2 / 3);
    }
}

}  // namespace
}  // namespace ifchost
