// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/CollisionAlgorithm.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/rule/KyCollisionMode.h"

#include <climits>
#include <limits>
#include <type_traits>

#include <gmock/gmock.h>

#include "model/ClearanceTables.h"
#include "support/FakeDataSource.h"
#include "support/Kinds.h"
#include "support/SceneBuilder.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::Rule;
using namespace kycb::test;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using Offsets = std::pair<int, int>;

constexpr int kToleranceA = 30;
constexpr int kToleranceB = 70;

KyCollisionMode Mode(int type, int tolerance = 0) {
    KyCollisionMode mode;
    mode.SetModeType(static_cast<EnumModeType>(type));
    mode.SetTolerance(tolerance);
    return mode;
}

// Two components, and what becomes of testing them.
struct Pair {
    SceneBuilder scene;
    bool clash = false;
    Offsets offsets;
    CQNIMPosition p1{-1, -1, -1};
    CQNIMPosition p2{-2, -2, -2};

    Pair(const AttCategory& kindA, const BoundingBox3d& boxA, const AttCategory& kindB,
         const BoundingBox3d& boxB) {
        scene.Add(L"a", kindA, boxA);
        scene.Add(L"b", kindB, boxB);
    }

    Pair& Check(KyCollisionMode modeA, KyCollisionMode modeB) {
        FakeDataSource source(scene);
        const auto model = scene.BuildModel();
        CollisionAlgorithm algorithm(ObjectOf(*model, L"a"), ObjectOf(*model, L"b"));
        algorithm.SetDataSource(&source);
        algorithm.SetCollisionMode(&modeA, &modeB);
        clash = algorithm.CollisionCheck(p1, p2);
        algorithm.GetBodyOffset(offsets.first, offsets.second);
        EXPECT_EQ(source.calls.size(), 2U);
        EXPECT_EQ(source.calls.front().bodyOffset, offsets.first);
        EXPECT_EQ(source.calls.back().bodyOffset, offsets.second);
        return *this;
    }
};

const BoundingBox3d kBoxA(0, 0, 0, 1000, 1000, 1000);
const BoundingBox3d kBoxB(500, 500, 500, 1500, 1500, 1500);

Offsets OffsetsOf(const AttCategory& kindA, int typeA, const AttCategory& kindB, int typeB) {
    return Pair(kindA, kBoxA, kindB, kBoxB)
        .Check(Mode(typeA, kToleranceA), Mode(typeB, kToleranceB))
        .offsets;
}

// What a pair of mode types calls for.
enum class Call { kNothing, kShrinkA, kShrinkB, kShrinkBoth, kClearance };

struct ModePair {
    int typeA;
    int typeB;
    Call call;
};

constexpr ModePair kModePairs[] = {
    {-1, -1, Call::kNothing},  {-1, 0, Call::kNothing},   {-1, 1, Call::kNothing},
    {-1, 2, Call::kNothing},   {-1, 3, Call::kNothing},   {0, -1, Call::kNothing},
    {0, 0, Call::kNothing},    {0, 1, Call::kClearance},  {0, 2, Call::kShrinkB},
    {0, 3, Call::kNothing},    {1, -1, Call::kClearance}, {1, 0, Call::kClearance},
    {1, 1, Call::kClearance},  {1, 2, Call::kClearance},  {1, 3, Call::kNothing},
    {2, -1, Call::kNothing},   {2, 0, Call::kShrinkA},    {2, 1, Call::kClearance},
    {2, 2, Call::kShrinkBoth}, {2, 3, Call::kNothing},    {3, -1, Call::kNothing},
    {3, 0, Call::kNothing},    {3, 1, Call::kNothing},    {3, 2, Call::kNothing},
    {3, 3, Call::kNothing},
};

// The offsets where the kinds give a clearance of `clearance`.
Offsets ExpectedOffsets(const ModePair& modes, const Offsets& clearance) {
    switch (modes.call) {
        case Call::kShrinkA:
            return {-kToleranceA, 0};
        case Call::kShrinkB:
            return {0, -kToleranceB};
        case Call::kShrinkBoth:
            return {-kToleranceA, -kToleranceB};
        case Call::kClearance:
            return clearance;
        case Call::kNothing:
            break;
    }
    return {0, 0};
}

// Where a clearance is called for but the kinds have none, only the mode 2 sides shrink.
Offsets ExpectedWithoutClearance(const ModePair& modes) {
    return ExpectedOffsets(
        modes, {modes.typeA == 2 ? -kToleranceA : 0, modes.typeB == 2 ? -kToleranceB : 0});
}

class AllModes : public ::testing::TestWithParam<ModePair> {};

