// SPDX-License-Identifier: Apache-2.0
// Whole queries against the test of every triangle with every other, on each instruction set that
// the machine has.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <hwy/targets.h>

#include "opcode/ExactOracle.h"
#include "opcode/HardTriangles.h"
#include "opcode/Query.h"
#include "opcode/TestMesh.h"
#include "opcode/TriangleContact.h"
#include "support/OnlyTarget.h"

namespace kycb::opcode::test {
namespace {

using kycb::test::OnlyTarget;

Triangle TriangleOf(const MeshData& mesh, std::size_t i) {
    const auto& refs = mesh.triangles[i].mVRef;
    return {{mesh.vertices[refs[0]], mesh.vertices[refs[1]], mesh.vertices[refs[2]]}};
}

PairList BruteForce(const MeshData& a, const MeshData& b) {
    PairList pairs;
    for (std::uint32_t i = 0; i < a.triangles.size(); ++i) {
        for (std::uint32_t j = 0; j < b.triangles.size(); ++j) {
            const Triangle s = TriangleOf(a, i);
            const Triangle t = TriangleOf(b, j);
            ContactPoints points;
            if (IsFinite(s) && IsFinite(t) && FindContact(s, t, points)) pairs.emplace_back(i, j);
        }
    }
    return pairs;
}

PairList Sorted(PairList pairs) {
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}

PairList Swapped(PairList pairs) {
    for (auto& [a, b] : pairs)
        std::swap(a, b);
    return Sorted(pairs);
}

/// Small random triangles anywhere in a cube of side 2.
MeshData Soup(Random& random, int count, double size) {
    MeshData mesh;
    for (int i = 0; i < count; ++i) {
        const double c[3] = {random.In(-1, 1), random.In(-1, 1), random.In(-1, 1)};
        const auto point = [&] {
            return Point(static_cast<float>(c[0] + random.In(-size, size)),
                         static_cast<float>(c[1] + random.In(-size, size)),
                         static_cast<float>(c[2] + random.In(-size, size)));
        };
        mesh.AddTriangle(point(), point(), point());
    }
    return mesh;
}

/// Boxes on a coarse grid, so that faces, edges and corners coincide.
MeshData GridBoxes(Random& random, int count) {
    MeshData mesh;
    for (int i = 0; i < count; ++i) {
        const auto place = [&] { return static_cast<float>(random.Below(6)); };
        // One draw at a time: compilers order the arguments of a call as they like.
        const float z = place();
        const float y = place();
        const float x = place();
        const Point low(x, y, z);
        const MeshData box =
            MakeBox(low, {low.x + 1 + static_cast<float>(random.Below(3)), low.y + 1, low.z + 1});
        for (std::size_t t = 0; t < box.triangles.size(); ++t) {
            const Triangle triangle = TriangleOf(box, t);
            mesh.AddTriangle(triangle.v[0], triangle.v[1], triangle.v[2]);
        }
    }
    return mesh;
}

/// A sphere, the surface of most fittings as far as a hierarchy is concerned.
MeshData Sphere(const Point& centre, float radius, int rings) {
    MeshData mesh;
    const auto at = [&](int ring, int place) {
        const double v = M_PI * ring / rings;
        const double u = 2 * M_PI * place / (2 * rings);
        return Point(centre.x + radius * static_cast<float>(std::sin(v) * std::cos(u)),
                     centre.y + radius * static_cast<float>(std::sin(v) * std::sin(u)),
                     centre.z + radius * static_cast<float>(std::cos(v)));
    };
    for (int ring = 0; ring < rings; ++ring) {
        for (int place = 0; place < 2 * rings; ++place) {
            mesh.AddTriangle(at(ring, place), at(ring + 1, place), at(ring + 1, place + 1));
            mesh.AddTriangle(at(ring, place), at(ring + 1, place + 1), at(ring, place + 1));
        }
    }
    return mesh;
}

/// Triangles of one oblique plane on points of a lattice in it, so that all is exact: corners on
/// edges, edges on edges, triangles of no area.
MeshData OnePlane(Random& random, int count, int cells) {
    MeshData mesh;
    const auto point = [&] {
        const auto u = static_cast<float>(random.Below(cells));
        const auto v = static_cast<float>(random.Below(cells));
        return Point(2 * u - v, u + 3 * v, 5 * v - u);
    };
    for (int i = 0; i < count; ++i)
        mesh.AddTriangle(point(), point(), point());
    return mesh;
}

/// The wall of a pipe along x.
MeshData Pipe(float radius, int around, int along) {
    MeshData mesh;
    const auto at = [&](int ring, int place) {
        const double u = 2 * M_PI * place / around;
        return Point(static_cast<float>(ring) / static_cast<float>(along),
                     radius * static_cast<float>(std::cos(u)),
                     radius * static_cast<float>(std::sin(u)));
    };
    for (int ring = 0; ring < along; ++ring) {
        for (int place = 0; place < around; ++place) {
            mesh.AddTriangle(at(ring, place), at(ring + 1, place), at(ring + 1, place + 1));
            mesh.AddTriangle(at(ring, place), at(ring + 1, place + 1), at(ring, place + 1));
        }
    }
    return mesh;
}

MeshData HardSoup(Random& random, const HardFamily& family, bool first, int count) {
    MeshData mesh;
    for (int i = 0; i < count; ++i) {
        const TrianglePair pair = family.make(random);
        const Triangle& t = first ? pair.a : pair.b;
        mesh.AddTriangle(t.v[0], t.v[1], t.v[2]);
    }
    return mesh;
}

struct MeshPair {
    std::string name;
    MeshData a;
    MeshData b;
};

std::vector<MeshPair> AllMeshPairs() {
    std::vector<MeshPair> pairs;
    Random random(99);
    for (const int count : {1, 2, 7, 8, 9, 63, 65, 200, 700})
        pairs.push_back({"soup " + std::to_string(count), Soup(random, count, 0.3),
                         Soup(random, 1 + random.Below(300), 0.4)});
    for (int i = 0; i < 4; ++i)
        pairs.push_back({"grid boxes", GridBoxes(random, 6), GridBoxes(random, 9)});
    pairs.push_back({"spheres", Sphere({0, 0, 0}, 1, 14), Sphere({1.9F, 0.1F, 0}, 1, 11)});
    pairs.push_back({"nested spheres", Sphere({0, 0, 0}, 1, 14), Sphere({0, 0, 0}, 0.9F, 14)});
    pairs.push_back({"equal spheres", Sphere({0, 0, 0}, 1, 7), Sphere({0, 0, 0}, 1, 7)});
    pairs.push_back({"one plane", OnePlane(random, 60, 6), OnePlane(random, 90, 8)});
    pairs.push_back({"pipe in pipe", Pipe(0.2F, 24, 9), Pipe(0.21F, 24, 9)});
    pairs.push_back({"pipe grazing a pipe", Pipe(0.2F, 24, 9), Pipe(0.2001F, 20, 9)});
    for (const HardFamily& family : HardFamilies()) {
        // Meshes of nine to sixteen triangles, as boxes and plates are, have a way of their own.
        for (const auto& [a, b] : {std::pair(40, 40), {9, 16}, {16, 12}, {12, 9}, {12, 40}})
            pairs.push_back(
                {family.name + std::string(" ") + std::to_string(a) + "/" + std::to_string(b),
                 HardSoup(random, family, true, a), HardSoup(random, family, false, b)});
    }
    for (int i = 0; i < 20; ++i)
        pairs.push_back({"two boxes", GridBoxes(random, 1), GridBoxes(random, 1)});
    return pairs;
}

/// The instruction sets to be forced, one bit each; the plain one always.
std::vector<std::int64_t> Targets() {
    std::vector<std::int64_t> targets = {HWY_STATIC_TARGET};
    for (std::int64_t rest = hwy::SupportedTargets(); rest != 0; rest &= rest - 1) {
        if (const std::int64_t target = rest & -rest; target != HWY_STATIC_TARGET) {
            const OnlyTarget only(target);
            // Some of the machine's have no code of their own.
            if (QueryTarget() == target) targets.push_back(target);
        }
    }
    return targets;
}

bool SameBits(const std::vector<Point>& a, const std::vector<Point>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Point& p, const Point& q) {
        return std::memcmp(&p, &q, sizeof(Point)) == 0;
    });
}

