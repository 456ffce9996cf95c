// SPDX-License-Identifier: Apache-2.0
// A component's fields, recorded clashes, meshes and rank.
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"

#include <gmock/gmock.h>

#include "support/FakeDataSource.h"
#include "support/Kinds.h"
#include "support/SceneBuilder.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace kycb::test;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using QNIM::GeometryPrimitiveResource::CQNIMShell;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const BoundingBox3d kCube(0, 0, 0, 100, 100, 100);

// A model of one component, and a host that knows it.
struct OneComponent {
    SceneBuilder scene;
    SceneComponent& spec;

    explicit OneComponent(const AttCategory& kind = kWall) : spec(scene.Add(L"a", kind, kCube)) {}
};

struct Built {
    FakeDataSource source;
    std::unique_ptr<WorkSetModelInfo> model;
    ObjectModelInfo* obj;

    explicit Built(const OneComponent& one)
        : source(one.scene), model(one.scene.BuildModel()), obj(ObjectOf(*model, L"a")) {}
};

CQNIMShell ShellOfTriangles(int count) {
    OneComponent one;
    one.spec.WithBody(FixedBody(LooseTriangles(count)));
    Built built(one);
    CQNIMShell shell;
    EXPECT_TRUE(built.obj->GetCollisionOffsetBody(&built.source, 0, shell));
    return shell;
}

// Whether component a ranks before component b, with the attributes and names given by `describe`.
template <class Describe>
bool RanksHigher(const Describe& describe) {
    SceneBuilder scene;
    SceneComponent& a = scene.Add(L"guid-a", kTray, kCube).Name(L"same");
    SceneComponent& b = scene.Add(L"guid-b", kTray, kCube).Name(L"same");
    describe(a, b);
    FakeDataSource source(scene);
    const auto model = scene.BuildModel();
    return ObjectOf(*model, a.guid)->IsPriorityHigher(&source, ObjectOf(*model, b.guid));
}

TEST(ObjectModelInfo, StartsWithNothingButItsId) {
    const ObjectModelInfo obj(boost::any(std::wstring(L"id")));
    EXPECT_EQ(boost::any_cast<std::wstring>(obj.GetObjectId()), L"id");
    EXPECT_TRUE(obj.GetPartId().empty());
    EXPECT_EQ(obj.GetObjGuid(), L"");
    EXPECT_EQ(obj.GetObjAttname(), L"");
    EXPECT_EQ(obj.GetObjSyscode(), L"");
    EXPECT_EQ(obj.GetBelongCategoryModel(), nullptr);
    EXPECT_TRUE(obj.GetBoundingBox().IsNull());
    EXPECT_TRUE(obj.GetBoundingBox2d().IsNull());
    EXPECT_THAT(obj.GetBoxRelatedObjs(), IsEmpty());
    EXPECT_THAT(obj.GetCollisionObjs(), IsEmpty());
    EXPECT_THAT(obj.GetOpcodeModels(), IsEmpty());
}

