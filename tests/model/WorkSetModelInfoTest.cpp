// SPDX-License-Identifier: Apache-2.0
// The tree: filing, replacing, looking up, and the way of an operation from the root to a floor.
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/result/CExistingHole.h"

#include <type_traits>

#include <gmock/gmock.h>

#include "support/FakeDataSource.h"
#include "support/Kinds.h"
#include "support/SceneBuilder.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BoundingBox3d kBoxA(0, 0, 0, 1000, 1000, 1000);
const BoundingBox3d kBoxB(500, 500, 500, 1500, 1500, 1500);

// Two projects of one floor each; the two components overlap.
SceneBuilder TwoProjects() {
    SceneBuilder scene;
    scene.At(1, L"1F").Add(L"a", kWall, kBoxA);
    scene.At(2, L"1F").Add(L"b", kSlab, kBoxB);
    return scene;
}

// Counts its own end.
class CountedObject : public ObjectModelInfo {
  public:
    CountedObject(const std::wstring& guid, const BoundingBox3d& box, int& deleted)
        : ObjectModelInfo(boost::any(guid)), deleted_(deleted) {
        SetObjGuid(guid);
        SetBoundingBox(box);
    }
    ~CountedObject() override { ++deleted_; }

  private:
    int& deleted_;
};

FloorModelInfo* NewFloorWith(const std::wstring& guid, const BoundingBox3d& box, int& deleted) {
    auto* floor = new FloorModelInfo(L"1F");
    floor->AppendObject(kWall.specialty, kWall.dalei, kWall.xiaolei,
                        new CountedObject(guid, box, deleted));
    floor->BuildQuadTree();
    return floor;
}

TEST(WorkSetModelInfo, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<WorkSetModelInfo>);
    EXPECT_FALSE(std::is_copy_constructible_v<ProjectModelInfo>);
    EXPECT_FALSE(std::is_copy_constructible_v<FloorModelInfo>);
    EXPECT_FALSE(std::is_copy_constructible_v<AttCategoryModelInfo>);
    EXPECT_FALSE(std::is_copy_constructible_v<ObjectModelInfo>);
    EXPECT_FALSE(std::is_copy_assignable_v<ObjectModelInfo>);
}

TEST(WorkSetModelInfo, StartsWithTheDefaultDescriptionAndTakesAnother) {
    WorkSetModelInfo model;
    EXPECT_EQ(model.GetModelInfo().modelType, 1);
    EXPECT_EQ(model.GetModelInfo().modelId, -1);
    model.SetModelInfo({static_cast<KyModelType>(7), 42});
    EXPECT_EQ(model.GetModelInfo().modelType, 7);
    EXPECT_EQ(model.GetModelInfo().modelId, 42);
    EXPECT_TRUE((std::is_same_v<KYCOLLISION::MODEL::SKyModelInfo, ::SKyModelInfo>));
}

TEST(WorkSetModelInfo, LinksProjectsFloorsAndComponentsUpwards) {
    const auto model = TwoProjects().BuildModel();
    const ObjectModelInfo* obj = ObjectOf(*model, L"b");
    EXPECT_EQ(obj->GetBelongWorkset(), model.get());
    EXPECT_EQ(obj->GetProjId(), 2);
    EXPECT_EQ(obj->GetFloorName(), L"1F");
    EXPECT_EQ(model->GetProject(2)->GetBelongWorkSetModel(), model.get());
    EXPECT_EQ(FloorOf(*model, 2)->GetBelongProject(), model->GetProject(2));
    EXPECT_EQ(obj->GetBelongCategoryModel()->GetBelongFloorModel(), FloorOf(*model, 2));
}

TEST(WorkSetModelInfo, ComponentWithoutATreeHasNoProjectFloorOrWorkSet) {
    const std::unique_ptr<ObjectModelInfo> obj(NewObject(L"a", kBoxA));
    EXPECT_EQ(obj->GetProjId(), -1);
    EXPECT_EQ(obj->GetFloorName(), L"");
    EXPECT_EQ(obj->GetBelongWorkset(), nullptr);
    obj->AnalyseBoxRelated();
    EXPECT_THAT(obj->GetBoxRelatedObjs(), IsEmpty());
}

