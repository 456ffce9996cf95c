// SPDX-License-Identifier: Apache-2.0
// The collision model and its mesh collider, as the shared object offers them.
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <KYCollisionBase/KYCollisionBase.h>
#include <gtest/gtest.h>

#include "exports/ExpectOperation.h"

namespace {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::RESULT;
using namespace KYCOLLISION::Rule;
using kycb::test::ExpectOperation;
using KYTOOLS::GRAPH::BoundingBox3d;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using QNIM::GeometryPrimitiveResource::CQNIMShell;
using std::wstring;
using FloorKey = std::pair<int, wstring>;
using Found = std::vector<ObjectModelInfo*>;
using Items = std::vector<KyResultItem*>;
using Holes = std::vector<std::shared_ptr<CExistingHole>>;

template <class T, class... Arguments>
void ExpectObject(const Arguments&... arguments) {
    EXPECT_NE(std::make_unique<T>(arguments...), nullptr);
}

TEST(ModelExports, OfferEveryClass) {
    ExpectObject<WorkSetModelInfo>();
    ExpectObject<ProjectModelInfo>(1, L"p");
    ExpectObject<FloorModelInfo>(L"1F");
    ExpectObject<AttCategoryModelInfo>(AttCategory(L"a", L"b", L"c"));
    ExpectObject<ObjectModelInfo>(boost::any(1));
    ExpectObject<CollisionAlgorithm>(nullptr, nullptr);
    ExpectObject<SCollisionWithObj>();
    ExpectObject<CExistingHole>();
    ExpectObject<Opcode::Model>();
    ExpectObject<Opcode::MeshInterface>();
    ExpectObject<Opcode::OPCODECREATE>();
    ExpectObject<Opcode::BVTCache>();
    ExpectObject<Opcode::AABBTreeCollider>();
}

TEST(ModelExports, OfferTheOperationsOfTheWorkSet) {
    using T = WorkSetModelInfo;
    ExpectOperation<void (T::*)(const SKyModelInfo&)>(&T::SetModelInfo);
    ExpectOperation<void (T::*)(int, ProjectModelInfo*)>(&T::AppendProject);
    ExpectOperation<ProjectModelInfo* (T::*)(int) const>(&T::GetProject);
    // Those of the root are virtual: they are found through an object.
    const std::unique_ptr<ICollisionModel> model = std::make_unique<T>();
    EXPECT_TRUE(model->IsSupportHole());
    EXPECT_EQ(model->GetModelInfo().modelId, -1);
}

TEST(ModelExports, OfferTheOperationsOfAProject) {
    using T = ProjectModelInfo;
    ExpectOperation<int (T::*)() const>(&T::GetProjId);
    ExpectOperation<WorkSetModelInfo* (T::*)() const>(&T::GetBelongWorkSetModel);
    ExpectOperation<void (T::*)(wstring, FloorModelInfo*)>(&T::AppendFloor);
    ExpectOperation<FloorModelInfo* (T::*)(wstring) const>(&T::GetFloorModel);
    ExpectOperation<BASECORE::HOOPS::HoopsModelType (T::*)() const>(&T::GetModelType);
    ExpectOperation<void (T::*)(BASECORE::HOOPS::HoopsModelType)>(&T::SetModelType);
    ExpectOperation<bool (T::*)() const>(&T::IsSupportHole);
    ExpectOperation<void (T::*)(bool)>(&T::SetSupportHole);
    ExpectOperation<void (T::*)()>(&T::ReleaseModel);
    ExpectOperation<void (T::*)(const BoundingBox3d&, Found&)>(&T::QueryEntity);
    ExpectOperation<ObjectModelInfo* (T::*)(const FloorKey&, wstring) const>(
        &T::GetObjectModelInfo);
    ExpectOperation<void (T::*)(const FloorKey&)>(&T::AnalyseBoxRelated);
    ExpectOperation<void (T::*)()>(&T::AnalyseBoxRelated);
    ExpectOperation<void (T::*)(IModelDataSource*, const FloorKey&, int&)>(&T::CollisionCheck);
    ExpectOperation<int (T::*)(const FloorKey&)>(&T::GetAllObjectNum);
    ExpectOperation<void (T::*)()>(&T::ClearCollisionResultData);
    ExpectOperation<void (T::*)(KyCollisionRuleMgr*)>(&T::ResetModelByCollisionRule);
    ExpectOperation<void (T::*)(IModelDataSource*, const FloorKey&, Items&)>(
        &T::GetFloorCollisionResult);
    ExpectOperation<void (T::*)(IModelDataSource*, const FloorKey&, Holes&) const>(
        &T::GetFloorExistingHoles);
    ExpectOperation<int (T::*)(IModelDataSource*, const FloorKey&)>(&T::GetFloorResultTempNum);
}

TEST(ModelExports, OfferTheOperationsOfAFloor) {
    using T = FloorModelInfo;
    ExpectOperation<wstring (T::*)() const>(&T::GetFloorName);
    ExpectOperation<ProjectModelInfo* (T::*)() const>(&T::GetBelongProject);
    ExpectOperation<void (T::*)(ProjectModelInfo*)>(&T::SetBelongProject);
    ExpectOperation<int (T::*)() const>(&T::GetProjId);
    ExpectOperation<void (T::*)(double)>(&T::setUnder);
    ExpectOperation<double (T::*)() const>(&T::getUnder);
    ExpectOperation<void (T::*)(double)>(&T::setHeight);
    ExpectOperation<double (T::*)() const>(&T::getTop);
    ExpectOperation<void (T::*)(wstring, wstring, wstring, ObjectModelInfo*)>(&T::AppendObject);
    ExpectOperation<void (T::*)()>(&T::BuildQuadTree);
    ExpectOperation<void (T::*)()>(&T::ReleaseModel);
    ExpectOperation<void (T::*)(const BoundingBox3d&, Found&)>(&T::QueryEntity);
    ExpectOperation<ObjectModelInfo* (T::*)(wstring) const>(&T::GetObjectModelInfo);
    ExpectOperation<void (T::*)()>(&T::AnalyseBoxRelated);
    ExpectOperation<void (T::*)(IModelDataSource*, int&)>(&T::CollisionCheck);
    ExpectOperation<int (T::*)()>(&T::GetAllObjectNum);
    ExpectOperation<void (T::*)()>(&T::ClearCollisionResultData);
    ExpectOperation<void (T::*)(KyCollisionRuleMgr*)>(&T::ResetModelByCollisionRule);
    ExpectOperation<void (T::*)(IModelDataSource*, Items&)>(&T::GetFloorCollisionResult);
    ExpectOperation<int (T::*)(IModelDataSource*)>(&T::GetFloorResultTempNum);
    ExpectOperation<void (T::*)(IModelDataSource*, Holes&) const>(&T::GetFloorExistingHoles);
}

TEST(ModelExports, OfferTheOperationsOfAComponentKind) {
    using T = AttCategoryModelInfo;
    ExpectOperation<const AttCategory& (T::*)() const>(&T::GetAttCategory);
    ExpectOperation<FloorModelInfo* (T::*)() const>(&T::GetBelongFloorModel);
    ExpectOperation<void (T::*)(FloorModelInfo*)>(&T::SetBelongFloor);
    ExpectOperation<void (T::*)(ObjectModelInfo*)>(&T::AppendObject);
    ExpectOperation<const std::multimap<wstring, ObjectModelInfo*>& (T::*)() const>(&T::GetObjects);
    ExpectOperation<KyCollisionRuleItem* (T::*)() const>(&T::GetCollisionRuleItem);
    ExpectOperation<void (T::*)(KyCollisionRuleItem*)>(&T::SetCollisionRuleItem);
    ExpectOperation<void (T::*)()>(&T::ReleaseModel);
}

TEST(ModelExports, OfferTheOperationsOfAComponent) {
    using T = ObjectModelInfo;
    ExpectOperation<void (T::*)(const boost::any&)>(&T::SetPartId);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetObjGuid);
    ExpectOperation<const wstring& (T::*)() const>(&T::GetObjGuid);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetObjAttname);
    ExpectOperation<const wstring& (T::*)() const>(&T::GetObjAttname);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetObjSyscode);
    ExpectOperation<const wstring& (T::*)() const>(&T::GetObjSyscode);
    ExpectOperation<void (T::*)(AttCategoryModelInfo*)>(&T::SetBelongCategory);
    ExpectOperation<AttCategoryModelInfo* (T::*)() const>(&T::GetBelongCategoryModel);
    ExpectOperation<void (T::*)(const BoundingBox3d&)>(&T::SetBoundingBox);
    ExpectOperation<BoundingBox3d (T::*)() const>(&T::GetBoundingBox);
    ExpectOperation<KYTOOLS::GRAPH::BoundingBox2d (T::*)() const>(&T::GetBoundingBox2d);
    ExpectOperation<int (T::*)() const>(&T::GetProjId);
    ExpectOperation<wstring (T::*)() const>(&T::GetFloorName);
    ExpectOperation<WorkSetModelInfo* (T::*)() const>(&T::GetBelongWorkset);
    ExpectOperation<void (T::*)()>(&T::AnalyseBoxRelated);
    ExpectOperation<void (T::*)(const SCollisionWithObj&)>(&T::AppendCollisionObj);
    ExpectOperation<const std::vector<SCollisionWithObj>& (T::*)() const>(&T::GetCollisionObjs);
    ExpectOperation<void (T::*)()>(&T::ClearCollisionObjs);
    ExpectOperation<bool (T::*)(T*, CQNIMPosition&) const>(&T::IsHadCollisionWith);
    ExpectOperation<void (T::*)(T*)>(&T::RemoveCollisionObj);
    ExpectOperation<Opcode::Model* (T::*)(IModelDataSource*, int)>(&T::GetOpcodeModel);
    ExpectOperation<const std::map<int, Opcode::Model*>& (T::*)() const>(&T::GetOpcodeModels);
    ExpectOperation<void (T::*)()>(&T::ReleaseOpcodeModel);
    ExpectOperation<bool (T::*)(IModelDataSource*, int, CQNIMShell&)>(&T::GetCollisionOffsetBody);
    ExpectOperation<void (T::*)(IModelDataSource*, int&)>(&T::CollisionCheck);
    ExpectOperation<bool (T::*)(IModelDataSource*, const T*) const>(&T::IsPriorityHigher);
}

