// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include <gmock/gmock.h>

#include "BodyShapes.h"
#include "ifchost/BodyRepair.h"

namespace ifchost {
namespace {

using shapes::Box;

TEST(BodyRepair, WeldsABoxOfLooseTriangles) {
    const RepairedBody body = RepairBody(Box({0, 0, 0}, {10, 20, 30}));
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_EQ(body.solids[0].positions.size(), 8U);
    EXPECT_EQ(body.solids[0].triangles.size(), 12U);
    EXPECT_EQ(body.report.weldedVertices, 16U);
    EXPECT_EQ(body.report.shells, 1U);
    EXPECT_TRUE(body.open.IsEmpty());
    EXPECT_DOUBLE_EQ(SignedVolume(body.solids[0]), 6000.0);
}

TEST(BodyRepair, WeldsWithinTheToleranceOnly) {
    BodyMesh mesh;
    shapes::AddTriangle(mesh, {0, 0, 0}, {10, 0, 0}, {0, 10, 0});
    shapes::AddTriangle(mesh, {0.009, 0, 0}, {0, -10, 0}, {10, 0.011, 0});
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.report.weldedVertices, 1U);
}

TEST(BodyRepair, TurnsAnInvertedBoxOutward) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    TurnOver(mesh);
    const RepairedBody body = RepairBody(mesh);
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_DOUBLE_EQ(SignedVolume(body.solids[0]), 1000.0);
    EXPECT_EQ(body.report.turnedShells, 1U);
}

TEST(BodyRepair, GivesTrianglesOfMixedSenseOneSense) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    for (std::size_t t = 0; t < mesh.triangles.size(); t += 3) {
        std::swap(mesh.triangles[t][0], mesh.triangles[t][1]);
    }
    const RepairedBody body = RepairBody(mesh);
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_DOUBLE_EQ(SignedVolume(body.solids[0]), 1000.0);
}

TEST(BodyRepair, DropsDuplicateAndZeroAreaAndInvalidTriangles) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    mesh.triangles.push_back(mesh.triangles[0]);
    mesh.triangles.push_back({0, 0, 1});
    mesh.triangles.push_back({0, 1, 4000000000U});
    const double nan = std::numeric_limits<double>::quiet_NaN();
    shapes::AddTriangle(mesh, {0, 0, 0}, {1, 0, nan}, {0, 1, 0});
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.report.duplicateTriangles, 1U);
    EXPECT_EQ(body.report.zeroAreaTriangles, 1U);
    EXPECT_EQ(body.report.invalidTriangles, 2U);
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_EQ(body.solids[0].triangles.size(), 12U);
}

TEST(BodyRepair, DropsTheWallBetweenTwoTouchingBoxes) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    BodyMesh other = Transformed(Box({-20, 0, 0}, {-10, 10, 10}),
                                 {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    Append(mesh, other);
    const RepairedBody body = RepairBody(mesh);
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_DOUBLE_EQ(SignedVolume(body.solids[0]), 2000.0);
    EXPECT_EQ(body.report.duplicateTriangles, 4U);
}

TEST(BodyRepair, KeepsOneSheetOfATwoSidedSurface) {
    BodyMesh mesh;
    shapes::AddTriangle(mesh, {0, 0, 0}, {10, 0, 0}, {0, 10, 0});
    shapes::AddTriangle(mesh, {0, 0, 0}, {0, 10, 0}, {10, 0, 0});
    const RepairedBody body = RepairBody(mesh);
    EXPECT_TRUE(body.solids.empty());
    EXPECT_EQ(body.open.triangles.size(), 1U);
    EXPECT_EQ(body.report.openEdges, 3U);
}

TEST(BodyRepair, ReportsABoxWithoutLidAsOpen) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    mesh.triangles.resize(10);
    const RepairedBody body = RepairBody(mesh);
    EXPECT_TRUE(body.solids.empty());
    EXPECT_EQ(body.report.openShells, 1U);
    EXPECT_EQ(body.report.openEdges, 4U);
    EXPECT_EQ(body.report.nonManifoldEdges, 0U);
    EXPECT_EQ(body.open.triangles.size(), 10U);
}