TEST(WorkSetModelInfo, FindsProjectsAndFloorsByExactKeysOnly) {
    const auto model = TwoProjects().BuildModel();
    EXPECT_EQ(model->GetProject(3), nullptr);
    EXPECT_EQ(model->GetProject(1)->GetProjId(), 1);
    EXPECT_EQ(model->GetProject(1)->GetFloorModel(L"1f"), nullptr);
    EXPECT_EQ(model->GetProject(1)->GetFloorModel(L"1F")->GetFloorName(), L"1F");
}

TEST(WorkSetModelInfo, DoesNothingForKeysThatNameNoFloor) {
    const auto model = TwoProjects().BuildModel();
    FakeDataSource source(TwoProjects());
    for (const ICollisionModel::FloorKey& key :
         {ICollisionModel::FloorKey{3, L"1F"}, ICollisionModel::FloorKey{1, L"2F"}}) {
        int checked = 0;
        std::vector<KYCOLLISION::RESULT::KyResultItem*> items;
        std::vector<std::shared_ptr<KYCOLLISION::RESULT::CExistingHole>> holes;
        model->AnalyseBoxRelated(key);
        model->CollisionCheck(&source, key, checked);
        model->GetFloorCollisionResult(&source, key, items);
        model->GetFloorExistingHoles(&source, key, holes);
        EXPECT_EQ(checked, 0);
        EXPECT_EQ(model->GetAllObjectNum(key), 0);
        EXPECT_EQ(model->GetFloorResultTempNum(&source, key), 0);
        EXPECT_EQ(model->GetObjectModelInfo(key, L"a"), nullptr);
        EXPECT_THAT(items, IsEmpty());
        EXPECT_THAT(holes, IsEmpty());
    }
    EXPECT_THAT(source.calls, IsEmpty());
    EXPECT_THAT(ObjectOf(*model, L"a")->GetBoxRelatedObjs(), IsEmpty());
}

TEST(WorkSetModelInfo, AnalysesOneFloorOrAll) {
    const auto model = TwoProjects().BuildModel();
    model->AnalyseBoxRelated({2, L"1F"});
    EXPECT_THAT(ObjectOf(*model, L"a")->GetBoxRelatedObjs(), IsEmpty());
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"b")->GetBoxRelatedObjs()), ElementsAre(L"a"));
    model->AnalyseBoxRelated();
    EXPECT_THAT(GuidsOf(ObjectOf(*model, L"a")->GetBoxRelatedObjs()), ElementsAre(L"b"));
}

TEST(WorkSetModelInfo, PassesAProjectOverThatStandsUnderAnotherId) {
    WorkSetModelInfo model;
    auto* project = new ProjectModelInfo(5, L"p");
    auto* floor = new FloorModelInfo(L"1F");
    floor->AppendObject(kWall.specialty, kWall.dalei, kWall.xiaolei, NewObject(L"a", kBoxA));
    project->AppendFloor(L"1F", floor);
    model.AppendProject(6, project);
    EXPECT_EQ(model.GetProject(6), project);
    EXPECT_EQ(model.GetAllObjectNum({6, L"1F"}), 0);
    EXPECT_EQ(model.GetAllObjectNum({5, L"1F"}), 0);
    EXPECT_EQ(project->GetAllObjectNum({5, L"1F"}), 1);
    EXPECT_EQ(project->GetAllObjectNum({6, L"1F"}), 0);
}

TEST(WorkSetModelInfo, ToleratesNullEntries) {
    WorkSetModelInfo model;
    model.AppendProject(1, nullptr);
    auto* project = new ProjectModelInfo(2, L"p");
    project->AppendFloor(L"1F", nullptr);
    model.AppendProject(2, project);
    std::vector<ObjectModelInfo*> found;
    int checked = 0;
    model.QueryEntity(kBoxA, found);
    model.AnalyseBoxRelated();
    model.ClearCollisionResultData();
    model.ResetModelByCollisionRule(nullptr);
    model.CollisionCheck(nullptr, {2, L"1F"}, checked);
    EXPECT_EQ(model.GetAllObjectNum({1, L"1F"}), 0);
    EXPECT_EQ(model.GetAllObjectNum({2, L"1F"}), 0);
    EXPECT_EQ(model.GetObjectModelInfo({2, L"1F"}, L"a"), nullptr);
    EXPECT_TRUE(model.IsSupportHole());
    model.ReleaseModel();
    EXPECT_EQ(model.GetProject(2), nullptr);
}

