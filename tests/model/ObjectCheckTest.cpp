// SPDX-License-Identifier: Apache-2.0
// The check of one component against its neighbours.
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <gmock/gmock.h>

#include "support/CheckedScene.h"
#include "support/Kinds.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::Rule;
using namespace kycb::test;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A pipe along x through a wall; a second pipe crosses the first.
const BoundingBox3d kWallBox(1000, -1000, 0, 1200, 3000, 3000);
const BoundingBox3d kPipeBox(0, 0, 1000, 3000, 100, 1100);
const BoundingBox3d kOtherPipeBox(500, -500, 1050, 600, 900, 1150);

SceneBuilder WallAndPipe() {
    SceneBuilder scene;
    scene.Add(L"pipe", kDrain, kPipeBox).Attribute(L"pipegczj", L"100");
    scene.Add(L"wall", kWall, kWallBox);
    return scene;
}

SceneBuilder TwoPipes(const wchar_t* diameterA, const wchar_t* diameterB) {
    SceneBuilder scene;
    scene.Add(L"a", kDrain, kPipeBox).Attribute(L"pipegczj", diameterA);
    scene.Add(L"b", kPressurePipe, kOtherPipeBox).Attribute(L"pipegczj", diameterB);
    return scene;
}

std::vector<std::wstring> IdsOf(const std::vector<RecordedCall>& calls) {
    std::vector<std::wstring> ids;
    for (const RecordedCall& call : calls) {
        ids.push_back(call.id);
    }
    return ids;
}

TEST(ObjectCheck, RecordsAClashOnBothComponentsWithTheMiddleOfTheTouchedRegion) {
    RuleBuilder rules;
    rules.Item(kDrain).Mode(eModeTolerance, 10);
    rules.Item(kWall);
    CheckedScene checked(WallAndPipe(), rules);
    checked.Check(L"pipe");
    ASSERT_THAT(checked.ClashesOf(L"pipe"), ElementsAre(L"wall"));
    ASSERT_THAT(checked.ClashesOf(L"wall"), ElementsAre(L"pipe"));
    // The pipe, 10 thinner all around, pierces both faces of the wall: x from 1000 to 1200, y from
    // 10 to 90, z from 1010 to 1090.
    const SCollisionWithObj& own = checked.Object(L"pipe").GetCollisionObjs()[0];
    EXPECT_EQ(own.clashPoint, CQNIMPosition(1100, 50, 1050));
    EXPECT_EQ(own.ownBodyOffset, -10);
    EXPECT_EQ(own.otherBodyOffset, 0);
    const SCollisionWithObj& mirrored = checked.Object(L"wall").GetCollisionObjs()[0];
    EXPECT_EQ(mirrored.clashPoint, CQNIMPosition(1100, 50, 1050));
    EXPECT_EQ(mirrored.ownBodyOffset, 0);
    EXPECT_EQ(mirrored.otherBodyOffset, -10);
}

TEST(ObjectCheck, TestsAPairOnce) {
    CheckedScene checked(WallAndPipe(), {kDrain, kWall});
    checked.CheckFloor();
    EXPECT_EQ(checked.checkedCount, 2);
    EXPECT_THAT(checked.ClashesOf(L"pipe"), ElementsAre(L"wall"));
    EXPECT_THAT(checked.ClashesOf(L"wall"), ElementsAre(L"pipe"));
    EXPECT_EQ(checked.source.CallsOf(HostCall::kCreateMesh).size(), 2U);
}

TEST(ObjectCheck, RecordsNothingForBodiesThatDoNotTouch) {
    SceneBuilder scene = WallAndPipe();
    scene.Add(L"short", kDrain, {0, 0, 2000, 900, 100, 2100}).BoxGrownBy(300);
    CheckedScene checked(scene, {kDrain, kWall});
    checked.Check(L"short");
    EXPECT_EQ(checked.Object(L"short").GetBoxRelatedObjs().size(), 1U);
    EXPECT_THAT(checked.ClashesOf(L"short"), IsEmpty());
    EXPECT_THAT(checked.ClashesOf(L"wall"), IsEmpty());
}

TEST(ObjectCheck, CountsAComponentBeforeAnyTest) {
    int count = 5;
    ObjectModelInfo alone(boost::any(1));
    alone.CollisionCheck(nullptr, count);
    EXPECT_EQ(count, 6);
    RuleBuilder rules;
    rules.Item(kDrain).Filter(L"DN>=150");
    rules.Item(kWall);
    CheckedScene checked(WallAndPipe(), rules);
    checked.Check(L"pipe");
    EXPECT_EQ(checked.checkedCount, 1);
    EXPECT_THAT(checked.ClashesOf(L"pipe"), IsEmpty());
}

