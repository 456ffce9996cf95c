// SPDX-License-Identifier: Apache-2.0
// Offset bodies against sets that are computed without any mesh.
#include <algorithm>
#include <array>
#include <random>
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

}  // namespace
}  // namespace ifchost
