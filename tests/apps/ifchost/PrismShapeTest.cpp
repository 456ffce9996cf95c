// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

#include "ifchost/PrismShape.h"

namespace ifchost {
namespace {

constexpr double kSlack = 1e-6;

double Distance(const Point3& a, const Point3& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

// A straight prism over a convex polygon in its own x/y plane, swept along z, then placed.
class PrismMaker {
  public:
    using Frame = std::array<Point3, 4>;  // x, y, z direction and origin

    static WorldMesh Make(const std::vector<std::array<double, 2>>& outline, double length,
                          const Frame& frame) {
        WorldMesh mesh;
        const auto n = static_cast<std::uint32_t>(outline.size());
        for (const double z : {0.0, length}) {
            for (const auto& p : outline)
                mesh.points.push_back(Place(frame, {p[0], p[1], z}));
        }
        for (std::uint32_t i = 0; i < n; ++i) {
            const std::uint32_t j = (i + 1) % n;
            mesh.triangles.push_back({i, j, n + j});
            mesh.triangles.push_back({i, n + j, n + i});
        }
        for (std::uint32_t i = 1; i + 1 < n; ++i) {
            mesh.triangles.push_back({0, i + 1, i});
            mesh.triangles.push_back({n, n + i, n + i + 1});
        }
        return mesh;
    }

    static Point3 Place(const Frame& f, const Point3& p) {
        Point3 out = f[3];
        for (std::size_t i = 0; i < 3; ++i) {
            out[i] += f[0][i] * p[0] + f[1][i] * p[1] + f[2][i] * p[2];
        }
        return out;
    }

    static std::vector<std::array<double, 2>> Rectangle(double w, double h) {
        return {{-w / 2, -h / 2}, {w / 2, -h / 2}, {w / 2, h / 2}, {-w / 2, h / 2}};
    }
    static std::vector<std::array<double, 2>> Circle(double radius, int segments) {
        std::vector<std::array<double, 2>> points;
        for (int i = 0; i < segments; ++i) {
            const double angle = 2 * std::numbers::pi * i / segments;
            points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
        }
        return points;
    }
    // The prism runs along +x; its own x lies level, its own y points up.
    static Frame AlongX(const Point3& origin) {
        return {{{0, -1, 0}, {0, 0, 1}, {1, 0, 0}, origin}};
    }
    static Frame Upward(const Point3& origin) {
        return {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, origin}};
    }
};

void ExpectEnds(const PrismShape& shape, const Point3& a, const Point3& b) {
    const bool forward = Distance(shape.start, a) < Distance(shape.start, b);
    EXPECT_LT(Distance(shape.start, forward ? a : b), kSlack);
    EXPECT_LT(Distance(shape.end, forward ? b : a), kSlack);
}

TEST(PrismShape, FindsAHorizontalRectangularRun) {
    const auto shape = PrismOfMesh(PrismMaker::Make(PrismMaker::Rectangle(400, 200), 3000,
                                                    PrismMaker::AlongX({10, 20, 2800})));
    ASSERT_TRUE(shape);
    ExpectEnds(*shape, {10, 20, 2800}, {3010, 20, 2800});
    EXPECT_NEAR(shape->width, 400, kSlack);
    EXPECT_NEAR(shape->height, 200, kSlack);
    EXPECT_EQ(shape->radius, 0.0);
    EXPECT_NEAR(shape->Length(), 3000, kSlack);
    EXPECT_TRUE(shape->IsHorizontal());
    EXPECT_FALSE(shape->IsVertical());
}

TEST(PrismShape, FindsAVerticalRoundRun) {
    const auto shape = PrismOfMesh(
        PrismMaker::Make(PrismMaker::Circle(50, 24), 2500, PrismMaker::Upward({1, 2, 3})));
    ASSERT_TRUE(shape);
    ExpectEnds(*shape, {1, 2, 3}, {1, 2, 2503});
    EXPECT_NEAR(shape->radius, 50, kSlack);
    EXPECT_TRUE(shape->IsVertical());
    EXPECT_FALSE(shape->IsHorizontal());
}

TEST(PrismShape, TakesNoSquareForACircle) {
    const auto shape = PrismOfMesh(
        PrismMaker::Make(PrismMaker::Rectangle(100, 100), 1000, PrismMaker::AlongX({0, 0, 0})));
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->radius, 0.0);
}

TEST(PrismShape, FindsTheAxisExactlyHoweverUnevenlyTheSurfaceIsDivided) {
    // One side is split at a crowd of extra points, as where branches were cut in.
    WorldMesh mesh =
        PrismMaker::Make(PrismMaker::Rectangle(400, 200), 5000, PrismMaker::AlongX({0, 0, 1000}));
    std::mt19937 random(3);
    std::uniform_int_distribution<std::size_t> pick(0, 1);
    for (int i = 0; i < 200; ++i) {
        auto triangle = mesh.triangles[pick(random)];
        const auto corner = [&](std::size_t k) { return mesh.points[triangle[k]]; };
        Point3 middle{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            middle[axis] = (corner(0)[axis] + corner(1)[axis] + corner(2)[axis]) / 3;
        }
        const auto added = static_cast<std::uint32_t>(mesh.points.size());
        mesh.points.push_back(middle);
        mesh.triangles.push_back({triangle[0], triangle[1], added});
        mesh.triangles.push_back({triangle[1], triangle[2], added});
        for (auto& old : mesh.triangles) {
            if (old == triangle) {
                old = {triangle[2], triangle[0], added};
                break;
            }
        }
    }
    const auto shape = PrismOfMesh(mesh);
    ASSERT_TRUE(shape);
    ExpectEnds(*shape, {0, 0, 1000}, {5000, 0, 1000});
    EXPECT_TRUE(shape->IsHorizontal());
}

TEST(PrismShape, FindsRunsOfAnyDirectionFarFromTheOrigin) {
    std::mt19937 random(11);
    std::normal_distribution<double> normal;
    for (int i = 0; i < 200; ++i) {
        const auto unit = [](Point3 v) {
            const double n = std::hypot(v[0], v[1], v[2]);
            return Point3{v[0] / n, v[1] / n, v[2] / n};
        };
        const Point3 z = unit({normal(random), normal(random), normal(random)});
        const Point3 x = unit({z[1], -z[0], 0});
        const Point3 y = {z[1] * x[2] - z[2] * x[1], z[2] * x[0] - z[0] * x[2],
                          z[0] * x[1] - z[1] * x[0]};
        const Point3 origin{1e8 + normal(random), 4e8, 5000};
        const PrismMaker::Frame frame{x, y, z, origin};
        const auto shape =
            PrismOfMesh(PrismMaker::Make(PrismMaker::Rectangle(300, 150), 1200, frame));
        ASSERT_TRUE(shape);
        const Point3 end = PrismMaker::Place(frame, {0, 0, 1200});
        const double toStart =
            std::min(Distance(shape->start, origin), Distance(shape->end, origin));
        const double toEnd = std::min(Distance(shape->start, end), Distance(shape->end, end));
        EXPECT_LT(toStart, 1e-3);
        EXPECT_LT(toEnd, 1e-3);
        EXPECT_NEAR(shape->width, 300, 1e-3);
        EXPECT_NEAR(shape->height, 150, 1e-3);
    }
}

TEST(PrismShape, IsNothingForBodiesThatAreNotLong) {
    EXPECT_FALSE(PrismOfMesh(
        PrismMaker::Make(PrismMaker::Rectangle(300, 300), 300, PrismMaker::AlongX({0, 0, 0}))));
    EXPECT_FALSE(PrismOfMesh({}));
}

TEST(PrismShape, RunsAlongTheLongestSideOfABox) {
    // Swept over 300, but a short piece does not tell that from the surface alone.
    const auto shape = PrismOfMesh(
        PrismMaker::Make(PrismMaker::Rectangle(400, 200), 300, PrismMaker::AlongX({0, 0, 0})));
    ASSERT_TRUE(shape);
    EXPECT_NEAR(shape->Length(), 400, kSlack);
    EXPECT_NEAR(shape->width, 300, kSlack);
    EXPECT_NEAR(shape->height, 200, kSlack);
}

TEST(PrismShape, IsNothingForABend) {
    // Two runs at a right angle, as an elbow with long legs.
    WorldMesh bend =
        PrismMaker::Make(PrismMaker::Rectangle(100, 100), 1000, PrismMaker::AlongX({0, 0, 0}));
    const WorldMesh leg =
        PrismMaker::Make(PrismMaker::Circle(60, 24), 700, PrismMaker::Upward({1000, 0, 0}));
    const auto first = static_cast<std::uint32_t>(bend.points.size());
    bend.points.insert(bend.points.end(), leg.points.begin(), leg.points.end());
    for (const auto& t : leg.triangles) {
        bend.triangles.push_back({t[0] + first, t[1] + first, t[2] + first});
    }
    EXPECT_FALSE(PrismOfMesh(bend));
}

SceneProduct Swept(const Point3& start, const Point3& end, double width, double height,
                   const Point3& xAxis) {
    SceneProduct product;
    SceneSection section;
    section.shape = SectionShape::Rectangle;
    section.width = width;
    section.height = height;
    section.start = start;
    section.end = end;
    section.length = Distance(start, end);
    section.xAxis = xAxis;
    section.solidCount = 1;
    product.section = section;
    return product;
}

TEST(PrismShape, TakesSectionAndAxisOfASweptSolid) {
    const auto shape = PrismOfSection(Swept({0, 0, 100}, {2000, 0, 100}, 300, 150, {0, 1, 0}));
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->end, (Point3{2000, 0, 100}));
    EXPECT_EQ(shape->width, 300.0);
    EXPECT_EQ(shape->height, 150.0);
}