struct Region {
    bool kept = false;
    Point low;
    Point high;
};

Region RegionOf(const Opcode::AABBTreeCollider& collider) {
    Region region;
    region.kept = collider.GetContactRegion(region.low, region.high);
    return region;
}

void ExpectSame(const Region& a, const Region& b, const std::string& name) {
    EXPECT_EQ(a.kept, b.kept) << name;
    const auto coordinates = [](const Region& r) {
        return std::vector<float>{r.low.x, r.low.y, r.low.z, r.high.x, r.high.y, r.high.z};
    };
    EXPECT_EQ(coordinates(a), coordinates(b)) << name;
}

Region BoxOfPoints(const std::vector<Point>& points) {
    if (points.empty()) return {};
    Region box = {true, points[0], points[0]};
    for (const Point& p : points) {
        box.low = {std::min(box.low.x, p.x), std::min(box.low.y, p.y), std::min(box.low.z, p.z)};
        box.high = {std::max(box.high.x, p.x), std::max(box.high.y, p.y),
                    std::max(box.high.z, p.z)};
    }
    return box;
}

TEST(MeshQuery, RunsOnTheInstructionSetThatIsForced) {
    for (const std::int64_t target : Targets()) {
        const OnlyTarget only(target);
        EXPECT_EQ(QueryTarget(), target);
    }
    // A build for one machine alone has nothing to choose from.
    if (HWY_STATIC_TARGET == HWY_SCALAR || HWY_STATIC_TARGET == HWY_EMU128) {
        EXPECT_GT(Targets().size(), 1U);
    }
}