TEST(ObjectModelInfo, KeepsWhatTheHostSets) {
    ObjectModelInfo obj(boost::any(1));
    obj.SetPartId(boost::any(2));
    obj.SetObjGuid(L"guid");
    obj.SetObjAttname(L"name");
    obj.SetObjSyscode(L"code");
    obj.SetBoundingBox({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(boost::any_cast<int>(obj.GetPartId()), 2);
    EXPECT_EQ(obj.GetObjGuid(), L"guid");
    EXPECT_EQ(obj.GetObjAttname(), L"name");
    EXPECT_EQ(obj.GetObjSyscode(), L"code");
    EXPECT_EQ(obj.GetBoundingBox(), BoundingBox3d(1, 2, 3, 4, 5, 6));
    EXPECT_EQ(obj.GetBoundingBox2d(), KYTOOLS::GRAPH::BoundingBox2d(1, 2, 4, 5));
}

TEST(ObjectModelInfo, ReportsThePointOfTheFirstClashWithAComponent) {
    ObjectModelInfo a(boost::any(1));
    ObjectModelInfo b(boost::any(2));
    ObjectModelInfo c(boost::any(3));
    a.AppendCollisionObj({&b, {1, 2, 3}, 10, 20});
    a.AppendCollisionObj({&b, {4, 5, 6}, 10, 20});
    CQNIMPosition point(-1, -1, -1);
    EXPECT_FALSE(a.IsHadCollisionWith(&c, point));
    EXPECT_EQ(point, CQNIMPosition(-1, -1, -1));
    EXPECT_TRUE(a.IsHadCollisionWith(&b, point));
    EXPECT_EQ(point, CQNIMPosition(1, 2, 3));
}

TEST(ObjectModelInfo, RemovesTheFirstClashWithAComponentAndKeepsTheOrder) {
    ObjectModelInfo a(boost::any(1));
    ObjectModelInfo b(boost::any(2));
    ObjectModelInfo c(boost::any(3));
    a.AppendCollisionObj({&c, {}, 1, 0});
    a.AppendCollisionObj({&b, {}, 2, 0});
    a.AppendCollisionObj({&c, {}, 3, 0});
    a.AppendCollisionObj({&b, {}, 4, 0});
    a.RemoveCollisionObj(&b);
    std::vector<int> offsets;
    for (const SCollisionWithObj& clash : a.GetCollisionObjs()) {
        offsets.push_back(clash.ownBodyOffset);
    }
    EXPECT_THAT(offsets, ElementsAre(1, 3, 4));
    a.RemoveCollisionObj(&a);
    EXPECT_EQ(a.GetCollisionObjs().size(), 3U);
    a.ClearCollisionObjs();
    EXPECT_THAT(a.GetCollisionObjs(), IsEmpty());
}

TEST(ObjectModelInfo, AsksForEachBodyOffsetOnce) {
    Built built{OneComponent()};
    Opcode::Model* plain = built.obj->GetOpcodeModel(&built.source, 0);
    Opcode::Model* grown = built.obj->GetOpcodeModel(&built.source, 50);
    ASSERT_NE(plain, nullptr);
    EXPECT_NE(plain, grown);
    EXPECT_EQ(built.obj->GetOpcodeModel(&built.source, 0), plain);
    EXPECT_EQ(built.obj->GetOpcodeModel(&built.source, 50), grown);
    const auto calls = built.source.CallsOf(HostCall::kCreateMesh);
    ASSERT_EQ(calls.size(), 2U);
    EXPECT_EQ(calls[0].projectId, 1);
    EXPECT_EQ(calls[0].id, L"obj:0");
    EXPECT_EQ(calls[0].bodyOffset, 0);
    EXPECT_EQ(calls[1].bodyOffset, 50);
    EXPECT_EQ(built.obj->GetOpcodeModels().size(), 2U);
}

TEST(ObjectModelInfo, AsksForANullMeshAgain) {
    OneComponent one;
    one.spec.WithoutBody();
    Built built(one);
    EXPECT_EQ(built.obj->GetOpcodeModel(&built.source, 0), nullptr);
    EXPECT_EQ(built.obj->GetOpcodeModel(&built.source, 0), nullptr);
    EXPECT_EQ(built.source.calls.size(), 2U);
    EXPECT_THAT(built.obj->GetOpcodeModels(), IsEmpty());
}

TEST(ObjectModelInfo, HasNoMeshWithoutADataSourceNotEvenACachedOne) {
    Built built{OneComponent()};
    built.obj->GetOpcodeModel(&built.source, 0);
    EXPECT_EQ(built.obj->GetOpcodeModel(nullptr, 0), nullptr);
}

TEST(ObjectModelInfo, AsksForAMeshByPartIdOnlyForATeklaComponentThatHasOne) {
    const auto idAsked = [](const AttCategory& kind, const std::wstring& partId) {
        OneComponent one(kind);
        one.spec.PartId(partId);
        Built built(one);
        built.obj->GetOpcodeModel(&built.source, 0);
        return built.source.calls.at(0).id;
    };
    EXPECT_EQ(idAsked(kTeklaBeam, L"part"), L"part");
    EXPECT_EQ(idAsked(kTeklaBeam, L""), L"obj:0");
    EXPECT_EQ(idAsked(kWall, L"part"), L"obj:0");
    EXPECT_EQ(idAsked({L"tekla", L"钢结构", L"钢梁"}, L"part"), L"obj:0");
}

TEST(ObjectModelInfo, AsksWithProjectIdMinusOneOutsideATree) {
    FakeDataSource source{SceneBuilder()};
    ObjectModelInfo obj(boost::any(std::wstring(L"id")));
    EXPECT_EQ(obj.GetOpcodeModel(&source, 0), nullptr);
    EXPECT_EQ(source.calls.at(0).projectId, -1);
}

TEST(ObjectModelInfo, FreesItsMeshesOnRequestAndAsksAnew) {
    Built built{OneComponent()};
    built.obj->GetOpcodeModel(&built.source, 0);
    built.obj->ReleaseOpcodeModel();
    EXPECT_THAT(built.obj->GetOpcodeModels(), IsEmpty());
    EXPECT_NE(built.obj->GetOpcodeModel(&built.source, 0), nullptr);
    EXPECT_EQ(built.source.calls.size(), 2U);
}

TEST(ObjectModelInfo, FreesAMeshThatTheColliderRefused) {
    TestMesh broken = LooseTriangles(1);
    broken.triangles[0].mVRef[2] = 99;
    OneComponent one;
    one.spec.WithBody(FixedBody(broken));
    Built built(one);
    const Opcode::Model* model = built.obj->GetOpcodeModel(&built.source, 0);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->GetTree(), nullptr);
}

TEST(ObjectModelInfo, PassesAFailureOfTheHostThroughAndStaysUsable) {
    Built built{OneComponent()};
    built.source.ThrowAt(HostCall::kCreateMesh, 1);
    EXPECT_THROW(built.obj->GetOpcodeModel(&built.source, 0), std::runtime_error);
    EXPECT_NE(built.obj->GetOpcodeModel(&built.source, 0), nullptr);
}

TEST(ObjectModelInfo, CopiesAMeshIntoAShell) {
    OneComponent one;
    one.spec.WithBody(FixedBody(LooseTriangles(2)));
    Built built(one);
    CQNIMShell shell;
    ASSERT_TRUE(built.obj->GetCollisionOffsetBody(&built.source, 0, shell));
    ASSERT_EQ(shell.GetPts().size(), 6U);
    EXPECT_EQ(shell.GetPts()[1], CQNIMPosition(5, 0, 0));
    EXPECT_EQ(shell.GetPts()[3], CQNIMPosition(10, 0, 0));
    EXPECT_THAT(shell.GetFaceIndices(), ElementsAre(3, 0, 1, 2, 3, 3, 4, 5));
}

TEST(ObjectModelInfo, CopiesOnlyEightTrianglesOfAMeshOfExactlyTen) {
    EXPECT_EQ(ShellOfTriangles(9).GetFaceIndices().size(), 9U * 4U);
    EXPECT_EQ(ShellOfTriangles(10).GetFaceIndices().size(), 8U * 4U);
    EXPECT_EQ(ShellOfTriangles(10).GetPts().size(), 30U);
    EXPECT_EQ(ShellOfTriangles(11).GetFaceIndices().size(), 11U * 4U);
}

TEST(ObjectModelInfo, HasNoShellWithoutAMesh) {
    OneComponent one;
    one.spec.WithoutBody();
    Built built(one);
    CQNIMShell shell;
    EXPECT_FALSE(built.obj->GetCollisionOffsetBody(&built.source, 0, shell));
    EXPECT_FALSE(built.obj->GetCollisionOffsetBody(nullptr, 0, shell));
    EXPECT_THAT(shell.GetPts(), IsEmpty());
}

// Hands out a mesh that counts triangles or vertices which it does not have.
class SourceOfIncompleteMeshes : public FakeDataSource {
  public:
    SourceOfIncompleteMeshes(const SceneBuilder& scene, bool hasTriangles)
        : FakeDataSource(scene), hasTriangles_(hasTriangles) {}

    Opcode::Model* CreateOpcodeModel(int, const boost::any&, int) override {
        auto* mesh = new Opcode::MeshInterface;
        mesh->SetNbTriangles(1);
        mesh->SetNbVertices(1);
        if (hasTriangles_) {
            mesh->SetPointers(new IceMaths::IndexedTriangle[1], nullptr);
        } else {
            mesh->SetPointers(nullptr, new IceMaths::Point[1]);
        }
        Opcode::OPCODECREATE create;
        create.mIMesh = mesh;
        auto* model = new Opcode::Model;
        model->Build(create);
        return model;
    }

  private:
    bool hasTriangles_;
};

TEST(ObjectModelInfo, HasNoShellOfAMeshThatLacksAnArray) {
    const OneComponent one;
    for (const bool hasTriangles : {false, true}) {
        SourceOfIncompleteMeshes source(one.scene, hasTriangles);
        const auto model = one.scene.BuildModel();
        CQNIMShell shell;
        EXPECT_FALSE(ObjectOf(*model, L"a")->GetCollisionOffsetBody(&source, 0, shell));
        EXPECT_THAT(shell.GetPts(), IsEmpty());
        EXPECT_THAT(shell.GetFaceIndices(), IsEmpty());
    }
}

TEST(IsPriorityHigher, PrefersTheLongerSupportOfEqualNames) {
    const auto longerBy = [](const wchar_t* a, const wchar_t* b) {
        return RanksHigher([&](SceneComponent& first, SceneComponent& second) {
            first.Attribute(L"drawstartendpt", a);
            second.Attribute(L"drawstartendpt", b);
        });
    };
    EXPECT_TRUE(longerBy(L"0,0,0,1000,0,0", L"0,0,0,500,0,0"));
    EXPECT_FALSE(longerBy(L"0,0,0,500,0,0", L"0,0,0,0,1000,0"));
    // A support that is up to 0.1 shorter still comes first, from both sides.
    EXPECT_TRUE(longerBy(L"0,0,0,1000,0,0", L"0,0,0,1000,0,0"));
    EXPECT_TRUE(longerBy(L"0,0,0,1000,0,0", L"0,0,0,1000.05,0,0"));
    EXPECT_FALSE(longerBy(L"0,0,0,1000,0,0", L"0,0,0,1000.2,0,0"));
}

TEST(IsPriorityHigher, OrdersEqualNamesWithoutSupportPointsByGuidInTheCodePage) {
    const auto before = [](const std::wstring& a, const std::wstring& b) {
        return RanksHigher([&](SceneComponent& first, SceneComponent& second) {
            first.guid = a;
            second.guid = b;
            first.Attribute(L"drawstartendpt", L"0,0,0,1,1,1");  // the other one has none
        });
    };
    EXPECT_TRUE(before(L"a", L"b"));
    EXPECT_FALSE(before(L"b", L"a"));
    // U+4E00 is before U+4E01, but in code page 936 D2BB is after B6A1.
    EXPECT_FALSE(before(L"\u4E00", L"\u4E01"));
    EXPECT_TRUE(before(L"\u4E01", L"\u4E00"));
    // Thai letters are outside the code page: both are "?".
    EXPECT_FALSE(before(L"\u0E01", L"\u0E02"));
    EXPECT_FALSE(before(L"\u0E02", L"\u0E01"));
}

TEST(IsPriorityHigher, OrdersDifferentNamesWithoutSectionsByNameInTheCodePage) {
    const auto before = [](const std::wstring& a, const std::wstring& b) {
        return RanksHigher([&](SceneComponent& first, SceneComponent& second) {
            first.Name(a);
            second.Name(b);
            first.Attribute(L"drawstartendpt", L"0,0,0,9,9,9");
            second.Attribute(L"drawstartendpt", L"0,0,0,1,1,1");
        });
    };
    EXPECT_TRUE(before(L"A", L"B"));
    EXPECT_FALSE(before(L"B", L"A"));
    EXPECT_TRUE(before(L"\u4E01", L"\u4E00"));
}

TEST(IsPriorityHigher, ComparesSectionsOfDifferentNames) {
    const auto larger = [](const wchar_t* keyA, const wchar_t* a, const wchar_t* keyB,
                           const wchar_t* b) {
        return RanksHigher([&](SceneComponent& first, SceneComponent& second) {
            first.Name(L"z").Attribute(keyA, a);
            second.Name(L"a").Attribute(keyB, b);
        });
    };
    const wchar_t* rect = L"sectwidthheight";
    const wchar_t* round = L"sectradius";
    EXPECT_TRUE(larger(rect, L"400*100", rect, L"300*900"));
    EXPECT_FALSE(larger(rect, L"300*900", rect, L"400*100"));
    EXPECT_TRUE(larger(rect, L"400*100", rect, L"400.05*900"));  // width within the margin
    EXPECT_TRUE(larger(rect, L"400*300", rect, L"400*200"));     // equal widths: heights decide
    EXPECT_FALSE(larger(rect, L"400*200", rect, L"400.0005*300"));
    EXPECT_TRUE(larger(rect, L"400*200", rect, L"400*200.05"));
    EXPECT_TRUE(larger(round, L"100", round, L"50"));
    EXPECT_FALSE(larger(round, L"50", round, L"100"));
    EXPECT_TRUE(larger(round, L"50", round, L"50.05"));
    // One of each: the values that were not read count as 0, and a radius of 0 gives true.
    EXPECT_TRUE(larger(rect, L"100*100", round, L"900"));
    EXPECT_TRUE(larger(round, L"1", rect, L"900*900"));
    EXPECT_TRUE(larger(rect, L"0*100", rect, L"900*900"));
}

TEST(IsPriorityHigher, IsFalseForNoComponent) {
    const ObjectModelInfo obj(boost::any(1));
    EXPECT_FALSE(obj.IsPriorityHigher(nullptr, nullptr));
}

}  // namespace