TEST_P(AllModes, ChooseTheOffsetsOfEachPairOfKinds) {
    const ModePair modes = GetParam();
    const auto offsets = [&](const AttCategory& a, const AttCategory& b) {
        return OffsetsOf(a, modes.typeA, b, modes.typeB);
    };
    EXPECT_EQ(offsets(kWall, kBeam), ExpectedOffsets(modes, {0, 0}));
    EXPECT_EQ(offsets(kWall, kDuct), ExpectedOffsets(modes, {0, 200}));
    EXPECT_EQ(offsets(kDuct, kWall), ExpectedOffsets(modes, {200, 0}));
    EXPECT_EQ(offsets(kTray, kSlab), ExpectedOffsets(modes, {50, 0}));
    EXPECT_EQ(offsets(kDuct, kDrain), ExpectedOffsets(modes, {75, 75}));
    EXPECT_EQ(offsets(kDrain, kPressurePipe), ExpectedOffsets(modes, {200, 200}));
    EXPECT_EQ(offsets(kHotPipe, kDrain), ExpectedOffsets(modes, {200, 200}));
    EXPECT_EQ(offsets(kBox, kFurniture), ExpectedWithoutClearance(modes));
    EXPECT_EQ(offsets(kBox, kDuct), ExpectedWithoutClearance(modes));
    EXPECT_EQ(offsets(kWall, kBox), ExpectedWithoutClearance(modes));
}

INSTANTIATE_TEST_SUITE_P(Types, AllModes, ::testing::ValuesIn(kModePairs));

TEST(CollisionAlgorithm, TestsPlainBodiesOfTwoHardModes) {
    EXPECT_EQ(OffsetsOf(kDuct, 0, kDrain, 0), Offsets(0, 0));
}

TEST(CollisionAlgorithm, ShrinksTheToleranceSideAgainstAHardMode) {
    EXPECT_EQ(OffsetsOf(kDuct, 2, kDrain, 0), Offsets(-30, 0));
}

TEST(CollisionAlgorithm, CountsAToleranceOfModeTwoOnly) {
    EXPECT_EQ(OffsetsOf(kBox, 0, kBox, 0), Offsets(0, 0));
    EXPECT_EQ(OffsetsOf(kBox, 1, kBox, 1), Offsets(0, 0));
}

TEST(CollisionAlgorithm, GrowsByANegativeToleranceWithoutOverflow) {
    Pair pair(kBox, kBoxA, kBox, kBoxB);
    EXPECT_EQ(pair.Check(Mode(2, -40), Mode(2, INT_MIN)).offsets, Offsets(40, INT_MAX));
}

TEST(CollisionAlgorithm, HasSixKindsInItsSpacingTable) {
    constexpr int kExpected[6][6] = {
        {150, 150, 150, 150, 150, 200}, {150, 150, 150, 150, 150, 50},
        {150, 150, 150, 400, 400, 50},  {150, 150, 400, 150, 150, 50},
        {150, 150, 400, 150, 150, 50},  {200, 50, 50, 50, 50, 0},
    };
    for (int a = -1; a <= 8; ++a) {
        for (int b = -1; b <= 8; ++b) {
            const bool inTable = a >= 1 && a <= 6 && b >= 1 && b <= 6;
            EXPECT_EQ(kycb::model::RunSpacing(a, b), inTable ? kExpected[a - 1][b - 1] : 0)
                << a << " against " << b;
        }
    }
}

TEST(CollisionAlgorithm, KeepsASingleClearancePerKind) {
    constexpr int kExpected[] = {0, 200, 50, 50, 50, 50, 0, 0};
    for (int kind = 0; kind < 8; ++kind) {
        EXPECT_EQ(kycb::model::SingleClearance(kind), kExpected[kind]) << kind;
    }
    EXPECT_EQ(kycb::model::SingleClearance(-1), 0);
}

TEST(CollisionAlgorithm, HalvesTheSpacingOfEveryPairOfRuns) {
    const AttCategory runs[] = {kDuct, kTray, kDrain, kPressurePipe, kHotPipe};
    constexpr int kHalves[5][5] = {
        {75, 75, 75, 75, 75},  {75, 75, 75, 75, 75},  {75, 75, 75, 200, 200},
        {75, 75, 200, 75, 75}, {75, 75, 200, 75, 75},
    };
    for (std::size_t a = 0; a < 5; ++a) {
        for (std::size_t b = 0; b < 5; ++b) {
            EXPECT_EQ(OffsetsOf(runs[a], 1, runs[b], 1), Offsets(kHalves[a][b], kHalves[a][b]));
        }
    }
}