TEST(MeshQuery, FindsThePairsOfBruteForceOnEveryInstructionSet) {
    for (const MeshPair& pair : AllMeshPairs()) {
        const PairList expected = BruteForce(pair.a, pair.b);
        QueryResult first;
        for (const std::int64_t target : Targets()) {
            const OnlyTarget only(target);
            const BuiltMesh a(pair.a);
            const BuiltMesh b(pair.b);
            const QueryResult result = Query(a, b);
            ASSERT_EQ(Sorted(result.pairs), expected) << pair.name << " on " << target;
            ASSERT_EQ(Swapped(Query(b, a).pairs), expected) << pair.name << " on " << target;
            if (first.pairs.empty()) first = result;
            EXPECT_EQ(result.pairs, first.pairs) << pair.name << " on " << target;
            EXPECT_TRUE(SameBits(result.points, first.points)) << pair.name << " on " << target;
        }
    }
}

PairList ByRationals(const MeshData& a, const MeshData& b) {
    PairList pairs;
    for (std::uint32_t i = 0; i < a.triangles.size(); ++i)
        for (std::uint32_t j = 0; j < b.triangles.size(); ++j)
            if (TouchByRationals(TriangleOf(a, i), TriangleOf(b, j))) pairs.emplace_back(i, j);
    return pairs;
}

TEST(MeshQuery, AgreesWithRationalsWhereTrianglesShareAPlane) {
    for (std::uint64_t seed = 1; seed <= 4; ++seed) {
        Random random(seed);
        const MeshData a = OnePlane(random, 24, 4);
        const MeshData b = OnePlane(random, 24, 5);
        const PairList expected = ByRationals(a, b);
        EXPECT_FALSE(expected.empty());
        EXPECT_LT(expected.size(), a.triangles.size() * b.triangles.size());
        for (const std::int64_t target : Targets()) {
            const OnlyTarget only(target);
            EXPECT_EQ(Sorted(Query(BuiltMesh(a), BuiltMesh(b)).pairs), expected)
                << seed << " on " << target;
        }
    }
}

TEST(MeshQuery, AgreesWithRationalsWhereFacesAndEdgesMeet) {
    std::size_t touching = 0;
    for (std::uint64_t seed = 1; seed <= 3; ++seed) {
        Random random(seed);
        const MeshData a = GridBoxes(random, 2);
        const MeshData b = GridBoxes(random, 2);
        const PairList expected = ByRationals(a, b);
        touching += expected.size();
        for (const std::int64_t target : Targets()) {
            const OnlyTarget only(target);
            EXPECT_EQ(Sorted(Query(BuiltMesh(a), BuiltMesh(b)).pairs), expected)
                << seed << " on " << target;
        }
    }
    EXPECT_GT(touching, 20U);
}