TEST(WorkSetModelInfo, FindsNeighboursAcrossFloorsAndProjectsInTheOrderOfTheirKeys) {
    SceneBuilder scene;
    scene.At(2, L"1F").Add(L"a", kWall, kBoxA);
    scene.At(1, L"2F").Add(L"b", kWall, kBoxA);
    scene.At(1, L"1F").Add(L"c", kWall, kBoxA);
    const auto model = scene.BuildModel();
    std::vector<ObjectModelInfo*> found;
    model->QueryEntity(kBoxA, found);
    EXPECT_THAT(GuidsOf(found), ElementsAre(L"c", L"b", L"a"));
    model->QueryEntity(kBoxA, found);
    EXPECT_EQ(found.size(), 6U);  // appended, not replaced
}

TEST(WorkSetModelInfo, FindsNoComponentUnderAnEmptyGuid) {
    SceneBuilder scene;
    scene.Add(L"", kWall, kBoxA);
    const auto model = scene.BuildModel();
    EXPECT_EQ(model->GetObjectModelInfo({1, L"1F"}, L""), nullptr);
    EXPECT_NE(FloorOf(*model)->GetObjectModelInfo(L""), nullptr);
}

TEST(WorkSetModelInfo, FindsAComponentByItsFloorKeyAndGuid) {
    SceneBuilder scene;
    scene.At(1, L"1F").Add(L"a", kWall, kBoxA);
    scene.At(1, L"2F").Add(L"a", kSlab, kBoxA);
    scene.At(2, L"1F").Add(L"b", kWall, kBoxA);
    const auto model = scene.BuildModel();
    const ObjectModelInfo* found = model->GetObjectModelInfo({1, L"2F"}, L"A");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->GetFloorName(), L"2F");
    EXPECT_EQ(found->GetBelongCategoryModel()->GetAttCategory(), kSlab);
    EXPECT_EQ(model->GetObjectModelInfo({1, L"1F"}, L"b"), nullptr);
    EXPECT_EQ(model->GetObjectModelInfo({2, L"1F"}, L"b")->GetProjId(), 2);
}

TEST(WorkSetModelInfo, SupportsHolesWhenEveryProjectDoes) {
    WorkSetModelInfo model;
    EXPECT_TRUE(model.IsSupportHole());
    auto* project = new ProjectModelInfo(1, L"p");
    EXPECT_TRUE(project->IsSupportHole());
    model.AppendProject(1, project);
    model.AppendProject(2, new ProjectModelInfo(2, L"q"));
    EXPECT_TRUE(model.IsSupportHole());
    project->SetSupportHole(false);
    EXPECT_FALSE(model.IsSupportHole());
}

TEST(WorkSetModelInfo, ReleasesEverythingAndCanBeFilledAgain) {
    int deleted = 0;
    WorkSetModelInfo model;
    auto* project = new ProjectModelInfo(1, L"p");
    project->AppendFloor(L"1F", NewFloorWith(L"a", kBoxA, deleted));
    model.AppendProject(1, project);
    model.ReleaseModel();
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(model.GetProject(1), nullptr);
    model.AppendProject(1, new ProjectModelInfo(1, L"p"));
    EXPECT_EQ(model.GetAllObjectNum({1, L"1F"}), 0);
}

TEST(ProjectModelInfo, KeepsTheHostsModelType) {
    ProjectModelInfo project(1, L"p");
    EXPECT_EQ(project.GetModelType(), 0);
    project.SetModelType(static_cast<BASECORE::HOOPS::HoopsModelType>(3));
    EXPECT_EQ(project.GetModelType(), 3);
}

TEST(ProjectModelInfo, ReplacesAndDeletesAFloorOfTheSameName) {
    int deleted = 0;
    ProjectModelInfo project(1, L"p");
    project.AppendFloor(L"1F", NewFloorWith(L"old", kBoxA, deleted));
    project.AppendFloor(L"1F", NewFloorWith(L"new", kBoxA, deleted));
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(project.GetObjectModelInfo({1, L"1F"}, L"old"), nullptr);
    EXPECT_NE(project.GetObjectModelInfo({1, L"1F"}, L"new"), nullptr);
}

TEST(ProjectModelInfo, KeepsAFloorThatIsAppendedOverItself) {
    int deleted = 0;
    ProjectModelInfo project(1, L"p");
    FloorModelInfo* floor = NewFloorWith(L"a", kBoxA, deleted);
    project.AppendFloor(L"1F", floor);
    project.AppendFloor(L"1F", floor);
    EXPECT_EQ(deleted, 0);
    EXPECT_EQ(project.GetFloorModel(L"1F"), floor);
}

