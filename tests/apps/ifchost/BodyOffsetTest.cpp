// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <numbers>

#include <gmock/gmock.h>

#include "BodyShapes.h"
#include "ifchost/BodyOffset.h"
#include "ifchost/InsideQuery.h"

namespace ifchost {
namespace {

using shapes::Box;

constexpr double kRounding = 1e-6;

void ExpectBox(const BodyMesh& mesh, const Vec3& lo, const Vec3& hi) {
    const BodyBox box = BoundingBox(mesh);
    EXPECT_LT(Length(box.min - lo), kRounding);
    EXPECT_LT(Length(box.max - hi), kRounding);
}

bool HasVertex(const BodyMesh& mesh, const Vec3& expected) {
    return std::any_of(mesh.positions.begin(), mesh.positions.end(),
                       [&](const Vec3& p) { return Length(p - expected) < 1e-4; });
}

/// Corners and middles of all triangles of the body, which have to lie in the grown one.
void ExpectSurfaceInside(const BodyMesh& body, const BodyMesh& grown) {
    const InsideQuery query(grown);
    for (std::size_t t = 0; t < body.triangles.size(); ++t) {
        Vec3 middle;
        for (std::size_t k = 0; k < 3; ++k) {
            middle = middle + body.Corner(t, k) * (1.0 / 3.0);
            ASSERT_TRUE(query.Contains(body.Corner(t, k)));
        }
        ASSERT_TRUE(query.Contains(middle));
    }
}

void ExpectVerticesInside(const BodyMesh& shrunk, const BodyMesh& body) {
    const InsideQuery query(body);
    for (const Vec3& p : shrunk.positions)
        ASSERT_TRUE(query.Contains(p));
}

/// Profile in the x-z plane, 100 deep along y.
BodyMesh LShape(double flange, double web) {
    return shapes::Cells({0, web, 200}, {0, 100}, {0, flange, 200},
                         [](int i, int, int k) { return i == 0 || k == 0; });
}

BodyMesh WallWithOpening(double width, double height) {
    return shapes::Cells({0, 1000, 1000 + width, 3000}, {0, 240}, {0, 800, 800 + height, 2500},
                         [](int i, int, int k) { return !(i == 1 && k == 1); });
}

TEST(BodyOffset, GrowsABoxToExactlyTheBiggerBox) {
    for (const double offset : {25.0, 75.0, 200.0}) {
        const OffsetResult result = OffsetBody(Box({0, 0, 0}, {1000, 300, 50}), offset);
        EXPECT_EQ(result.outcome, OffsetOutcome::Offset);
        EXPECT_EQ(result.movedSolids, 1U);
        EXPECT_EQ(result.mesh.triangles.size(), 12U);
        const Vec3 by{offset, offset, offset};
        ExpectBox(result.mesh, -by, Vec3{1000, 300, 50} + by);
        const double volume = (1000 + 2 * offset) * (300 + 2 * offset) * (50 + 2 * offset);
        EXPECT_NEAR(SignedVolume(result.mesh), volume, volume * 1e-12);
    }
}

TEST(BodyOffset, ShrinksABoxToExactlyTheSmallerBox) {
    const OffsetResult result = OffsetBody(Box({0, 0, 0}, {1000, 300, 50}), -2.0);
    EXPECT_EQ(result.mesh.positions.size(), 8U);
    ExpectBox(result.mesh, {2, 2, 2}, {998, 298, 48});
    EXPECT_NEAR(SignedVolume(result.mesh), 996.0 * 296.0 * 46.0, 1e-3);
}

TEST(BodyOffset, VanishesAtHalfTheSmallestSizeAndBeyond) {
    for (const double offset : {-25.0, -25.1, -100.0, -1e6}) {
        const OffsetResult result = OffsetBody(Box({0, 0, 0}, {1000, 300, 50}), offset);
        EXPECT_EQ(result.outcome, OffsetOutcome::Vanished);
        EXPECT_TRUE(result.mesh.IsEmpty());
        EXPECT_EQ(result.vanishedSolids, 1U);
    }
}

TEST(BodyOffset, KeepsABoxJustShortOfHalfTheSmallestSize) {
    const OffsetResult result = OffsetBody(Box({0, 0, 0}, {1000, 300, 50}), -24.9);
    ExpectBox(result.mesh, {24.9, 24.9, 24.9}, {975.1, 275.1, 25.1});
}

TEST(BodyOffset, KeepsThePlainBodyForNoOffset) {
    const OffsetResult result = OffsetBody(Box({0, 0, 0}, {1, 2, 3}), 0.0);
    EXPECT_EQ(result.outcome, OffsetOutcome::Offset);
    ExpectBox(result.mesh, {0, 0, 0}, {1, 2, 3});
}

TEST(BodyOffset, KeepsItsDigitsFarFromTheOrigin) {
    const double far = 4e9;
    const OffsetResult result = OffsetBody(Box({far, far, 0}, {far + 100, far + 100, 100}), -2.0);
    ExpectBox(result.mesh, {far + 2, far + 2, 2}, {far + 98, far + 98, 98});
}

TEST(BodyOffset, MovesTheCornersOfATriangularPrismAlongTheirMitres) {
    // Equilateral: the corners are twice the offset farther from the middle.
    const auto ring = shapes::RegularRing(3, 300);
    for (const double offset : {-2.0, 50.0}) {
        const OffsetResult result = OffsetBody(shapes::Prism(ring, 0, 100), offset);
        EXPECT_EQ(result.movedSolids, 1U);
        for (const auto& [x, y] : shapes::RegularRing(3, 300 + 2 * offset)) {
            EXPECT_TRUE(HasVertex(result.mesh, {x, y, -offset}));
            EXPECT_TRUE(HasVertex(result.mesh, {x, y, 100 + offset}));
        }
    }
}

TEST(BodyOffset, MovesTheCornersOfAHexagonalPrismAlongTheirMitres) {
    const auto ring = shapes::RegularRing(6, 100);
    const OffsetResult result = OffsetBody(shapes::Prism(ring, 0, 500), 30.0);
    EXPECT_EQ(result.mesh.positions.size(), 12U);
    const double radius = 100 + 30 / std::cos(std::numbers::pi / 6);
    for (const auto& [x, y] : shapes::RegularRing(6, radius)) {
        EXPECT_TRUE(HasVertex(result.mesh, {x, y, -30}));
        EXPECT_TRUE(HasVertex(result.mesh, {x, y, 530}));
    }
}

TEST(BodyOffset, MovesEachFacetOfACylinderByTheOffset) {
    const double half = std::numbers::pi / 24;
    for (const double offset : {-2.0, 50.0, 200.0}) {
        const auto ring = shapes::RegularRing(24, 150);
        const OffsetResult result = OffsetBody(shapes::Prism(ring, 0, 1000), offset);
        EXPECT_EQ(result.movedSolids, 1U);
        EXPECT_EQ(result.mesh.positions.size(), 48U);
        const double apothem = 150 * std::cos(half) + offset;
        for (const Vec3& p : result.mesh.positions) {
            EXPECT_NEAR(std::hypot(p.x, p.y), apothem / std::cos(half), kRounding);
        }
    }
}

TEST(BodyOffset, BevelsMitresBeyondTheLimit) {
    // A wedge of 10 degrees: the mitre would be 11.5 offsets long.
    const double tip = std::tan(std::numbers::pi / 36);
    const BodyMesh wedge = shapes::Prism({{0, 0}, {1000, -1000 * tip}, {1000, 1000 * tip}}, 0, 100);
    const OffsetResult result = OffsetBody(wedge, 50.0);
    EXPECT_EQ(result.rebuiltSolids, 1U);
    EXPECT_NEAR(BoundingBox(result.mesh).min.x, -50.0, 1e-3);
    ExpectSurfaceInside(wedge, result.mesh);
}

TEST(BodyOffset, MovesTheInnerCornerOfAnLShape) {
    const OffsetResult grown = OffsetBody(LShape(50, 50), 25.0);
    EXPECT_EQ(grown.movedSolids, 1U);
    ExpectBox(grown.mesh, {-25, -25, -25}, {225, 125, 225});
    EXPECT_TRUE(HasVertex(grown.mesh, {75, -25, 75}));
    EXPECT_NEAR(SignedVolume(grown.mesh), (250.0 * 250 - 150.0 * 150) * 150, 1e-3);
    const OffsetResult shrunk = OffsetBody(LShape(50, 50), -2.0);
    EXPECT_TRUE(HasVertex(shrunk.mesh, {48, 2, 48}));
    EXPECT_NEAR(SignedVolume(shrunk.mesh), (196.0 * 196 - 150.0 * 150) * 96, 1e-3);
}

TEST(BodyOffset, LosesTheThinFlangeOfAnLShapeOnly) {
    // The flange of 10 goes at 5; what is left is the web, and where the web stands on the flange.
    const OffsetResult result = OffsetBody(LShape(10, 60), -6.0);
    EXPECT_EQ(result.rebuiltSolids, 1U);
    ExpectBox(result.mesh, {6, 6, 6}, {54, 94, 194});
    EXPECT_NEAR(SignedVolume(result.mesh), 48.0 * 88 * 188, 1e-3);
    ExpectVerticesInside(result.mesh, LShape(10, 60));
}

TEST(BodyOffset, LosesTheThinWebOfATShapeOnly) {
    const BodyMesh tee = shapes::Cells({0, 95, 105, 200}, {0, 300}, {0, 150, 200},
                                       [](int i, int, int k) { return i == 1 || k == 1; });
    const OffsetResult result = OffsetBody(tee, -8.0);
    ExpectBox(result.mesh, {8, 8, 158}, {192, 292, 192});
    EXPECT_NEAR(SignedVolume(result.mesh), 184.0 * 284 * 34, 1e-3);
    EXPECT_EQ(OffsetBody(tee, -2.0).movedSolids, 1U);
}

TEST(BodyOffset, NarrowsAnOpeningThatStaysOpen) {
    const OffsetResult result = OffsetBody(WallWithOpening(400, 600), 75.0);
    EXPECT_EQ(result.movedSolids, 1U);
    const double volume = (3150.0 * 2650 - 250.0 * 450) * 390;
    EXPECT_NEAR(SignedVolume(result.mesh), volume, 1.0);
    EXPECT_TRUE(HasVertex(result.mesh, {1075, -75, 875}));
}

TEST(BodyOffset, ClosesAnOpeningSmallerThanTwiceTheOffset) {
    for (const double height : {100.0, 600.0}) {
        const OffsetResult result = OffsetBody(WallWithOpening(100, height), 75.0);
        EXPECT_EQ(result.rebuiltSolids, 1U);
        ExpectBox(result.mesh, {-75, -75, -75}, {3075, 315, 2575});
        EXPECT_NEAR(SignedVolume(result.mesh), 3150.0 * 390 * 2650, 10.0);
        // Nothing of the reveals is left inside.
        EXPECT_NEAR(shapes::SurfaceArea(result.mesh),
                    2 * (3150.0 * 390 + 390.0 * 2650 + 2650.0 * 3150), 1.0);
    }
}

TEST(BodyOffset, ClosesAnOpeningOfExactlyTwiceTheOffset) {
    const OffsetResult result = OffsetBody(WallWithOpening(150, 150), 75.0);
    EXPECT_NEAR(SignedVolume(result.mesh), 3150.0 * 390 * 2650, 10.0);
}

TEST(BodyOffset, NarrowsAndClosesTheBoreOfAPipe) {
    const double half = std::numbers::pi / 24;
    const auto area = [&](double apothem) { return 24 * apothem * apothem * std::tan(half); };
    const double outer = 100 * std::cos(half);
    const double inner = 60 * std::cos(half);
    const BodyMesh tube = shapes::Tube(24, 100, 60, 0, 500);
    const OffsetResult narrowed = OffsetBody(tube, 25.0);
    EXPECT_EQ(narrowed.movedSolids, 1U);
    EXPECT_NEAR(SignedVolume(narrowed.mesh), (area(outer + 25) - area(inner - 25)) * 550, 1e-2);
    const OffsetResult closed = OffsetBody(tube, 75.0);
    EXPECT_EQ(closed.rebuiltSolids, 1U);
    const double volume = area(outer + 75) * 650;
    EXPECT_NEAR(SignedVolume(closed.mesh), volume, volume * 1e-6);
    ExpectSurfaceInside(tube, closed.mesh);
    const OffsetResult shrunk = OffsetBody(tube, -2.0);
    EXPECT_NEAR(SignedVolume(shrunk.mesh), (area(outer - 2) - area(inner + 2)) * 496, 1e-2);
}

TEST(BodyOffset, LosesAPipeWithThinWalls) {
    const OffsetResult result = OffsetBody(shapes::Tube(24, 100, 97, 0, 500), -2.0);
    EXPECT_EQ(result.outcome, OffsetOutcome::Vanished);
}

TEST(BodyOffset, LosesAHollowBoxWhoseWallsAreThin) {
    // No edge turns over here: the hollow outgrows the box.
    BodyMesh mesh = Box({0, 0, 0}, {100, 100, 100});
    BodyMesh hollow = Box({3, 3, 3}, {97, 97, 97});
    TurnOver(hollow);
    Append(mesh, hollow);
    EXPECT_EQ(OffsetBody(mesh, -2.0).outcome, OffsetOutcome::Vanished);
    const OffsetResult kept = OffsetBody(mesh, -1.0);
    EXPECT_NEAR(SignedVolume(kept.mesh), 98.0 * 98 * 98 - 96.0 * 96 * 96, 1e-6);
    const OffsetResult filled = OffsetBody(mesh, 50.0);
    EXPECT_NEAR(SignedVolume(filled.mesh), 8e6, 1e-2);
}

TEST(BodyOffset, MovesEachFacetOfAnElbowByTheOffset) {
    const BodyMesh before = RepairBody(shapes::Elbow(24, 8, 50, 150)).solids.at(0);
    for (const double offset : {-2.0, 25.0}) {
        const OffsetResult result = OffsetBody(before, offset);
        EXPECT_EQ(result.movedSolids, 1U);
        ASSERT_EQ(result.mesh.triangles, before.triangles);
        for (std::size_t t = 0; t < before.triangles.size(); ++t) {
            const Vec3 a = before.Corner(t, 0);
            const Vec3 normal = Normalized(Cross(before.Corner(t, 1) - a, before.Corner(t, 2) - a));
            for (std::size_t k = 0; k < 3; ++k) {
                EXPECT_NEAR(Dot(normal, result.mesh.Corner(t, k) - a), offset, kRounding);
            }
        }
    }
}

TEST(BodyOffset, GrowsAnElbowBeyondItsInnerRadius) {
    const BodyMesh elbow = shapes::Elbow(24, 8, 50, 90);
    const OffsetResult result = OffsetBody(elbow, 75.0);
    EXPECT_EQ(result.rebuiltSolids, 1U);
    ExpectSurfaceInside(elbow, result.mesh);
    // From the centre line: the pipe and the moved facet, which is tilted by half a step and so
    // runs on outward as far as the end face moves, and the end face.
    const double tilt = std::numbers::pi / 32;
    const double across =
        50 + 75 / (std::cos(std::numbers::pi / 24) * std::cos(tilt)) + 75 * std::tan(tilt);
    for (const Vec3& p : result.mesh.positions) {
        double nearest = 1e9;
        for (int step = 0; step <= 100; ++step) {
            const double turn = std::numbers::pi / 200 * step;
            const Vec3 on{90 * std::cos(turn), 90 * std::sin(turn), 0};
            nearest = std::min(nearest, Length(p - on));
        }
        EXPECT_LT(nearest, std::hypot(across, 75) + 0.01);
    }
}

TEST(BodyOffset, OffsetsEachOfTwoSeparateShells) {
    BodyMesh mesh = Box({0, 0, 0}, {100, 100, 100});
    Append(mesh, Box({300, 0, 0}, {400, 100, 3}));
    const OffsetResult grown = OffsetBody(mesh, 25.0);
    EXPECT_EQ(grown.movedSolids, 2U);
    EXPECT_NEAR(SignedVolume(grown.mesh), 150.0 * 150 * 150 + 150.0 * 150 * 53, 1e-3);
    const OffsetResult shrunk = OffsetBody(mesh, -2.0);
    EXPECT_EQ(shrunk.outcome, OffsetOutcome::Offset);
    EXPECT_EQ(shrunk.vanishedSolids, 1U);
    ExpectBox(shrunk.mesh, {2, 2, 2}, {98, 98, 98});
}

TEST(BodyOffset, GrowsInvertedAndMirroredBodiesOutward) {
    BodyMesh inverted = LShape(50, 50);
    TurnOver(inverted);
    ExpectBox(OffsetBody(inverted, 25.0).mesh, {-25, -25, -25}, {225, 125, 225});
    const BodyMesh mirrored =
        Transformed(LShape(50, 50), {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    const OffsetResult result = OffsetBody(mirrored, 25.0);
    EXPECT_TRUE(HasVertex(result.mesh, {-75, -25, 75}));
    EXPECT_GT(SignedVolume(result.mesh), 0.0);
}

TEST(BodyOffset, IgnoresSliversAndDuplicates) {
    BodyMesh mesh = Box({0, 0, 0}, {100, 100, 100});
    mesh.triangles.push_back(mesh.triangles[3]);
    // The top again with a vertex in the middle of one edge, 0.0001 off the line.
    mesh.triangles.erase(mesh.triangles.begin() + 2, mesh.triangles.begin() + 4);
    mesh.triangles.pop_back();
    const Vec3 middle{50, 0.0001, 100};
    shapes::AddTriangle(mesh, {0, 0, 100}, {100, 0, 100}, middle);
    shapes::AddTriangle(mesh, middle, {100, 0, 100}, {100, 100, 100});
    shapes::AddTriangle(mesh, middle, {100, 100, 100}, {0, 100, 100});
    shapes::AddTriangle(mesh, middle, {0, 100, 100}, {0, 0, 100});
    for (const double offset : {-2.0, 25.0}) {
        const OffsetResult result = OffsetBody(mesh, offset);
        EXPECT_EQ(result.outcome, OffsetOutcome::Offset);
        EXPECT_EQ(result.repair.openShells, 0U);
        const double side = 100 + 2 * offset;
        EXPECT_NEAR(SignedVolume(result.mesh), side * side * side, 10.0);
    }
}

TEST(BodyOffset, KeepsAnOpenMeshAsItIsAndSaysSo) {
    BodyMesh mesh = Box({0, 0, 0}, {100, 100, 100});
    mesh.triangles.resize(10);
    const OffsetResult result = OffsetBody(mesh, 25.0);
    EXPECT_EQ(result.outcome, OffsetOutcome::OpenKept);
    EXPECT_EQ(result.mesh.triangles.size(), 10U);
    ExpectBox(result.mesh, {0, 0, 0}, {100, 100, 100});
    EXPECT_EQ(result.repair.openEdges, 4U);
}

TEST(BodyOffset, SaysThatThereIsNothingToOffset) {
    EXPECT_EQ(OffsetBody({}, -2.0).outcome, OffsetOutcome::NoTriangles);
}

}  // namespace
}  // namespace ifchost