TEST(MeshQuery, AgreesWithRationalsWhereOneBoxMeetsAnother) {
    Random random(5);
    const auto box = [&] {
        const auto place = [&] { return static_cast<float>(random.Below(3)); };
        const Point low{place(), place(), place()};
        return MakeBox(low, {low.x + 1, low.y + 1, low.z + 2});
    };
    std::size_t touching = 0;
    constexpr std::size_t kTests = 12;
    for (std::size_t i = 0; i < kTests; ++i) {
        const MeshData a = box();
        const MeshData b = box();
        const PairList expected = ByRationals(a, b);
        if (!expected.empty()) ++touching;
        for (const std::int64_t target : Targets()) {
            const OnlyTarget only(target);
            EXPECT_EQ(Sorted(Query(BuiltMesh(a), BuiltMesh(b)).pairs), expected)
                << i << " on " << target;
        }
    }
    EXPECT_GT(touching, 2U);
    EXPECT_LT(touching, kTests);
}

// A beam on a slab, everything in steps of 1/1024 m.
TEST(MeshQuery, FindsTheRectangleOnWhichABoxStandsOnAnother) {
    Random random(8);
    for (int i = 0; i < 50; ++i) {
        const auto step = [&](int most) {
            return static_cast<float>(1 + random.Below(most)) / 1024.0F;
        };
        const Point low{step(9000), step(9000), step(9000)};
        const Point high{low.x + 3 + step(4000), low.y + step(400), low.z + step(400)};
        const Point beamLow{low.x + step(1500), low.y - step(1500), high.z};
        const Point beamHigh{beamLow.x + step(500), high.y + step(1500), high.z + step(500)};
        const BuiltMesh slab(MakeBox(low, high));
        const BuiltMesh beam(MakeBox(beamLow, beamHigh));
        const Region rectangle = {true, {beamLow.x, low.y, high.z}, {beamHigh.x, high.y, high.z}};
        for (const auto mode : {Opcode::ContactRegion::kKept, Opcode::ContactRegion::kOnly}) {
            Opcode::AABBTreeCollider collider;
            collider.SetContactRegion(mode);
            Query(collider, slab, beam);
            ExpectSame(RegionOf(collider), rectangle, std::to_string(i));
        }
    }
}

// Computed along the edge that leads there, the first one would be off in its fifth digit.
TEST(MeshQuery, GivesTheCornersThatStandOnAPlaneExactly) {
    const Point first(1e-9F, 3, 0);
    const Point second(-5, 4, 0);
    MeshData standing;
    standing.AddTriangle({1000, 500, 1000}, first, second);
    MeshData ground;
    ground.AddTriangle({-3000, -3000, 0}, {3000, -3000, 0}, {0, 3000, 0});
    for (const std::int64_t target : Targets()) {
        const OnlyTarget only(target);
        QueryResult result = Query(BuiltMesh(standing), BuiltMesh(ground));
        ASSERT_EQ(result.points.size(), 2U) << target;
        if (result.points[0].x < 0) std::swap(result.points[0], result.points[1]);
        EXPECT_TRUE(SameBits(result.points, {first, second})) << target;
    }
}

TEST(MeshQuery, TellsPipesInPipesFromPipesThatTouch) {
    const BuiltMesh inner(Pipe(0.2F, 24, 9));
    // Between corners, the wall of 24 corners comes 0.86 % closer to the axis than at them.
    EXPECT_TRUE(Query(inner, BuiltMesh(Pipe(0.2018F, 24, 9))).pairs.empty());
    EXPECT_FALSE(Query(inner, BuiltMesh(Pipe(0.2001F, 20, 9))).pairs.empty());
}

TEST(MeshQuery, PlacesTheCornersOfTheCommonPolygonOfOnePlane) {
    MeshData a;
    a.AddTriangle({0, 0, 5}, {4, 0, 5}, {0, 4, 5});
    MeshData b;
    b.AddTriangle({1, 1, 5}, {5, 1, 5}, {1, 5, 5});
    for (const std::int64_t target : Targets()) {
        const OnlyTarget only(target);
        const QueryResult result = Query(BuiltMesh(a), BuiltMesh(b));
        ASSERT_EQ(result.points.size(), 3U) << target;
        // b's corner, and where its legs cross the hypotenuse x + y = 4 of a.
        const std::vector<Point> expected = {{1, 1, 5}, {3, 1, 5}, {1, 3, 5}};
        EXPECT_TRUE(SameBits(result.points, expected)) << target;
    }
}

TEST(MeshQuery, CoversHitsAndMisses) {
    std::size_t hits = 0;
    std::size_t tests = 0;
    for (const MeshPair& pair : AllMeshPairs()) {
        hits += BruteForce(pair.a, pair.b).size();
        tests += pair.a.triangles.size() * pair.b.triangles.size();
    }
    EXPECT_GT(hits, 5000U);
    EXPECT_GT(tests - hits, 100000U);
}

