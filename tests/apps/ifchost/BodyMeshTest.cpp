// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>

#include "BodyShapes.h"
#include "ifchost/BodyMesh.h"

namespace ifchost {
namespace {

using shapes::Box;

TEST(BodyMesh, MeasuresABox) {
    const BodyMesh mesh = Box({1, 2, 3}, {3, 5, 7});
    EXPECT_DOUBLE_EQ(SignedVolume(mesh), 24.0);
    EXPECT_EQ(BoundingBox(mesh).min, (Vec3{1, 2, 3}));
    EXPECT_EQ(BoundingBox(mesh).max, (Vec3{3, 5, 7}));
}

TEST(BodyMesh, HasAnEmptyBoxWithoutTriangles) {
    BodyMesh mesh;
    mesh.positions.push_back({1, 1, 1});
    EXPECT_TRUE(BoundingBox(mesh).IsEmpty());
    EXPECT_EQ(SignedVolume(mesh), 0.0);
}

TEST(BodyMesh, KeepsTheVolumeFarFromTheOrigin) {
    const BodyMesh mesh = Box({1e9, 1e9, 1e9}, {1e9 + 10, 1e9 + 10, 1e9 + 10});
    EXPECT_NEAR(SignedVolume(mesh), 1000.0, 1e-6);
}

TEST(BodyMesh, FacesInwardAfterTurningOver) {
    BodyMesh mesh = Box({0, 0, 0}, {1, 1, 1});
    TurnOver(mesh);
    EXPECT_DOUBLE_EQ(SignedVolume(mesh), -1.0);
}

TEST(BodyMesh, StaysOutwardUnderAMirroringTransform) {
    const BodyMesh mesh =
        Transformed(Box({0, 0, 0}, {1, 2, 3}), {-2, 0, 0, 10, 0, 1, 0, 0, 0, 0, 1, 5, 0, 0, 0, 1});
    EXPECT_DOUBLE_EQ(SignedVolume(mesh), 12.0);
    EXPECT_EQ(BoundingBox(mesh).min, (Vec3{8, 0, 5}));
    EXPECT_EQ(BoundingBox(mesh).max, (Vec3{10, 2, 8}));
}

TEST(BodyMesh, ExportsFloatsRelativeToTheOriginGiven) {
    BodyMesh mesh;
    mesh.positions.push_back({7, 7, 7});
    shapes::AddTriangle(mesh, {1e9 + 0.25, 1, 2}, {1e9 + 1, 1, 2}, {1e9, 3, 4});
    const OpcodeArrays arrays = ToOpcodeArrays(mesh, {1e9, 1, 2});
    EXPECT_EQ(arrays.VertexCount(), 3U);
    EXPECT_EQ(arrays.TriangleCount(), 1U);
    EXPECT_THAT(arrays.positions, testing::ElementsAre(0.25F, 0, 0, 1, 0, 0, 0, 2, 2));
    EXPECT_THAT(arrays.indices, testing::ElementsAre(0, 1, 2));
}

}  // namespace
}  // namespace ifchost