TEST(PrismShape, CallsTheLevelSideOfASectionItsWidth) {
    const auto shape = PrismOfSection(Swept({0, 0, 100}, {2000, 0, 100}, 300, 150, {0, 0, 1}));
    ASSERT_TRUE(shape);
    EXPECT_EQ(shape->width, 150.0);
    EXPECT_EQ(shape->height, 300.0);
}

TEST(PrismShape, LeavesSectionsThatAreNoAxisOfARunToTheMesh) {
    // A duct swept upward from its plan.
    EXPECT_FALSE(PrismOfSection(Swept({0, 0, 0}, {0, 0, 200}, 3000, 400, {1, 0, 0})));
    // Two solids.
    SceneProduct several = Swept({0, 0, 0}, {2000, 0, 0}, 300, 150, {0, 1, 0});
    several.section->solidCount = 2;
    EXPECT_FALSE(PrismOfSection(several));
    // A path with a bend.
    SceneProduct bent = Swept({0, 0, 0}, {2000, 0, 0}, 300, 150, {0, 1, 0});
    bent.section->length = 2500;
    EXPECT_FALSE(PrismOfSection(bent));
    EXPECT_FALSE(PrismOfSection(SceneProduct{}));
}

TEST(PrismShape, IsHorizontalUpToOneMillimetreOfRise) {
    EXPECT_TRUE((PrismShape{{0, 0, 0}, {5000, 0, 1}}.IsHorizontal()));
    EXPECT_FALSE((PrismShape{{0, 0, 0}, {5000, 0, 1.1}}.IsHorizontal()));
    EXPECT_TRUE((PrismShape{{0, 0, 0}, {3, 0, 3000}}.IsVertical()));
    EXPECT_FALSE((PrismShape{{0, 0, 0}, {4, 0, 3000}}.IsVertical()));
}

TEST(PrismShape, MeasuresExtentsInPlan) {
    const double c = std::cos(0.5);
    const double s = std::sin(0.5);
    const PrismMaker::Frame frame{{{-s, c, 0}, {0, 0, 1}, {c, s, 0}, {0, 0, 0}}};
    const WorldMesh wall = PrismMaker::Make(PrismMaker::Rectangle(200, 2500), 4000, frame);
    const Point3 along = PlanDirection(wall);
    EXPECT_NEAR(std::abs(along[0] * c + along[1] * s), 1.0, 1e-9);
    EXPECT_NEAR(ExtentAlong(wall, along), 4000, kSlack);
    EXPECT_NEAR(ExtentAlong(wall, {0, 0, 1}), 2500, kSlack);
    EXPECT_EQ(PlanDirection({}), (Point3{1, 0, 0}));
    EXPECT_EQ(ExtentAlong({}, {1, 0, 0}), 0.0);
}

}  // namespace
}  // namespace ifchost