TEST(MeshQuery, AnswersTheSameTheSecondTime) {
    for (const MeshPair& pair : AllMeshPairs()) {
        const BuiltMesh a(pair.a);
        const BuiltMesh b(pair.b);
        const QueryResult first = Query(a, b);
        const QueryResult second = Query(a, b);
        EXPECT_EQ(first.pairs, second.pairs) << pair.name;
        EXPECT_TRUE(SameBits(first.points, second.points)) << pair.name;
    }
}

TEST(MeshQuery, DoesNotDependOnWhatAModelMetBefore) {
    Random random(3);
    const MeshData mesh = Sphere({0, 0, 0}, 1, 20);
    const BuiltMesh other(Sphere({1.9F, 0, 0}, 1, 20));
    const BuiltMesh fresh(mesh);
    const BuiltMesh used(mesh);
    for (int i = 0; i < 5; ++i) {
        const BuiltMesh before(Soup(random, 20, 0.2));
        Query(used, before);
    }
    const PairList expected = Query(fresh, other).pairs;
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(Query(used, other).pairs, expected);
}

TEST(MeshQuery, AnswersTheSameWhenTheWholeTreeWasBuiltBefore) {
    for (const MeshPair& pair : AllMeshPairs()) {
        const BuiltMesh a(pair.a);
        const BuiltMesh b(pair.b);
        BuiltMesh wholeA(pair.a);
        BuiltMesh wholeB(pair.b);
        wholeA.Model().BuildWholeTree();
        wholeB.Model().BuildWholeTree();
        const QueryResult grown = Query(a, b);
        const QueryResult built = Query(wholeA, wholeB);
        EXPECT_EQ(grown.pairs, built.pairs) << pair.name;
        EXPECT_TRUE(SameBits(grown.points, built.points)) << pair.name;
    }
}

TEST(MeshQuery, CollidesAModelWithItself) {
    const MeshData mesh = Sphere({0, 0, 0}, 1, 6);
    const BuiltMesh model(mesh);
    EXPECT_EQ(Sorted(Query(model, model).pairs), BruteForce(mesh, mesh));
}

TEST(MeshQuery, DoesNotDependOnTheOrderOfTrianglesAndVertices) {
    Random random(8);
    const MeshData a = Soup(random, 150, 0.4);
    const MeshData b = GridBoxes(random, 100);
    MeshData shuffled;
    std::vector<std::uint32_t> number;
    for (std::uint32_t i = 0; i < a.triangles.size(); ++i)
        number.push_back(i);
    random.Shuffle(number);
    for (const std::uint32_t i : number) {
        const Triangle t = TriangleOf(a, i);
        shuffled.AddTriangle(t.v[2], t.v[0], t.v[1]);
    }
    PairList pairs = Query(BuiltMesh(shuffled), BuiltMesh(b)).pairs;
    for (auto& pair : pairs)
        pair.first = number[pair.first];
    EXPECT_EQ(Sorted(pairs), Sorted(Query(BuiltMesh(a), BuiltMesh(b)).pairs));
    EXPECT_FALSE(pairs.empty());
}

TEST(MeshQuery, LeavesOutTrianglesThatAreNotFinite) {
    Random random(4);
    MeshData a = Soup(random, 100, 0.4);
    const MeshData b = Soup(random, 100, 0.4);
    const PairList before = BruteForce(a, b);
    for (std::size_t i = 0; i < a.vertices.size(); i += 7)
        a.vertices[i].y = i % 2 == 0 ? std::numeric_limits<float>::infinity()
                                     : std::numeric_limits<float>::quiet_NaN();
    const PairList expected = BruteForce(a, b);
    EXPECT_LT(expected.size(), before.size());
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(Sorted(Query(BuiltMesh(a), BuiltMesh(b)).pairs), expected);
}

TEST(MeshQuery, BuildsNothingForAModelWithoutATree) {
    BuiltMesh empty{MeshData{}};
    empty.Model().BuildWholeTree();
    EXPECT_EQ(empty.Model().GetTree(), nullptr);
}

