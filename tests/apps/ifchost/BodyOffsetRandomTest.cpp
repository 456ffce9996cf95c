// SPDX-License-Identifier: Apache-2.0
// Offset bodies against sets that are computed without any mesh.
#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "BodyShapes.h"
#include "ifchost/BodyOffset.h"
#include "ifchost/InsideQuery.h"

namespace ifchost {
namespace {

/// Cubes of a grid, with the Chebyshev distance as the measure.
class CellBody {
  public:
    static constexpr int kSize = 5;
    static constexpr double kCell = 10.0;

    CellBody(std::mt19937& random, double share) {
        std::bernoulli_distribution isFull(share);
        for (bool& cell : cells_)
            cell = isFull(random);
    }

    bool IsFull(int i, int j, int k) const {
        const auto in = [](int v) { return v >= 0 && v < kSize; };
        return in(i) && in(j) && in(k) &&
               cells_[static_cast<std::size_t>((i * kSize + j) * kSize + k)];
    }

    BodyMesh Mesh() const {
        std::vector<double> grid;
        for (int i = 0; i <= kSize; ++i)
            grid.push_back(kCell * i);
        return shapes::Cells(grid, grid, grid,
                             [this](int i, int j, int k) { return IsFull(i, j, k); });
    }

    /// Smallest Chebyshev distance of `p` from a cell that is full or, for `false`, empty.
    double Distance(const Vec3& p, bool full) const {
        double best = 1e9;
        for (int i = -4; i < kSize + 4; ++i) {
            for (int j = -4; j < kSize + 4; ++j) {
                for (int k = -4; k < kSize + 4; ++k) {
                    if (IsFull(i, j, k) != full) continue;
                    best = std::min(best, std::max({Gap(p.x, i), Gap(p.y, j), Gap(p.z, k)}));
                }
            }
        }
        return best;
    }

  private:
    static double Gap(double value, int cell) {
        return std::max({kCell * cell - value, value - kCell * (cell + 1), 0.0});
    }

    std::array<bool, kSize * kSize * kSize> cells_{};
};

struct Tally {
    int inside = 0;
    int outside = 0;
    int rebuilt = 0;
    int moved = 0;
    int vanished = 0;
};

void CompareWithCells(const CellBody& body, double offset, std::mt19937& random, Tally& tally) {
    constexpr double kSlack = 1e-3;
    const bool grow = offset > 0.0;
    const double distance = std::abs(offset);
    const OffsetResult result = OffsetBody(body.Mesh(), offset);
    EXPECT_EQ(result.repair.openShells, 0U);
    EXPECT_EQ(result.simplifiedSolids, 0U);
    tally.rebuilt += static_cast<int>(result.rebuiltSolids);
    tally.moved += static_cast<int>(result.movedSolids);
    tally.vanished += static_cast<int>(result.vanishedSolids);
    const InsideQuery query(result.mesh);
    std::uniform_real_distribution<double> coordinate(-15.0, 65.0);
    for (int n = 0; n < 150; ++n) {
        const Vec3 p{coordinate(random), coordinate(random), coordinate(random)};
        const double away = body.Distance(p, grow);
        if (std::abs(away - distance) < kSlack) continue;
        const bool expected = grow ? away < distance : away > distance;
        ++(expected ? tally.inside : tally.outside);
        ASSERT_EQ(query.Contains(p), expected)
            << "offset " << offset << " at " << p.x << ' ' << p.y << ' ' << p.z;
    }
    for (const Vec3& p : result.mesh.positions) {
        const double away = body.Distance(p, grow);
        ASSERT_TRUE(grow ? away <= distance + kSlack : away >= distance - kSlack)
            << "offset " << offset << " vertex " << p.x << ' ' << p.y << ' ' << p.z;
    }
}

TEST(BodyOffsetRandom, CellBodiesMatchTheirChebyshevOffset) {
    std::mt19937 random(20240607);
    Tally tally;
    for (int round = 0; round < 40; ++round) {
        const CellBody body(random, 0.15 + 0.7 * (round % 10) / 10.0);
        for (const double offset : {3.0, 5.0, 7.0, 12.0, -2.0, -4.0, -5.0, -7.0}) {
            CompareWithCells(body, offset, random, tally);
            if (HasFatalFailure()) FAIL() << "round " << round;
        }
    }
    EXPECT_GT(tally.inside, 8000);
    EXPECT_GT(tally.outside, 8000);
    EXPECT_GT(tally.rebuilt, 100);
    EXPECT_GT(tally.moved, 100);
    EXPECT_GT(tally.vanished, 100);
}

/// Corners of an intersection of half-spaces, by trying every three of the planes.
std::vector<Vec3> CornersOf(const std::vector<HalfSpace>& sides) {
    std::vector<Vec3> corners;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            for (std::size_t k = 0; k < j; ++k) {
                const Vec3 jk = Cross(sides[j].normal, sides[k].normal);
                const double det = Dot(sides[i].normal, jk);
                if (std::abs(det) < 1e-6) continue;
                const Vec3 p = (jk * sides[i].height +
                                Cross(sides[k].normal, sides[i].normal) * sides[j].height +
                                Cross(sides[i].normal, sides[j].normal) * sides[k].height) *
                               (1.0 / det);
                const bool inside = std::all_of(sides.begin(), sides.end(), [&](const auto& side) {
                    return side.Distance(p) < 1e-7;
                });
                if (inside) corners.push_back(p);
            }
        }
    }
    return corners;
}