TEST(BodyRepair, ReportsThreeSheetsOnOneEdgeAsNonManifold) {
    BodyMesh mesh;
    shapes::AddTriangle(mesh, {0, 0, 0}, {10, 0, 0}, {5, 10, 0});
    shapes::AddTriangle(mesh, {0, 0, 0}, {10, 0, 0}, {5, -10, 0});
    shapes::AddTriangle(mesh, {0, 0, 0}, {10, 0, 0}, {5, 0, 10});
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.report.openShells, 1U);
    EXPECT_EQ(body.report.openEdges, 6U);
    EXPECT_EQ(body.report.nonManifoldEdges, 1U);
}

TEST(BodyRepair, KeepsABoxClosedThatCarriesAFin) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    shapes::AddTriangle(mesh, {0, 0, 10}, {10, 0, 10}, {5, -5, 20});
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.report.openShells, 1U);
    EXPECT_EQ(body.report.openEdges, 3U);
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_DOUBLE_EQ(SignedVolume(body.solids[0]), 1000.0);
}

TEST(BodyRepair, SplitsEdgesAtVerticesThatLieOnThem) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    // The two triangles of one side again, but the lower edge in three pieces.
    mesh.triangles.erase(mesh.triangles.begin() + 4, mesh.triangles.begin() + 6);
    const Vec3 a{0, 0, 10};
    shapes::AddTriangle(mesh, a, {0, 0, 0}, {3, 0, 0});
    shapes::AddTriangle(mesh, a, {3, 0, 0}, {7, 0, 0});
    shapes::AddTriangle(mesh, a, {7, 0, 0}, {10, 0, 0});
    shapes::AddTriangle(mesh, a, {10, 0, 0}, {10, 0, 10});
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.report.splitEdges, 2U);
    EXPECT_EQ(body.report.openShells, 0U);
    ASSERT_EQ(body.solids.size(), 1U);
    EXPECT_NEAR(SignedVolume(body.solids[0]), 1000.0, 1e-9);
}

TEST(BodyRepair, MakesACavityOfAnInnerShellOfOppositeSense) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    BodyMesh hollow = Box({2, 2, 2}, {4, 4, 4});
    TurnOver(hollow);
    Append(mesh, hollow);
    for (const bool inverted : {false, true}) {
        if (inverted) TurnOver(mesh);
        const RepairedBody body = RepairBody(mesh);
        ASSERT_EQ(body.solids.size(), 1U);
        EXPECT_EQ(body.report.cavities, 1U);
        EXPECT_NEAR(SignedVolume(body.solids[0]), 992.0, 1e-9);
    }
}

TEST(BodyRepair, MakesASolidOfAnInnerShellOfTheSameSense) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    Append(mesh, Box({2, 2, 2}, {4, 4, 4}));
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.solids.size(), 2U);
    EXPECT_EQ(body.report.cavities, 0U);
}

TEST(BodyRepair, KeepsTwoBoxesThatTouchAlongAnEdgeApart) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    Append(mesh, Box({10, 10, 0}, {20, 20, 10}));
    const RepairedBody body = RepairBody(mesh);
    EXPECT_EQ(body.solids.size(), 2U);
    EXPECT_EQ(body.report.openShells, 0U);
}

TEST(BodyRepair, TurnsEachOfTwoSeparateShellsOutward) {
    BodyMesh mesh = Box({0, 0, 0}, {10, 10, 10});
    BodyMesh other = Box({30, 0, 0}, {40, 10, 10});
    TurnOver(other);
    Append(mesh, other);
    const RepairedBody body = RepairBody(mesh);
    ASSERT_EQ(body.solids.size(), 2U);
    EXPECT_NEAR(SignedVolume(body.solids[0]), 1000.0, 1e-9);
    EXPECT_NEAR(SignedVolume(body.solids[1]), 1000.0, 1e-9);
}

TEST(BodyRepair, TakesAnEmptyMesh) {
    const RepairedBody body = RepairBody({});
    EXPECT_TRUE(body.solids.empty());
    EXPECT_EQ(body.report.shells, 0U);
}

}  // namespace
}  // namespace ifchost