TEST(WorkSetModelInfo, ReplacesAndDeletesAProjectUnderTheSameId) {
    int deleted = 0;
    WorkSetModelInfo model;
    auto* project = new ProjectModelInfo(1, L"p");
    project->AppendFloor(L"1F", NewFloorWith(L"a", kBoxA, deleted));
    model.AppendProject(1, project);
    model.AppendProject(1, new ProjectModelInfo(1, L"q"));
    EXPECT_EQ(deleted, 1);
    EXPECT_EQ(model.GetAllObjectNum({1, L"1F"}), 0);
}

// A parent that was only pointed at, not appended to, may be gone by then.
TEST(WorkSetModelInfo, PartsDoNotLookAtTheirParentsWhenTheyEnd) {
    int deleted = 0;
    {
        auto project = std::make_unique<ProjectModelInfo>(1, L"p");
        auto floor = std::make_unique<FloorModelInfo>(L"1F");
        auto category = std::make_unique<AttCategoryModelInfo>(kWall);
        const std::unique_ptr<FloorModelInfo> filled(NewFloorWith(L"a", kBoxA, deleted));
        category->AppendObject(new CountedObject(L"b", kBoxA, deleted));
        project->AppendFloor(L"1F", NewFloorWith(L"c", kBoxA, deleted));
        {
            WorkSetModelInfo workSet;
            project->SetBelongWorkSetModel(&workSet);
            ProjectModelInfo other(2, L"q");
            other.SetBelongWorkSetModel(&workSet);
            filled->SetBelongProject(&other);
        }
        category->SetBelongFloor(floor.get());
        floor.reset();
    }
    EXPECT_EQ(deleted, 3);
}

// Neighbour lists and clash records are plain pointers into other floors.
TEST(WorkSetModelInfo, ForgetsComponentsOfAReplacedFloorEverywhere) {
    int deleted = 0;
    const auto model = TwoProjects().BuildModel();
    model->GetProject(2)->AppendFloor(L"2F", NewFloorWith(L"c", kBoxB, deleted));
    model->AnalyseBoxRelated();
    ObjectModelInfo* a = ObjectOf(*model, L"a");
    ASSERT_THAT(GuidsOf(a->GetBoxRelatedObjs()), ElementsAre(L"b", L"c"));
    a->AppendCollisionObj({ObjectOf(*model, L"c"), {}, 0, 0});
    a->AppendCollisionObj({ObjectOf(*model, L"b"), {}, 0, 0});
    model->GetProject(2)->AppendFloor(L"2F", new FloorModelInfo(L"2F"));
    EXPECT_EQ(deleted, 1);
    EXPECT_THAT(GuidsOf(a->GetBoxRelatedObjs()), ElementsAre(L"b"));
    ASSERT_EQ(a->GetCollisionObjs().size(), 1U);
    EXPECT_EQ(a->GetCollisionObjs()[0].other, ObjectOf(*model, L"b"));
}

TEST(WorkSetModelInfo, ForgetsComponentsOfAReplacedProjectEverywhere) {
    const auto model = TwoProjects().BuildModel();
    model->AnalyseBoxRelated();
    ASSERT_EQ(ObjectOf(*model, L"a")->GetBoxRelatedObjs().size(), 1U);
    model->AppendProject(2, new ProjectModelInfo(2, L"empty"));
    EXPECT_THAT(ObjectOf(*model, L"a")->GetBoxRelatedObjs(), IsEmpty());
}

TEST(WorkSetModelInfo, ForgetsComponentsOfAReleasedKindAndDropsTheFloorsIndex) {
    SceneBuilder scene;
    scene.Add(L"a", kWall, kBoxA);
    scene.Add(L"b", kSlab, kBoxB);
    const auto model = scene.BuildModel();
    model->AnalyseBoxRelated();
    ASSERT_EQ(ObjectOf(*model, L"a")->GetBoxRelatedObjs().size(), 1U);
    ObjectOf(*model, L"b")->GetBelongCategoryModel()->ReleaseModel();
    EXPECT_THAT(ObjectOf(*model, L"a")->GetBoxRelatedObjs(), IsEmpty());
    std::vector<ObjectModelInfo*> found;
    model->QueryEntity(kBoxA, found);
    EXPECT_THAT(found, IsEmpty());
    FloorOf(*model)->BuildQuadTree();
    model->QueryEntity(kBoxA, found);
    EXPECT_THAT(GuidsOf(found), ElementsAre(L"a"));
}

}  // namespace