/// The convex body as a mesh: each side's corners in angular order.
BodyMesh MeshOf(const std::vector<HalfSpace>& sides) {
    const std::vector<Vec3> corners = CornersOf(sides);
    BodyMesh mesh;
    for (const HalfSpace& side : sides) {
        std::vector<Vec3> ring;
        Vec3 middle;
        for (const Vec3& p : corners) {
            if (std::abs(side.Distance(p)) < 1e-7) ring.push_back(p);
        }
        if (ring.size() < 3) continue;
        for (const Vec3& p : ring)
            middle = middle + p * (1.0 / static_cast<double>(ring.size()));
        const Vec3 u = Normalized(ring[0] - middle);
        const Vec3 v = Cross(side.normal, u);
        std::sort(ring.begin(), ring.end(), [&](const Vec3& a, const Vec3& b) {
            return std::atan2(Dot(a - middle, v), Dot(a - middle, u)) <
                   std::atan2(Dot(b - middle, v), Dot(b - middle, u));
        });
        for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
            shapes::AddTriangle(mesh, ring[0], ring[i], ring[i + 1]);
        }
    }
    return mesh;
}

std::vector<HalfSpace> RandomSides(std::mt19937& random) {
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> height(60.0, 140.0);
    std::vector<HalfSpace> sides{{{1, 0, 0}, 150},  {{-1, 0, 0}, 150}, {{0, 1, 0}, 150},
                                 {{0, -1, 0}, 150}, {{0, 0, 1}, 150},  {{0, 0, -1}, 150}};
    for (int i = 0; i < 8; ++i) {
        const Vec3 direction{normal(random), normal(random), normal(random)};
        sides.push_back({Normalized(direction), height(random)});
    }
    return sides;
}

/// Whether two faces that share an edge (two corners) enclose less than about 29 degrees, so that
/// their mitre is cut off.
bool HasSharpPair(const std::vector<HalfSpace>& faces, const std::vector<Vec3>& corners) {
    for (const HalfSpace& a : faces) {
        for (const HalfSpace& b : faces) {
            if (Dot(a.normal, b.normal) > -0.87) continue;
            const auto shared = std::count_if(corners.begin(), corners.end(), [&](const Vec3& p) {
                return std::abs(a.Distance(p)) < 1e-7 && std::abs(b.Distance(p)) < 1e-7;
            });
            if (shared >= 2) return true;
        }
    }
    return false;
}

TEST(BodyOffsetRandom, ConvexBodiesMatchTheMovedHalfSpaces) {
    std::mt19937 random(77);
    int inside = 0;
    int outside = 0;
    for (int round = 0; round < 60; ++round) {
        const std::vector<HalfSpace> sides = RandomSides(random);
        // Sides that do not touch the body are no faces of it and move nothing.
        std::vector<HalfSpace> faces;
        const std::vector<Vec3> corners = CornersOf(sides);
        for (const HalfSpace& side : sides) {
            const auto touching = std::count_if(corners.begin(), corners.end(), [&](const Vec3& p) {
                return std::abs(side.Distance(p)) < 1e-7;
            });
            if (touching >= 3) faces.push_back(side);
        }
        for (const double offset : {-40.0, -15.0, -2.0, 5.0, 25.0, 60.0}) {
            const OffsetResult result = OffsetBody(MeshOf(faces), offset);
            const InsideQuery query(result.mesh);
            std::uniform_real_distribution<double> coordinate(-220.0, 220.0);
            for (int n = 0; n < 200; ++n) {
                const Vec3 p{coordinate(random), coordinate(random), coordinate(random)};
                double away = -1e9;
                for (const HalfSpace& face : faces)
                    away = std::max(away, face.Distance(p));
                if (std::abs(away - offset) < 0.1) continue;
                ++(away < offset ? inside : outside);
                // Long mitres are cut off; only the moved half-spaces bound from outside then.
                if (away < offset && away > 0.0 && HasSharpPair(faces, corners)) continue;
                ASSERT_EQ(query.Contains(p), away < offset) << "round " << round << " " << offset;
            }
        }
    }
    EXPECT_GT(inside, 5000);
    EXPECT_GT(outside, 5000);
}