TEST(ModelExports, OfferTheAttributeReadersOfAComponent) {
    using T = ObjectModelInfo;
    using Texts = std::vector<wstring>;
    ExpectOperation<wstring (T::*)(const IModelDataSource*) const>(&T::GetObjAttHeight);
    ExpectOperation<bool (T::*)(IModelDataSource*, double&) const>(&T::GetPipeGCZJ);
    ExpectOperation<bool (T::*)(IModelDataSource*, CQNIMPosition&, CQNIMPosition&) const>(
        &T::GetPipeDuctSupportSEPt);
    ExpectOperation<bool (T::*)(IModelDataSource*, double&, double&, double&) const>(
        &T::GetPipeDuctSupportSect);
    ExpectOperation<void (T::*)(const IModelDataSource*, Texts&, Texts&) const>(&T::GetRelatedObjs);
    ExpectOperation<bool (T::*)(const IModelDataSource*, const wstring&, wstring&) const>(
        &T::GetAttValue);
    ExpectOperation<std::shared_ptr<CExistingHole> (T::*)(const IModelDataSource*) const>(
        &T::GetExistingHole);
    ExpectOperation<bool (T::*)(const IModelDataSource*, int&) const>(&T::GetExistingHoleShape);
    for (const auto reader :
         {&T::GetExistingHoleCenter, &T::GetExistingHoleElevation, &T::GetExistingHoleParentId}) {
        ExpectOperation<bool (T::*)(const IModelDataSource*, wstring&) const>(reader);
    }
    ExpectOperation<bool (*)(const wstring&, const wstring&, const wstring&)>(&IsHoleWall);
}