TEST(ObjectCheck, DoesNothingForAComponentWithoutARule) {
    CheckedScene checked(WallAndPipe(), {kWall});
    checked.Check(L"pipe");
    EXPECT_THAT(checked.source.calls, IsEmpty());
}

TEST(ObjectCheck, PassesANeighbourWithoutARuleOver) {
    CheckedScene checked(WallAndPipe(), {kDrain});
    checked.Check(L"pipe");
    EXPECT_THAT(checked.ClashesOf(L"pipe"), IsEmpty());
    EXPECT_THAT(checked.source.CallsOf(HostCall::kCreateMesh), IsEmpty());
}

TEST(ObjectCheck, PassesANeighbourOverThatGoesByItsOwnGuidOnItsOwnFloor) {
    CheckedScene checked(WallAndPipe(), {kDrain, kWall});
    ObjectModelInfo& pipe = checked.Object(L"pipe");
    checked.Object(L"wall").SetObjGuid(L"pipe");  // after the neighbours were listed
    ASSERT_EQ(pipe.GetBoxRelatedObjs().size(), 1U);
    checked.Check(L"pipe");
    EXPECT_THAT(pipe.GetCollisionObjs(), IsEmpty());
    EXPECT_THAT(checked.source.CallsOf(HostCall::kCreateMesh), IsEmpty());
}

TEST(ObjectCheck, TestsANeighbourOfItsOwnGuidOnAnotherFloor) {
    SceneBuilder scene;
    scene.At(1, L"1F").Add(L"same", kDrain, kPipeBox);
    scene.At(1, L"2F").Add(L"same", kWall, kWallBox);
    CheckedScene checked(scene, {kDrain, kWall});
    checked.Check(L"same");
    EXPECT_THAT(checked.ClashesOf(L"same"), ElementsAre(L"same"));
}

TEST(ObjectCheck, FindsNothingWithoutADataSource) {
    CheckedScene checked(WallAndPipe(), {kDrain, kWall});
    int count = 0;
    checked.Object(L"pipe").CollisionCheck(nullptr, count);
    EXPECT_EQ(count, 1);
    EXPECT_THAT(checked.ClashesOf(L"pipe"), IsEmpty());
}

TEST(ObjectCheck, AsksNothingButTheDiameterOfAComponentThatItsFilterExcludes) {
    RuleBuilder rules;
    rules.Item(kDrain).Filter(L"DN>=150");
    rules.Item(kWall);
    CheckedScene checked(WallAndPipe(), rules);
    checked.Check(L"pipe");
    ASSERT_EQ(checked.source.calls.size(), 1U);
    EXPECT_EQ(checked.source.calls[0].call, HostCall::kAttributes);
    EXPECT_EQ(checked.source.calls[0].id, L"obj:0");
}

TEST(ObjectCheck, TakesAComponentThatMeetsItsFilter) {
    RuleBuilder rules;
    rules.Item(kDrain).Filter(L"DN>=100");
    rules.Item(kWall);
    CheckedScene checked(WallAndPipe(), rules);
    checked.Check(L"pipe");
    EXPECT_THAT(checked.ClashesOf(L"pipe"), ElementsAre(L"wall"));
}

TEST(ObjectCheck, TakesAPipeWhoseDiameterIsUnknown) {
    SceneBuilder scene;
    scene.Add(L"pipe", kDrain, kPipeBox);
    scene.Add(L"wall", kWall, kWallBox);
    RuleBuilder rules;
    rules.Item(kDrain).Filter(L"DN>=150");
    rules.Item(kWall);
    CheckedScene checked(scene, rules);
    checked.Check(L"pipe");
    EXPECT_THAT(checked.ClashesOf(L"pipe"), ElementsAre(L"wall"));
}

TEST(ObjectCheck, FiltersWaterPipesOnly) {
    SceneBuilder scene;
    scene.Add(L"tray", kTray, kPipeBox).Attribute(L"pipegczj", L"10");
    scene.Add(L"wall", kWall, kWallBox);
    RuleBuilder rules;
    rules.Item(kTray).Filter(L"DN>=150");
    rules.Item(kWall);
    CheckedScene checked(scene, rules);
    checked.Check(L"tray");
    EXPECT_THAT(checked.ClashesOf(L"tray"), ElementsAre(L"wall"));
}

