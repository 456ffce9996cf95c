// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <gmock/gmock.h>

#include "support/CheckedScene.h"
#include "support/Kinds.h"
#include "support/StopFlag.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BoundingBox3d kCube(0, 0, 0, 1000, 1000, 1000);

void Append(FloorModelInfo& floor, const AttCategory& kind, ObjectModelInfo* obj) {
    floor.AppendObject(kind.specialty, kind.dalei, kind.xiaolei, obj);
}

std::vector<std::wstring> Query(FloorModelInfo& floor, const BoundingBox3d& box) {
    std::vector<ObjectModelInfo*> found;
    floor.QueryEntity(box, found);
    return GuidsOf(found);
}

// What a query with kCube finds of one component that spans minZ to maxZ.
std::vector<std::wstring> QueryCubeAgainst(double minZ, double maxZ) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"b", {0, 0, minZ, 1000, 1000, maxZ}));
    Append(floor, kWall, NewObject(L"floor box", {5000, 5000, -9000, 6000, 6000, 9000}));
    floor.BuildQuadTree();
    return Query(floor, kCube);
}

TEST(FloorModelInfo, KeepsItsNameAndElevations) {
    FloorModelInfo floor(L"1F");
    EXPECT_EQ(floor.GetFloorName(), L"1F");
    EXPECT_EQ(floor.GetProjId(), -1);
    floor.setUnder(3000);
    EXPECT_EQ(floor.getUnder(), 3000);
}

TEST(FloorModelInfo, ReturnsTheHeightUnchangedAsTheTop) {
    FloorModelInfo floor(L"1F");
    floor.setUnder(3000);
    floor.setHeight(6000);
    EXPECT_EQ(floor.getTop(), 6000);
}

TEST(FloorModelInfo, OpensACategoryPerPathAndFilesByGuid) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"b", kCube));
    Append(floor, kWall, NewObject(L"a", kCube));
    Append(floor, kSlab, NewObject(L"c", kCube));
    ASSERT_EQ(floor.GetCategories().size(), 2U);
    const AttCategoryModelInfo* walls = floor.GetCategories().at(L"土建/墙/砼内墙");
    EXPECT_EQ(walls->GetAttCategory(), kWall);
    EXPECT_EQ(walls->GetCategoryPath(), L"土建/墙/砼内墙");
    EXPECT_EQ(walls->GetBelongFloorModel(), &floor);
    EXPECT_EQ(walls->GetCollisionRuleItem(), nullptr);
    EXPECT_EQ(walls->GetObjects().begin()->first, L"a");
    EXPECT_EQ(walls->GetObjects().size(), 2U);
    EXPECT_EQ(floor.GetAllObjectNum(), 3);
}

TEST(FloorModelInfo, KeepsComponentsOfOneGuidInTheOrderOfAppending) {
    FloorModelInfo floor(L"1F");
    ObjectModelInfo* first = NewObject(L"a", kCube);
    ObjectModelInfo* second = NewObject(L"a", kCube);
    Append(floor, kWall, first);
    Append(floor, kWall, second);
    const auto& objects = floor.GetCategories().begin()->second->GetObjects();
    EXPECT_EQ(objects.begin()->second, first);
    EXPECT_EQ(std::next(objects.begin())->second, second);
    EXPECT_EQ(floor.GetObjectModelInfo(L"a"), first);
}

TEST(FloorModelInfo, FilesRevitComponentsUnderTheKindThatOpenedTheirPath) {
    FloorModelInfo floor(L"1F");
    Append(floor, {L"Revit", L"墙", L"砖墙"}, NewObject(L"a", kCube));
    Append(floor, {L"Revit", L"墙", L"幕墙"}, NewObject(L"b", kCube));
    ASSERT_EQ(floor.GetCategories().size(), 1U);
    EXPECT_EQ(floor.GetCategories().at(L"Revit/墙")->GetAttCategory().xiaolei, L"砖墙");
    EXPECT_EQ(floor.GetObjectModelInfo(L"b")->GetBelongCategoryModel()->GetAttCategory().xiaolei,
              L"砖墙");
}