TEST(ModelExports, OfferTheOperationsOfThePairwiseAlgorithm) {
    using T = CollisionAlgorithm;
    ExpectOperation<void (T::*)(IModelDataSource*)>(&T::SetDataSource);
    ExpectOperation<void (T::*)(KyCollisionMode*, KyCollisionMode*)>(&T::SetCollisionMode);
    ExpectOperation<bool (T::*)(CQNIMPosition&, CQNIMPosition&)>(&T::CollisionCheck);
    T algorithm(nullptr, nullptr);
    const T copy(algorithm);
    algorithm = copy;
    int a = -1;
    int b = -1;
    algorithm.GetBodyOffset(a, b);
    EXPECT_EQ(a, 0);
    EXPECT_EQ(b, 0);
}

TEST(ModelExports, OfferTheMeshCollider) {
    IceMaths::Point points[3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    IceMaths::IndexedTriangle triangles[1] = {{0, 1, 2}};
    Opcode::MeshInterface mesh;
    mesh.SetNbTriangles(1);
    mesh.SetNbVertices(3);
    EXPECT_TRUE(mesh.SetPointers(triangles, points));
    Opcode::OPCODECREATE create;
    create.mIMesh = &mesh;
    Opcode::Model model;
    ASSERT_TRUE(model.Build(create));
    EXPECT_EQ(model.GetMeshInterface(), &mesh);
    EXPECT_NE(model.GetTree(), nullptr);
    Opcode::BVTCache cache;
    cache.ResetCache();
    cache.Model0 = &model;
    cache.Model1 = &model;
    Opcode::AABBTreeCollider collider;
    collider.SetFullBoxBoxTest(true);
    collider.SetFullPrimBoxTest(true);
    collider.SetFirstContact(false);
    collider.SetTemporalCoherence(false);
    int pointCount = 0;
    collider.SetContactCallback(
        [](const IceMaths::Point&, void* count) { ++*static_cast<int*>(count); }, &pointCount);
    ASSERT_TRUE(collider.Collide(cache, nullptr, nullptr));
    EXPECT_TRUE(collider.GetContactStatus());
    EXPECT_EQ(collider.GetNbPairs(), 1U);
    EXPECT_EQ(collider.GetPairs()[0].id0, 0U);
    EXPECT_EQ(pointCount, 3);  // the corners of the triangle that both are
}

}  // namespace