/// A body that every ray from the origin leaves once: the corners of `directions`, each at a random
/// distance.
BodyMesh StarBody(const BodyMesh& directions, double nearest, double farthest,
                  std::mt19937& random) {
    std::uniform_real_distribution<double> distance(nearest, farthest);
    BodyMesh body = directions;
    for (Vec3& p : body.positions)
        p = Normalized(p) * distance(random);
    return body;
}

/// An octahedron with each triangle split into four, twice: 128 triangles between 66 corners.
BodyMesh RoundDirections() {
    BodyMesh mesh;
    mesh.positions = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
    mesh.triangles = {{0, 2, 4}, {2, 1, 4}, {1, 3, 4}, {3, 0, 4},
                      {2, 0, 5}, {1, 2, 5}, {3, 1, 5}, {0, 3, 5}};
    for (int round = 0; round < 2; ++round) {
        BodyMesh finer;
        finer.positions = mesh.positions;
        std::map<std::pair<std::uint32_t, std::uint32_t>, std::uint32_t> middles;
        const auto middle = [&](std::uint32_t a, std::uint32_t b) {
            const auto [at, isNew] = middles.try_emplace(
                std::minmax(a, b), static_cast<std::uint32_t>(finer.positions.size()));
            if (isNew) {
                finer.positions.push_back(Normalized(mesh.positions[a] + mesh.positions[b]));
            }
            return at->second;
        };
        for (const auto& [a, b, c] : mesh.triangles) {
            const std::uint32_t ab = middle(a, b);
            const std::uint32_t bc = middle(b, c);
            const std::uint32_t ca = middle(c, a);
            for (const BodyTriangle& part :
                 {BodyTriangle{a, ab, ca}, {ab, b, bc}, {ca, bc, c}, {ab, bc, ca}})
                finer.triangles.push_back(part);
        }
        mesh = finer;
    }
    return mesh;
}

/// An upright prism over a star-shaped polygon, its ends fans around their middles.
BodyMesh StarPrism(std::mt19937& random) {
    constexpr int kCorners = 14;
    std::uniform_real_distribution<double> distance(15.0, 140.0);
    const auto ring = shapes::RegularRing(kCorners, 1.0);
    std::vector<Vec3> low;
    for (const auto& [x, y] : ring) {
        const double r = distance(random);
        low.push_back({x * r, y * r, -60.0});
    }
    const Vec3 up{0, 0, 120};
    BodyMesh mesh;
    for (std::size_t i = 0; i < low.size(); ++i) {
        const Vec3& a = low[i];
        const Vec3& b = low[(i + 1) % low.size()];
        shapes::AddQuad(mesh, a, b, b + up, a + up);
        shapes::AddTriangle(mesh, Vec3{0, 0, 60}, a + up, b + up);
        shapes::AddTriangle(mesh, Vec3{0, 0, -60}, b, a);
    }
    return mesh;
}

/// Distance of `p` from a triangle (Ericson, Real-Time Collision Detection, section 5.1.5).
double DistanceFrom(const Vec3& p, const Vec3& a, const Vec3& b, const Vec3& c) {
    const Vec3 ab = b - a;
    const Vec3 ac = c - a;
    const double d1 = Dot(ab, p - a);
    const double d2 = Dot(ac, p - a);
    if (d1 <= 0.0 && d2 <= 0.0) return Length(p - a);
    const double d3 = Dot(ab, p - b);
    const double d4 = Dot(ac, p - b);
    if (d3 >= 0.0 && d4 <= d3) return Length(p - b);
    const double vc = d1 * d4 - d3 * d2;
    if (vc <= 0.0 && d1 >= 0.0 && d3 <= 0.0) return Length(p - (a + ab * (d1 / (d1 - d3))));
    const double d5 = Dot(ab, p - c);
    const double d6 = Dot(ac, p - c);
    if (d6 >= 0.0 && d5 <= d6) return Length(p - c);
    const double vb = d5 * d2 - d1 * d6;
    if (vb <= 0.0 && d2 >= 0.0 && d6 <= 0.0) return Length(p - (a + ac * (d2 / (d2 - d6))));
    const double va = d3 * d6 - d5 * d4;
    if (va <= 0.0 && d4 >= d3 && d5 >= d6) {
        return Length(p - (b + (c - b) * ((d4 - d3) / ((d4 - d3) + (d5 - d6)))));
    }
    const double sum = va + vb + vc;
    return Length(p - (a + ab * (vb / sum) + ac * (vc / sum)));
}