TEST(ObjectCheck, MeasuresTheNeighbourByTheFilterOfTheCheckedComponent) {
    RuleBuilder filterOnA;
    filterOnA.Item(kDrain).Filter(L"DN>=100");
    filterOnA.Item(kPressurePipe);
    CheckedScene small(TwoPipes(L"100", L"50"), filterOnA);
    small.Check(L"a");
    EXPECT_THAT(small.ClashesOf(L"a"), IsEmpty());
    CheckedScene large(TwoPipes(L"100", L"150"), filterOnA);
    large.Check(L"a");
    EXPECT_THAT(large.ClashesOf(L"a"), ElementsAre(L"b"));
}

TEST(ObjectCheck, DoesNotMeasureTheNeighbourByItsOwnFilter) {
    RuleBuilder filterOnB;
    filterOnB.Item(kDrain);
    filterOnB.Item(kPressurePipe).Filter(L"DN>=100");
    CheckedScene checked(TwoPipes(L"50", L"50"), filterOnB);
    checked.Check(L"b");
    EXPECT_THAT(checked.ClashesOf(L"b"), IsEmpty());
    checked.Check(L"a");
    EXPECT_THAT(checked.ClashesOf(L"a"), ElementsAre(L"b"));
}

TEST(ObjectCheck, TestsAPairOnlyWhenBothRulesAdmitIt) {
    RuleBuilder excludedByA;
    excludedByA.Item(kDrain).Exclude({0, L"土建", L"", L""});
    excludedByA.Item(kWall);
    RuleBuilder excludedByB;
    excludedByB.Item(kDrain);
    excludedByB.Item(kWall).Exclude({2, L"给排水", L"管道", L"污水管"});
    RuleBuilder excludedElsewhere;
    excludedElsewhere.Item(kDrain).Exclude({1, L"土建", L"梁", L""});
    excludedElsewhere.Item(kWall).Exclude({2, L"给排水", L"管道", L"给水管"});
    for (const wchar_t* start : {L"pipe", L"wall"}) {
        CheckedScene byA(WallAndPipe(), excludedByA);
        byA.Check(start);
        EXPECT_THAT(byA.ClashesOf(L"pipe"), IsEmpty());
        CheckedScene byB(WallAndPipe(), excludedByB);
        byB.Check(start);
        EXPECT_THAT(byB.ClashesOf(L"pipe"), IsEmpty());
        CheckedScene admitted(WallAndPipe(), excludedElsewhere);
        admitted.Check(start);
        EXPECT_THAT(admitted.ClashesOf(L"pipe"), ElementsAre(L"wall"));
    }
}

class RelatedObjects : public ::testing::TestWithParam<std::tuple<const wchar_t*, const wchar_t*>> {
};