TEST(FloorModelInfo, FoldsTeklaKindsIntoTheirPath) {
    FloorModelInfo floor(L"1F");
    Append(floor, {L"Tekla", L"柱", L"钢柱"}, NewObject(L"a", kCube));
    EXPECT_EQ(floor.GetCategories().begin()->first, L"Tekla/钢结构/钢柱");
    EXPECT_EQ(floor.GetCategories().begin()->second->GetAttCategory().dalei, L"柱");
}

TEST(FloorModelInfo, LeavesAComponentWithoutACategoryPathToTheCaller) {
    FloorModelInfo floor(L"1F");
    const std::unique_ptr<ObjectModelInfo> obj(NewObject(L"a", kCube));
    floor.AppendObject(L"", L"墙", L"砼内墙", obj.get());
    floor.AppendObject(L"土建", L"", L"砼内墙", obj.get());
    EXPECT_EQ(obj->GetBelongCategoryModel(), nullptr);
    EXPECT_EQ(floor.GetAllObjectNum(), 0);
    EXPECT_TRUE(floor.GetFloorBox().IsNull());
    floor.AppendObject(L"土建", L"墙", L"砼内墙", nullptr);
    EXPECT_THAT(floor.GetCategories(), IsEmpty());
}

TEST(FloorModelInfo, GrowsItsBoxWithEachComponent) {
    FloorModelInfo floor(L"1F");
    EXPECT_TRUE(floor.GetFloorBox().IsNull());
    Append(floor, kWall, NewObject(L"a", {1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(floor.GetFloorBox(), BoundingBox3d(1, 2, 3, 4, 5, 6));
    Append(floor, kWall, NewObject(L"no box", BoundingBox3d()));
    Append(floor, kWall, NewObject(L"b", {0, 3, 3, 2, 9, 5}));
    EXPECT_EQ(floor.GetFloorBox(), BoundingBox3d(0, 2, 3, 4, 9, 6));
}

TEST(FloorModelInfo, FindsNothingBeforeTheTreeIsBuilt) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", kCube));
    EXPECT_THAT(Query(floor, kCube), IsEmpty());
    floor.BuildQuadTree();
    EXPECT_THAT(Query(floor, kCube), ElementsAre(L"a"));
}

TEST(FloorModelInfo, FindsComponentsAppendedLaterOnlyAfterTheNextBuild) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", kCube));
    floor.BuildQuadTree();
    Append(floor, kWall, NewObject(L"b", kCube));
    EXPECT_THAT(Query(floor, kCube), ElementsAre(L"a"));
    floor.BuildQuadTree();
    EXPECT_THAT(Query(floor, kCube), ElementsAre(L"a", L"b"));
}

TEST(FloorModelInfo, FindsNothingForABoxThatMissesTheFloorBox) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", kCube));
    floor.BuildQuadTree();
    EXPECT_THAT(Query(floor, {0, 0, 1000.5, 1000, 1000, 2000}), IsEmpty());
    EXPECT_THAT(Query(floor, {2000, 0, 0, 3000, 1000, 1000}), IsEmpty());
    EXPECT_THAT(Query(floor, BoundingBox3d()), IsEmpty());
}

TEST(FloorModelInfo, FindsComponentsThatTouchTheBoxInPlan) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", kCube));
    floor.BuildQuadTree();
    EXPECT_THAT(Query(floor, {1000, 1000, 0, 2000, 2000, 1000}), ElementsAre(L"a"));
    EXPECT_THAT(Query(floor, {1000.01, 1000, 0, 2000, 2000, 1000}), IsEmpty());
}

TEST(FloorModelInfo, PassesComponentsOverThatOverlapVerticallyByLessThanOneMillimetre) {
    EXPECT_THAT(QueryCubeAgainst(999.5, 2000), IsEmpty());
    EXPECT_THAT(QueryCubeAgainst(1000, 2000), IsEmpty());
    EXPECT_THAT(QueryCubeAgainst(-1000, 0.5), IsEmpty());
    EXPECT_THAT(QueryCubeAgainst(999.001, 2000), IsEmpty());
    EXPECT_THAT(QueryCubeAgainst(-1000, 0.999), IsEmpty());
    // The narrowed range is closed: exactly one millimetre suffices.
    EXPECT_THAT(QueryCubeAgainst(999, 2000), ElementsAre(L"b"));
    EXPECT_THAT(QueryCubeAgainst(-1000, 1), ElementsAre(L"b"));
    EXPECT_THAT(QueryCubeAgainst(400, 600), ElementsAre(L"b"));
}