TEST(MeshQuery, HandlesManyTrianglesInOnePlace) {
    MeshData mesh;
    for (int i = 0; i < 200; ++i)
        mesh.AddTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0});
    MeshData needle;
    needle.AddTriangle({0.2F, 0.2F, -1}, {0.2F, 0.2F, 1}, {0.3F, 0.2F, 1});
    EXPECT_EQ(Query(BuiltMesh(mesh), BuiltMesh(needle)).pairs.size(), 200U);
}

TEST(MeshQuery, KeepsTheBoxOfAllContactPointsAsItsRegion) {
    for (const MeshPair& pair : AllMeshPairs()) {
        const BuiltMesh a(pair.a);
        const BuiltMesh b(pair.b);
        Opcode::AABBTreeCollider collider;
        collider.SetContactRegion(Opcode::ContactRegion::kKept);
        const QueryResult result = Query(collider, a, b);
        ExpectSame(RegionOf(collider), BoxOfPoints(result.points), pair.name);
    }
}

// Without a callback, most contact points need not be placed.
TEST(MeshQuery, KeepsTheSameRegionAndPairsWithoutACallbackOnEveryInstructionSet) {
    for (const MeshPair& pair : AllMeshPairs()) {
        const BuiltMesh a(pair.a);
        const BuiltMesh b(pair.b);
        const QueryResult expected = Query(a, b);
        Opcode::BVTCache cache;
        cache.Model0 = &a.Model();
        cache.Model1 = &b.Model();
        Opcode::AABBTreeCollider collider;
        collider.SetContactRegion(Opcode::ContactRegion::kKept);
        for (const std::int64_t target : Targets()) {
            const OnlyTarget only(target);
            ASSERT_TRUE(collider.Collide(cache));
            PairList pairs;
            for (std::uint32_t i = 0; i < collider.GetNbPairs(); ++i)
                pairs.emplace_back(collider.GetPairs()[i].id0, collider.GetPairs()[i].id1);
            EXPECT_EQ(pairs, expected.pairs) << pair.name << " on " << target;
            ExpectSame(RegionOf(collider), BoxOfPoints(expected.points), pair.name);
        }
    }
}

TEST(MeshQuery, GivesAsManyPairsAsAreAskedFor) {
    const BuiltMesh a(Sphere({0, 0, 0}, 1, 14));
    const BuiltMesh b(Sphere({1, 0, 0}, 1, 14));
    const PairList all = Query(a, b).pairs;
    ASSERT_GT(all.size(), 40U);
    for (std::uint32_t count = 1; count < 40; ++count) {
        Opcode::AABBTreeCollider collider;
        collider.SetMaxNbPairs(count);
        const PairList some = Query(collider, a, b).pairs;
        const auto end = all.begin() + static_cast<std::ptrdiff_t>(count);
        EXPECT_EQ(some, PairList(all.begin(), end));
    }
}

TEST(MeshQuery, KeepsNoRegionUnlessAskedTo) {
    const BuiltMesh box(MakeBox({0, 0, 0}, {1, 1, 1}));
    Opcode::AABBTreeCollider collider;
    ASSERT_FALSE(Query(collider, box, box).pairs.empty());
    EXPECT_FALSE(RegionOf(collider).kept);
}

TEST(MeshQuery, GivesTheSameRegionWhenOnlyThatIsAskedFor) {
    for (const MeshPair& pair : AllMeshPairs()) {
        const BuiltMesh a(pair.a);
        const BuiltMesh b(pair.b);
        Opcode::AABBTreeCollider collider;
        collider.SetContactRegion(Opcode::ContactRegion::kKept);
        Query(collider, a, b);
        const Region expected = RegionOf(collider);
        collider.SetContactRegion(Opcode::ContactRegion::kOnly);
        const QueryResult part = Query(collider, a, b);
        ExpectSame(RegionOf(collider), expected, pair.name);
        ExpectSame(BoxOfPoints(part.points), expected, pair.name);
    }
}

TEST(MeshQuery, FindsTheRegionOfDeepInterpenetrationWithFewPairs) {
    Random random(6);
    const BuiltMesh a(Soup(random, 4000, 0.1));
    const BuiltMesh b(Soup(random, 4000, 0.1));
    Opcode::AABBTreeCollider collider;
    const std::size_t all = Query(collider, a, b).pairs.size();
    collider.SetContactRegion(Opcode::ContactRegion::kOnly);
    EXPECT_LT(Query(collider, a, b).pairs.size(), all / 4);
}

}  // namespace
}  // namespace kycb::opcode::test