TEST_P(RelatedObjects, AreNeverTestedAgainstEachOther) {
    const auto& [owner, attribute] = GetParam();
    const std::wstring ownGuid = owner;
    const std::wstring otherGuid = ownGuid == L"pipe" ? L"wall" : L"pipe";
    for (const wchar_t* start : {L"pipe", L"wall"}) {
        SceneBuilder scene;
        SceneComponent& pipe = scene.Add(L"pipe", kDrain, kPipeBox);
        SceneComponent& wall = scene.Add(L"wall", kWall, kWallBox);
        (ownGuid == L"pipe" ? pipe : wall).Attribute(attribute, L"x," + otherGuid + L",y");
        CheckedScene checked(scene, {kDrain, kWall});
        checked.Check(start);
        EXPECT_THAT(checked.ClashesOf(start), IsEmpty());
        EXPECT_THAT(checked.source.CallsOf(HostCall::kCreateMesh), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(AllLists, RelatedObjects,
                         ::testing::Combine(::testing::Values(L"pipe", L"wall"),
                                            ::testing::Values(L"relatedobjs", L"relatedfits")));

TEST(ObjectCheck, AsksForAttributesAfreshInTheOrderOfTheTests) {
    SceneBuilder scene;
    scene.Add(L"a", kDrain, kPipeBox).Attribute(L"pipegczj", L"100");
    scene.Add(L"b", kPressurePipe, kOtherPipeBox).Attribute(L"pipegczj", L"100");
    scene.Add(L"c", kWall, kWallBox);
    RuleBuilder rules;
    rules.Item(kDrain).Filter(L"DN>=100");
    rules.Item(kPressurePipe);
    rules.Item(kWall);
    CheckedScene checked(scene, rules);
    ASSERT_THAT(GuidsOf(checked.Object(L"a").GetBoxRelatedObjs()), ElementsAre(L"c", L"b"));
    checked.Check(L"a");
    // Own diameter and lists; the wall's lists, then both meshes; b's lists, diameter and mesh.
    EXPECT_THAT(IdsOf(checked.source.calls), ElementsAre(L"obj:0", L"obj:0", L"obj:2", L"obj:0",
                                                         L"obj:2", L"obj:1", L"obj:1", L"obj:1"));
    EXPECT_EQ(checked.source.CallsOf(HostCall::kAttributes).size(), 5U);
}

TEST(ObjectCheck, ReadsANeighboursListsEvenWhenThePairIsKnownAlready) {
    CheckedScene checked(WallAndPipe(), {kDrain, kWall});
    checked.Check(L"pipe");
    checked.source.calls.clear();
    checked.Check(L"wall");
    EXPECT_THAT(IdsOf(checked.source.calls), ElementsAre(L"obj:1", L"obj:0"));
}

TEST(ObjectCheck, DoesNotAskForAListOfANeighbourThatTheOwnListNames) {
    SceneBuilder scene = WallAndPipe();
    scene.Add(L"tee", kDrain, kOtherPipeBox).Attribute(L"relatedfits", L"pipe");
    CheckedScene checked(scene, {kDrain});
    checked.Check(L"tee");
    EXPECT_THAT(IdsOf(checked.source.calls), ElementsAre(L"obj:2"));
}

TEST(ObjectCheck, GrowsServicesRunsThatKeepTooLittleDistance) {
    SceneBuilder scene;
    scene.Add(L"duct", kDuct, {0, 0, 0, 5000, 400, 400}).BoxGrownBy(200);
    scene.Add(L"near", kDrain, {0, 540, 0, 5000, 600, 100}).BoxGrownBy(200);
    scene.Add(L"far", kDrain, {0, 400, 660, 5000, 600, 760}).BoxGrownBy(200);
    RuleBuilder rules;
    rules.Item(kDuct).Mode(eModeClearance);
    rules.Item(kDrain).Mode(eModeClearance);
    CheckedScene checked(scene, rules);
    ASSERT_EQ(checked.Object(L"duct").GetBoxRelatedObjs().size(), 2U);
    checked.Check(L"duct");
    ASSERT_THAT(checked.ClashesOf(L"duct"), ElementsAre(L"near"));
    EXPECT_EQ(checked.Object(L"duct").GetCollisionObjs()[0].ownBodyOffset, 75);
    EXPECT_EQ(checked.Object(L"duct").GetCollisionObjs()[0].otherBodyOffset, 75);
}

TEST(ObjectCheck, AsksForTeklaMeshesByPartAndForAttributesByObject) {
    SceneBuilder scene;
    scene.Add(L"beam", kTeklaBeam, kPipeBox).PartId(L"part-7");
    scene.Add(L"wall", kWall, kWallBox);
    CheckedScene checked(scene, {kTeklaBeam, kWall});
    checked.Check(L"beam");
    EXPECT_THAT(IdsOf(checked.source.CallsOf(HostCall::kAttributes)),
                ElementsAre(L"obj:0", L"obj:1"));
    EXPECT_THAT(IdsOf(checked.source.CallsOf(HostCall::kCreateMesh)),
                ElementsAre(L"part-7", L"obj:1"));
    EXPECT_THAT(checked.ClashesOf(L"beam"), ElementsAre(L"wall"));
}

TEST(ObjectCheck, KeepsEarlierClashesWhenTheHostFailsLater) {
    SceneBuilder scene = WallAndPipe();
    scene.Add(L"z", kWall, {2000, -1000, 0, 2200, 3000, 3000});
    CheckedScene checked(scene, {kDrain, kWall});
    ASSERT_EQ(checked.Object(L"pipe").GetBoxRelatedObjs().size(), 2U);
    checked.source.ThrowAt(HostCall::kCreateMesh, 3);
    EXPECT_THROW(checked.Check(L"pipe"), std::runtime_error);
    EXPECT_EQ(checked.ClashesOf(L"pipe").size(), 1U);
    EXPECT_EQ(checked.checkedCount, 1);
}

}  // namespace