TEST(CollisionAlgorithm, GrowsEveryRunByItsClearanceAgainstStructure) {
    const AttCategory runs[] = {kDuct, kTray, kDrain, kPressurePipe, kHotPipe};
    constexpr int kClearances[] = {200, 50, 50, 50, 50};
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(OffsetsOf(runs[i], 1, kWall, 1), Offsets(kClearances[i], 0));
        EXPECT_EQ(OffsetsOf(kWall, 1, runs[i], 1), Offsets(0, kClearances[i]));
    }
}

TEST(CollisionAlgorithm, DeliversTheCornersOfTheTouchedRegion) {
    // The surfaces cut each other in curves that span 500 to 1000 on every axis.
    Pair pair(kBox, kBoxA, kBox, kBoxB);
    ASSERT_TRUE(pair.Check(Mode(0), Mode(0)).clash);
    EXPECT_EQ(pair.p1, CQNIMPosition(1000, 1000, 1000));
    EXPECT_EQ(pair.p2, CQNIMPosition(500, 500, 500));
}

TEST(CollisionAlgorithm, TakesTouchingBodiesForAClash) {
    Pair pair(kBox, kBoxA, kBox, {1000, 200, 200, 2000, 400, 600});
    ASSERT_TRUE(pair.Check(Mode(0), Mode(0)).clash);
    EXPECT_EQ(pair.p1, CQNIMPosition(1000, 400, 600));
    EXPECT_EQ(pair.p2, CQNIMPosition(1000, 200, 200));
}

TEST(CollisionAlgorithm, LeavesTheCornersAloneWithoutAClash) {
    Pair pair(kBox, kBoxA, kBox, {1001, 0, 0, 2000, 1000, 1000});
    EXPECT_FALSE(pair.Check(Mode(0), Mode(0)).clash);
    EXPECT_EQ(pair.p1, CQNIMPosition(-1, -1, -1));
    EXPECT_EQ(pair.p2, CQNIMPosition(-2, -2, -2));
}

TEST(CollisionAlgorithm, TouchesSurfacesSoABodyDeepInsideAnotherIsFree) {
    Pair pair(kBox, kBoxA, kBox, {400, 400, 400, 600, 600, 600});
    EXPECT_FALSE(pair.Check(Mode(0), Mode(0)).clash);
}

TEST(CollisionAlgorithm, FindsRunsThatAreNoFurtherApartThanTheirSpacing) {
    const auto clashAt = [](double distance) {
        Pair pair(kDuct, kBoxA, kDrain, {0, 1000 + distance, 0, 1000, 1100 + distance, 100});
        return pair.Check(Mode(1), Mode(1)).clash;
    };
    EXPECT_TRUE(clashAt(100));
    EXPECT_TRUE(clashAt(150));
    EXPECT_FALSE(clashAt(151));
}

TEST(CollisionAlgorithm, FindsADuctWithinItsClearanceOfASlab) {
    const auto clashAt = [](double distance) {
        Pair pair(kDuct, kBoxA, kSlab, {-100, -100, 1000 + distance, 1100, 1100, 2000});
        return pair.Check(Mode(1), Mode(0)).clash;
    };
    EXPECT_TRUE(clashAt(150));
    EXPECT_FALSE(clashAt(201));
}

TEST(CollisionAlgorithm, ForgivesAnOverlapBelowTheTolerance) {
    const BoundingBox3d overlappingBy50(950, 100, 100, 2000, 900, 900);
    Pair pair(kBox, kBoxA, kBox, overlappingBy50);
    EXPECT_TRUE(pair.Check(Mode(2, 30), Mode(0)).clash);
    EXPECT_FALSE(pair.Check(Mode(2, 60), Mode(0)).clash);
    EXPECT_FALSE(pair.Check(Mode(2, 30), Mode(2, 30)).clash);
}

TEST(CollisionAlgorithm, NeverFindsABodyThatIsShrunkToNothing) {
    Pair pair(kBox, {0, 0, 0, 100, 100, 100}, kBox, {50, 50, 50, 1000, 1000, 1000});
    EXPECT_FALSE(pair.Check(Mode(2, 50), Mode(0)).clash);
    EXPECT_TRUE(pair.Check(Mode(2, 10), Mode(0)).clash);
}

TEST(CollisionAlgorithm, NeverFindsComponentsWithoutMeshes) {
    for (const bool first : {true, false}) {
        SceneBuilder scene;
        SceneComponent& a = scene.Add(L"a", kBox, kBoxA);
        SceneComponent& b = scene.Add(L"b", kBox, kBoxB);
        (first ? a : b).WithoutBody();
        FakeDataSource source(scene);
        const auto model = scene.BuildModel();
        KyCollisionMode mode;
        CollisionAlgorithm algorithm(ObjectOf(*model, L"a"), ObjectOf(*model, L"b"));
        algorithm.SetDataSource(&source);
        algorithm.SetCollisionMode(&mode, &mode);
        CQNIMPosition p1;
        CQNIMPosition p2;
        EXPECT_FALSE(algorithm.CollisionCheck(p1, p2));
    }
}