TEST(FloorModelInfo, ComparesAVerticalRangeNarrowedToNothingAsItStands) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"inside", {0, 0, 0.2, 10, 10, 0.8}));
    Append(floor, kWall, NewObject(L"same", {0, 0, 0, 10, 10, 1}));
    Append(floor, kWall, NewObject(L"through", {0, 0, -5, 10, 10, 5}));
    floor.BuildQuadTree();
    // [0, 1] becomes [1, 0]: only what reaches from 0 to 1 overlaps it.
    EXPECT_THAT(Query(floor, {0, 0, 0, 10, 10, 1}), ElementsAre(L"same", L"through"));
}

TEST(FloorModelInfo, KeepsAllComponentsOfANarrowFloorInTheRoot) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", {0, 0, 0, 10, 10, 100}));
    Append(floor, kWall, NewObject(L"b", {480, 9000, 0, 490, 9010, 100}));
    floor.BuildQuadTree();
    // In quadrants, b (upper right) would come first.
    EXPECT_THAT(Query(floor, {0, 0, 0, 1000, 10000, 100}), ElementsAre(L"a", L"b"));
    Append(floor, kWall, NewObject(L"c", {490, 0, 0, 500, 10, 100}));
    floor.BuildQuadTree();
    EXPECT_THAT(Query(floor, {0, 0, 0, 1000, 10000, 100}), ElementsAre(L"b", L"c", L"a"));
}

TEST(FloorModelInfo, InsertsInTheOrderOfCategoryPathThenGuid) {
    FloorModelInfo floor(L"1F");
    Append(floor, kSlab, NewObject(L"a", kCube));
    Append(floor, kWall, NewObject(L"z", kCube));
    Append(floor, kWall, NewObject(L"b", kCube));
    floor.BuildQuadTree();
    // "土建/墙/..." sorts before "土建/楼梯楼板/..." (U+5899 before U+697C).
    EXPECT_THAT(Query(floor, kCube), ElementsAre(L"b", L"z", L"a"));
}

TEST(FloorModelInfo, ComparesTheBoxThatAComponentHasNow) {
    FloorModelInfo floor(L"1F");
    ObjectModelInfo* obj = NewObject(L"a", {0, 0, 0, 100, 100, 100});
    Append(floor, kWall, obj);
    Append(floor, kWall, NewObject(L"b", {900, 900, 0, 1000, 1000, 100}));
    floor.BuildQuadTree();
    obj->SetBoundingBox({200, 200, 0, 300, 300, 100});
    EXPECT_THAT(Query(floor, {0, 0, 0, 150, 150, 100}), IsEmpty());
    EXPECT_THAT(Query(floor, {250, 250, 0, 260, 260, 100}), ElementsAre(L"a"));
}

TEST(FloorModelInfo, FindsAGuidInLowerCaseOnly) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"abc-12", kCube));
    Append(floor, kWall, NewObject(L"DEF-34", kCube));
    EXPECT_NE(floor.GetObjectModelInfo(L"abc-12"), nullptr);
    EXPECT_EQ(floor.GetObjectModelInfo(L"ABC-12"), floor.GetObjectModelInfo(L"abc-12"));
    EXPECT_EQ(floor.GetObjectModelInfo(L"DEF-34"), nullptr);
    EXPECT_EQ(floor.GetObjectModelInfo(L"def-34"), nullptr);
    EXPECT_EQ(floor.GetObjectModelInfo(L"xyz"), nullptr);
}

TEST(FloorModelInfo, FindsTheFirstOfSeveralComponentsOfOneGuidInPathOrder) {
    FloorModelInfo floor(L"1F");
    Append(floor, kSlab, NewObject(L"a", kCube));
    Append(floor, kWall, NewObject(L"a", kCube));
    EXPECT_EQ(floor.GetObjectModelInfo(L"a")->GetBelongCategoryModel()->GetAttCategory(), kWall);
}