double DistanceFrom(const Vec3& p, const BodyMesh& body) {
    double least = 1e9;
    for (std::size_t t = 0; t < body.triangles.size(); ++t)
        least = std::min(least,
                         DistanceFrom(p, body.Corner(t, 0), body.Corner(t, 1), body.Corner(t, 2)));
    return least;
}

/// What an offset body has to hold and may not hold, by the Euclidean distance from the surface.
void CompareWithDistance(const BodyMesh& body, double offset, std::mt19937& random, Tally& tally) {
    // Least squares may leave corners this far off their planes.
    const double slack = 0.1 + 1e-3 * std::abs(offset);
    // A mitre is cut off at four offsets along three axes.
    const double longest = 4.0 * std::sqrt(3.0) * std::abs(offset) + slack;
    const double certain = std::abs(offset) - slack;
    const OffsetResult result = OffsetBody(body, offset);
    ASSERT_EQ(result.repair.openShells, 0U);
    ASSERT_EQ(result.simplifiedSolids, 0U);
    tally.rebuilt += static_cast<int>(result.rebuiltSolids);
    tally.moved += static_cast<int>(result.movedSolids);
    const InsideQuery before(body);
    const InsideQuery after(result.mesh);
    std::uniform_real_distribution<double> coordinate(-140.0, 140.0);
    for (int n = 0; n < 300; ++n) {
        const Vec3 p{coordinate(random), coordinate(random), coordinate(random)};
        const double away = DistanceFrom(p, body) * (before.Contains(p) ? -1.0 : 1.0);
        const bool mustHold = offset > 0.0 ? away < certain : away < -longest;
        const bool mayHold = offset > 0.0 ? away < longest : away < -certain;
        if (mustHold) ++tally.inside;
        if (!mayHold) ++tally.outside;
        const bool holds = after.Contains(p);
        ASSERT_TRUE((holds || !mustHold) && (!holds || mayHold))
            << "offset " << offset << ", " << away << " mm away, at " << p.x << ' ' << p.y << ' '
            << p.z;
    }
    for (const Vec3& p : result.mesh.positions) {
        const double away = DistanceFrom(p, body);
        ASSERT_LE(away, longest) << "offset " << offset;
        ASSERT_GE(away, offset < 0.0 ? certain : 0.0) << "offset " << offset;
    }
}

TEST(BodyOffsetRandom, StarBodiesKeepTheirDistance) {
    std::mt19937 random(4711);
    const BodyMesh directions = RoundDirections();
    Tally tally;
    for (int round = 0; round < 12; ++round) {
        const BodyMesh body = StarBody(directions, 90.0, 110.0 + 2.0 * round, random);
        for (const double offset : {2.0, 8.0, 25.0, -2.0, -8.0}) {
            CompareWithDistance(body, offset, random, tally);
            if (HasFatalFailure()) FAIL() << "round " << round;
        }
    }
    EXPECT_GT(tally.inside, 2000);
    EXPECT_GT(tally.outside, 2000);
    EXPECT_GT(tally.rebuilt, 20);
}

TEST(BodyOffsetRandom, StarPrismsKeepTheirDistance) {
    std::mt19937 random(815);
    Tally tally;
    for (int round = 0; round < 20; ++round) {
        const BodyMesh body = StarPrism(random);
        for (const double offset : {2.0, 8.0, 25.0, -2.0, -8.0}) {
            CompareWithDistance(body, offset, random, tally);
            if (HasFatalFailure()) FAIL() << "round " << round;
        }
    }
    EXPECT_GT(tally.inside, 1000);
    EXPECT_GT(tally.outside, 2000);
    EXPECT_GT(tally.rebuilt, 5);
    EXPECT_GT(tally.moved, 5);
}

}  // namespace
}  // namespace ifchost