TEST(CollisionAlgorithm, NeverFindsAMeshWithoutTriangles) {
    SceneBuilder scene;
    scene.Add(L"a", kBox, kBoxA).WithBody(FixedBody({}));
    scene.Add(L"b", kBox, kBoxB);
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    KyCollisionMode mode;
    CollisionAlgorithm algorithm(ObjectOf(*model, L"a"), ObjectOf(*model, L"b"));
    algorithm.SetDataSource(&source);
    algorithm.SetCollisionMode(&mode, &mode);
    CQNIMPosition p1;
    CQNIMPosition p2;
    EXPECT_FALSE(algorithm.CollisionCheck(p1, p2));
}

TEST(CollisionAlgorithm, FindsNothingWhileAnythingIsMissing) {
    const SceneBuilder scene = Pair(kBox, kBoxA, kBox, kBoxB).scene;
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    ObjectModelInfo* a = ObjectOf(*model, L"a");
    ObjectModelInfo* b = ObjectOf(*model, L"b");
    KyCollisionMode mode;
    const auto clash = [&](ObjectModelInfo* first, ObjectModelInfo* second, FakeDataSource* host,
                           KyCollisionMode* modeA, KyCollisionMode* modeB) {
        CollisionAlgorithm algorithm(first, second);
        algorithm.SetDataSource(host);
        algorithm.SetCollisionMode(modeA, modeB);
        CQNIMPosition p1;
        CQNIMPosition p2;
        return algorithm.CollisionCheck(p1, p2);
    };
    EXPECT_FALSE(clash(nullptr, b, &source, &mode, &mode));
    EXPECT_FALSE(clash(a, nullptr, &source, &mode, &mode));
    EXPECT_FALSE(clash(a, b, nullptr, &mode, &mode));
    EXPECT_FALSE(clash(a, b, &source, nullptr, &mode));
    EXPECT_FALSE(clash(a, b, &source, &mode, nullptr));
    EXPECT_THAT(source.calls, ::testing::IsEmpty());
    EXPECT_TRUE(clash(a, b, &source, &mode, &mode));
}

TEST(CollisionAlgorithm, TreatsComponentsOutsideATreeAsOfNoKind) {
    const SceneBuilder scene = Pair(kBox, kBoxA, kBox, kBoxB).scene;
    FakeDataSource source(scene);
    const std::unique_ptr<ObjectModelInfo> a(NewObject(scene.Components()[0]));
    const std::unique_ptr<ObjectModelInfo> b(NewObject(scene.Components()[1]));
    KyCollisionMode clearance = Mode(1);
    CollisionAlgorithm algorithm(a.get(), b.get());
    algorithm.SetDataSource(&source);
    algorithm.SetCollisionMode(&clearance, &clearance);
    CQNIMPosition p1;
    CQNIMPosition p2;
    EXPECT_TRUE(algorithm.CollisionCheck(p1, p2));
    Offsets offsets{-1, -1};
    algorithm.GetBodyOffset(offsets.first, offsets.second);
    EXPECT_EQ(offsets, Offsets(0, 0));
}

TEST(CollisionAlgorithm, CopiesAllItsFields) {
    const SceneBuilder scene = Pair(kDuct, kBoxA, kDrain, kBoxB).scene;
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    KyCollisionMode mode = Mode(1);
    CollisionAlgorithm algorithm(ObjectOf(*model, L"a"), ObjectOf(*model, L"b"));
    algorithm.SetDataSource(&source);
    algorithm.SetCollisionMode(&mode, &mode);
    CQNIMPosition p1;
    CQNIMPosition p2;
    ASSERT_TRUE(algorithm.CollisionCheck(p1, p2));
    CollisionAlgorithm copy(algorithm);
    Offsets offsets;
    copy.GetBodyOffset(offsets.first, offsets.second);
    EXPECT_EQ(offsets, Offsets(75, 75));
    CollisionAlgorithm assigned(nullptr, nullptr);
    assigned = copy;
    EXPECT_TRUE(assigned.CollisionCheck(p1, p2));
    EXPECT_TRUE(std::has_virtual_destructor_v<CollisionAlgorithm>);
}

TEST(CollisionAlgorithm, StartsWithOffsetsOfNothing) {
    const CollisionAlgorithm algorithm(nullptr, nullptr);
    Offsets offsets{-1, -1};
    algorithm.GetBodyOffset(offsets.first, offsets.second);
    EXPECT_EQ(offsets, Offsets(0, 0));
}

}  // namespace