TEST(FloorModelInfo, BindsEachCategoryToTheRuleItemOfItsPath) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", kCube));
    Append(floor, kSlab, NewObject(L"b", kCube));
    const auto rules = HardRulesFor({kWall});
    floor.ResetModelByCollisionRule(rules.get());
    const auto itemOf = [&](const AttCategory& kind) {
        return floor.GetCategories().at(PathOf(kind))->GetCollisionRuleItem();
    };
    ASSERT_NE(itemOf(kWall), nullptr);
    EXPECT_EQ(itemOf(kWall)->GetAttName(), PathOf(kWall));
    EXPECT_EQ(itemOf(kSlab), nullptr);
    floor.ResetModelByCollisionRule(nullptr);
    EXPECT_NE(itemOf(kWall), nullptr);
    const auto noRules = HardRulesFor({});
    floor.ResetModelByCollisionRule(noRules.get());
    EXPECT_EQ(itemOf(kWall), nullptr);
}

TEST(FloorModelInfo, ClearsClashesAndNothingElse) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, kCube);
    scene.Add(L"b", kWall, kCube);
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    ObjectModelInfo* a = ObjectOf(*model, L"a");
    a->AppendCollisionObj({ObjectOf(*model, L"b"), {}, 0, 0});
    FloorOf(*model)->ClearCollisionResultData();
    EXPECT_THAT(a->GetCollisionObjs(), IsEmpty());
    EXPECT_EQ(a->GetBoxRelatedObjs().size(), 1U);
}

// Components that stand apart, of a kind without a rule and of two with one. Without a diameter
// filter the check of a component asks for its attributes once, which shows the order.
SceneBuilder ThreeKinds() {
    SceneBuilder scene;
    scene.Add(L"z", kDuct, {0, 0, 0, 1, 1, 1});
    scene.Add(L"c", kWall, {10, 0, 0, 11, 1, 1});
    scene.Add(L"a", kSlab, {20, 0, 0, 21, 1, 1});
    scene.Add(L"b", kWall, {30, 0, 0, 31, 1, 1});
    return scene;
}

std::vector<std::wstring> AskedOf(const FakeDataSource& source) {
    std::vector<std::wstring> ids;
    for (const RecordedCall& call : source.calls) {
        ids.push_back(call.id);
    }
    return ids;
}

TEST(FloorModelInfo, ChecksKindsWithARuleInPathOrderAndTheirComponentsInGuidOrder) {
    CheckedScene checked(ThreeKinds(), {kDuct, kWall});
    checked.CheckFloor();
    EXPECT_EQ(checked.checkedCount, 3);
    EXPECT_EQ(FloorOf(*checked.model)->GetAllObjectNum(), 4);
    // "土建" (U+571F) is before "暖通" (U+6696); among the walls b comes before c.
    EXPECT_THAT(AskedOf(checked.source), ElementsAre(L"obj:3", L"obj:1", L"obj:0"));
}

TEST(FloorModelInfo, StopsAfterTheComponentDuringWhichTheFlagIsSet) {
    StopFlag stop;
    CheckedScene checked(ThreeKinds(), {kDuct, kWall});
    checked.source.onCall = [&](const RecordedCall& call) {
        if (call.id == L"obj:1") stop.Set();
    };
    checked.CheckFloor();
    EXPECT_EQ(checked.checkedCount, 2);
    EXPECT_THAT(AskedOf(checked.source), ElementsAre(L"obj:3", L"obj:1"));
}

TEST(FloorModelInfo, CanBeReleasedAndFilledAgain) {
    FloorModelInfo floor(L"1F");
    Append(floor, kWall, NewObject(L"a", kCube));
    floor.BuildQuadTree();
    floor.ReleaseModel();
    EXPECT_EQ(floor.GetAllObjectNum(), 0);
    EXPECT_THAT(Query(floor, kCube), IsEmpty());
    Append(floor, kWall, NewObject(L"b", kCube));
    floor.BuildQuadTree();
    EXPECT_THAT(Query(floor, kCube), ElementsAre(L"b"));
}

TEST(AttCategoryModelInfo, AnswersThePredicatesOfItsCategory) {
    EXPECT_TRUE(AttCategoryModelInfo(kWall).IsStructuralMember());
    EXPECT_EQ(AttCategoryModelInfo(kWall).GetRunKind(), 0);
    EXPECT_EQ(AttCategoryModelInfo(kDrain).GetRunKind(), 3);
    EXPECT_TRUE(AttCategoryModelInfo(kDrain).IsDiameterFiltered());
    EXPECT_FALSE(AttCategoryModelInfo(kDuct).IsDiameterFiltered());
}

}  // namespace
