// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/logic/SQNGIAxisItem.h"
#include "KYCollisionBase/model/CollisionAlgorithm.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/platform/QuadTree.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/rule/KyCollisionMode.h"

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ConvertedModels.h"
#include "SceneBuilder.h"
#include "ifchost/BuiltinRules.h"
#include "ifchost/IfcDataSource.h"
#include "ifchost/IfcGuid.h"

namespace ifchost {
namespace {

using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::LOGIC::SQNGIAxisItem;
using KYCOLLISION::MODEL::ObjectModelInfo;
using KYCOLLISION::MODEL::WorkSetModelInfo;
using KYCOLLISION::RESULT::CExistingHole;
using KYCOLLISION::RESULT::KyResultItem;
using testing::BoxMesh;
using ::testing::ElementsAre;
using testing::SceneBuilder;
using testing::TemporaryFolder;

using ClashList = std::vector<std::unique_ptr<KyResultItem>>;

// A work set in the hands of the driver, as a host runs it.
class Host {
  public:
    explicit Host(const std::vector<SceneBuilder>& files, DataSourceOptions options = {}) {
        std::vector<WorksetInput> inputs;
        for (const SceneBuilder& file : files)
            inputs.push_back({"f.ifc", file.Open(folder_)});
        workset_ = std::make_shared<const IfcWorkset>(std::move(inputs), Classification::Default());
        source_ = new IfcDataSource(workset_, std::move(options));
        check_.SetDataSource(source_);
        check_.SetCollisionRule(MakeBuiltinRules(workset_->CheckedKinds()).release());
        EXPECT_TRUE(check_.InitCollisionModel());
    }

    ClashList Clashes() {
        const auto floors = workset_->CollisionFloors();
        EXPECT_EQ(check_.CollisionCheck(floors), KYCOLLISION::LOGIC::CHECK_SUCCESS);
        std::map<std::pair<int, std::wstring>, std::vector<KyResultItem*>> results;
        check_.GetCollisionResult(floors, results);
        ClashList clashes;
        for (const auto& [key, items] : results) {
            for (KyResultItem* item : items)
                clashes.emplace_back(item);
        }
        return clashes;
    }

    std::vector<std::shared_ptr<CExistingHole>> Holes() {
        std::map<std::pair<int, std::wstring>, std::vector<std::shared_ptr<CExistingHole>>> found;
        check_.GetExistingHoles(workset_->CollisionFloors(), found);
        std::vector<std::shared_ptr<CExistingHole>> holes;
        for (auto& [key, list] : found)
            holes.insert(holes.end(), list.begin(), list.end());
        return holes;
    }

    const ObjectModelInfo& Object(std::size_t component) const {
        const auto& which = workset_->Components()[component];
        auto* model = const_cast<CCollisionCheck&>(check_).GetCollisionModel();
        return *model->GetObjectModelInfo({which.projectId, workset_->Floor(which).name},
                                          which.guid);
    }
    bool AreNeighbours(std::size_t a, std::size_t b) const {
        const auto& related = Object(a).GetBoxRelatedObjs();
        return std::find(related.begin(), related.end(), &Object(b)) != related.end();
    }

    IfcDataSource& Source() { return *source_; }
    const IfcWorkset& Workset() const { return *workset_; }
    CCollisionCheck& Check() { return check_; }

  private:
    TemporaryFolder folder_;
    testing::SilentMessages silence_;
    std::shared_ptr<const IfcWorkset> workset_;
    CCollisionCheck check_;
    IfcDataSource* source_ = nullptr;
};

void Free(Opcode::Model* model) {
    if (model == nullptr) return;
    const Opcode::MeshInterface* mesh = model->GetMeshInterface();
    delete[] mesh->GetTris();
    delete[] mesh->GetVerts();
    delete mesh;
    delete model;
}

// A slab over z = 3000 and a thing below it.
SceneBuilder UnderASlab(const char* ifcClass, const Point3& low, const Point3& high) {
    SceneBuilder builder;
    builder.Storey("E0", 0).Storey("E1", 3000);
    builder.Add("IfcSlab").Box({-5000, -5000, 3000}, {9000, 5000, 3200}).On(1);
    builder.Add(ifcClass).Box(low, high).On(0);
    return builder;
}

TEST(IfcDataSource, FindsADuct150BelowASlab) {
    Host host({UnderASlab("IfcDuctSegment", {0, 0, 2650}, {4000, 400, 2850})});
    EXPECT_TRUE(host.AreNeighbours(0, 1));
    EXPECT_TRUE(host.AreNeighbours(1, 0));
    const auto clashes = host.Clashes();
    ASSERT_EQ(clashes.size(), 1U);
    EXPECT_EQ(clashes[0]->GetSpecialtyA(), L"土建");
    EXPECT_EQ(clashes[0]->GetSpecialtyB(), L"暖通");
    EXPECT_EQ(clashes[0]->GetClashModel(), L"0,200");
    EXPECT_EQ(clashes[0]->GetHeightB(), L"2650");
}

TEST(IfcDataSource, FindsNoDuct250BelowASlab) {
    Host host({UnderASlab("IfcDuctSegment", {0, 0, 2550}, {4000, 400, 2750})});
    EXPECT_FALSE(host.AreNeighbours(0, 1));
    EXPECT_TRUE(host.Clashes().empty());
}

TEST(IfcDataSource, FindsARunJustTouchingItsClearance) {
    // Grown by 200, the top of the duct lies in the underside of the slab.
    Host host({UnderASlab("IfcDuctSegment", {0, 0, 2600}, {4000, 400, 2800})});
    EXPECT_TRUE(host.AreNeighbours(0, 1));
    EXPECT_EQ(host.Clashes().size(), 1U);
}

TEST(IfcDataSource, GivesPipesTheirOwnClearance) {
    Host near({UnderASlab("IfcPipeSegment", {0, 0, 2860}, {4000, 100, 2960})});
    EXPECT_EQ(near.Clashes().size(), 1U);
    Host far({UnderASlab("IfcPipeSegment", {0, 0, 2840}, {4000, 100, 2940})});
    EXPECT_TRUE(far.Clashes().empty());
}

TEST(IfcDataSource, ToleratesTwoMillimetresForWhatIsNoStructureAndNoRun) {
    Host shallow({UnderASlab("IfcSanitaryTerminal", {0, 0, 2500}, {400, 400, 3001})});
    EXPECT_TRUE(shallow.Clashes().empty());
    Host deep({UnderASlab("IfcSanitaryTerminal", {0, 0, 2500}, {400, 400, 3003})});
    EXPECT_EQ(deep.Clashes().size(), 1U);
}

TEST(IfcDataSource, TestsRunsOfDifferentSpecialtiesShrunk) {
    SceneBuilder builder;
    builder.Add("IfcDuctSegment").Box({0, 0, 0}, {4000, 400, 200});
    builder.Add("IfcPipeSegment").Box({1000, -500, 197}, {1100, 900, 297});
    EXPECT_TRUE(Host({builder}).Clashes().empty());
    SceneBuilder deeper;
    deeper.Add("IfcDuctSegment").Box({0, 0, 0}, {4000, 400, 200});
    deeper.Add("IfcPipeSegment").Box({1000, -500, 195}, {1100, 900, 295});
    const auto clashes = Host({deeper}).Clashes();
    ASSERT_EQ(clashes.size(), 1U);
    EXPECT_EQ(clashes[0]->GetClashModel(), L"-2,-2");
}

TEST(IfcDataSource, ChecksNothingWithinASpecialty) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {4000, 400, 200});
    builder.Add("IfcSlab").Box({0, 0, 0}, {4000, 400, 200});
    EXPECT_TRUE(Host({builder}).Clashes().empty());
}

TEST(IfcDataSource, GivesRunsBoxesThatHoldTheGrownBodyWithItsMitres) {
    // Turned by 45 degrees, the corners of the grown duct reach sqrt(2) times as far.
    const double c = std::sqrt(0.5);
    SceneBuilder builder;
    builder.Storey("E0", 0);
    builder.Add("IfcDuctSegment").On(0);
    builder.Mesh(BoxMesh({0, 0, 0}, {3000, 400, 200}),
                 {c, -c, 0, 0, c, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1});
    Host host({builder});
    const auto box = host.Object(0).GetBoundingBox();
    const double corner = 200.0 * std::sqrt(2.0);
    EXPECT_NEAR(box.GetMinX(), -400.0 * c - corner, 0.2);
    EXPECT_NEAR(box.GetMaxX(), 3000.0 * c + corner, 0.2);
    EXPECT_NEAR(box.GetMinZ(), -200.6, 0.01);
    EXPECT_NEAR(box.GetMaxZ(), 400.6, 0.01);
}

TEST(IfcDataSource, GivesOtherBoxesOnlyTheMarginsOfTheSearch) {
    SceneBuilder builder;
    builder.Storey("E0", 0).Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500}).On(0);
    Host host({builder});
    const auto box = host.Object(0).GetBoundingBox();
    EXPECT_NEAR(box.GetMinX(), -0.1, 1e-9);
    EXPECT_NEAR(box.GetMaxY(), 200.1, 1e-9);
    EXPECT_NEAR(box.GetMinZ(), -0.6, 1e-9);
    EXPECT_NEAR(box.GetMaxZ(), 2500.6, 1e-9);
}

TEST(IfcDataSource, BuildsTheTreeOfProjectsFloorsAndKinds) {
    SceneBuilder a = UnderASlab("IfcDuctSegment", {0, 0, 2650}, {4000, 400, 2850});
    SceneBuilder b;
    b.Storey("E0", 0)
        .System("Cold water")
        .Add("IfcPipeSegment", SceneBuilder::GuidOf(7))
        .Named("P")
        .On(0);
    b.Box({0, 0, 0}, {1000, 50, 50}).With("systems", std::vector<int>{0});
    Host host({a, b});
    auto& root = dynamic_cast<WorkSetModelInfo&>(*host.Check().GetCollisionModel());
    EXPECT_TRUE(root.IsSupportHole());
    ASSERT_NE(root.GetProject(2), nullptr);
    EXPECT_EQ(root.GetAllObjectNum({1, L"E0"}), 1);
    EXPECT_EQ(root.GetAllObjectNum({1, L"E1"}), 1);
    EXPECT_EQ(root.GetAllObjectNum({2, L"E0"}), 1);
    const auto* floor = root.GetProject(1)->GetFloorModel(L"E0");
    EXPECT_EQ(floor->getUnder(), 0.0);
    EXPECT_EQ(floor->getTop(), 3000.0);
    const ObjectModelInfo& pipe = host.Object(2);
    EXPECT_EQ(pipe.GetObjAttname(), L"P");
    EXPECT_EQ(pipe.GetObjSyscode(), L"Cold water");
    EXPECT_EQ(pipe.GetObjGuid(), *HexFromGlobalId(SceneBuilder::GuidOf(7)));
    EXPECT_EQ(pipe.GetProjId(), 2);
}

TEST(IfcDataSource, HandsOutMeshesRelativeToTheLocalOrigin) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({155000000.25, 0, 0}, {155002000.25, 200, 2500});
    Host host({builder});
    ASSERT_EQ(host.Workset().Origin().origin, (Point3{155001000, 0, 0}));
    Opcode::Model* model = host.Source().CreateOpcodeModel(1, ComponentId{0}, 0);
    ASSERT_NE(model, nullptr);
    const auto* mesh = model->GetMeshInterface();
    EXPECT_EQ(mesh->GetNbTriangles(), 12U);
    EXPECT_EQ(mesh->GetNbVertices(), 8U);
    float low = 1e9F;
    float high = -1e9F;
    for (std::uint32_t i = 0; i < mesh->GetNbVertices(); ++i) {
        low = std::min(low, mesh->GetVerts()[i].x);
        high = std::max(high, mesh->GetVerts()[i].x);
    }
    EXPECT_EQ(low, -999.75F);
    EXPECT_EQ(high, 1000.25F);
    EXPECT_NE(model->GetTree(), nullptr);
    Free(model);
}

TEST(IfcDataSource, HasNoMeshForUnknownIdsOpeningsAndVanishedBodies) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
    builder.Add("IfcOpeningElement").As("opening").Box({100, 0, 0}, {200, 200, 300});
    builder.Add("IfcPlate").Box({0, 0, 0}, {1000, 200, 3});
    builder.Relate("voids", 1, 0);
    Host host({builder});
    IfcDataSource& source = host.Source();
    EXPECT_EQ(source.CreateOpcodeModel(1, ComponentId{99}, 0), nullptr);
    EXPECT_EQ(source.CreateOpcodeModel(2, ComponentId{0}, 0), nullptr);
    EXPECT_EQ(source.CreateOpcodeModel(1, std::string("0"), 0), nullptr);
    EXPECT_EQ(source.CreateOpcodeModel(1, boost::any(), 0), nullptr);
    EXPECT_EQ(source.CreateOpcodeModel(1, ComponentId{1}, 0), nullptr);
    EXPECT_EQ(source.CreateOpcodeModel(1, ComponentId{2}, -2), nullptr);
    EXPECT_EQ(source.CreateOpcodeModel(1, ComponentId{2}, -2), nullptr);
    ASSERT_EQ(source.BodyNotes().size(), 1U);
    EXPECT_EQ(source.BodyNotes()[0].component, 2U);
}

TEST(IfcDataSource, ListsOpeningsThatNeverClash) {
    SceneBuilder builder;
    builder.Storey("E0", 0);
    builder.Add("IfcWall").Box({0, 0, 0}, {6000, 200, 2500}).On(0);
    builder.Add("IfcOpeningElement").As("opening").Box({500, -50, 900}, {900, 250, 1200}).On(0);
    builder.Add("IfcOpeningElement").As("opening").Box({2000, 0, 0}, {2900, 200, 2000}).On(0);
    builder.Add("IfcDoor").Box({2000, 0, 0}, {2900, 200, 2000}).On(0);
    builder.Add("IfcPipeSegment").Box({650, -2000, 1000}, {750, 2000, 1100}).On(0);
    builder.Relate("voids", 1, 0).Relate("voids", 2, 0).Relate("fills", 2, 3);
    Host host({builder});
    const auto holes = host.Holes();
    ASSERT_EQ(holes.size(), 2U);
    // In the order of their kinds: the opening in the wall, then the door.
    const auto opening = holes[0]->holeType == 101 ? holes[0] : holes[1];
    const auto door = holes[0]->holeType == 101 ? holes[1] : holes[0];
    EXPECT_EQ(opening->holeType, 101);
    EXPECT_EQ(opening->holeWidth, 400);
    EXPECT_EQ(opening->holeHeight, 300);
    EXPECT_EQ(opening->holeCenter, L"700,100,1050");
    EXPECT_EQ(opening->holeElev, L"900");
    EXPECT_EQ(opening->parentId, *HexFromGlobalId(SceneBuilder::GuidOf(0)));
    EXPECT_EQ(door->holeType, 104);
    const auto clashes = host.Clashes();
    EXPECT_FALSE(clashes.empty()) << "the pipe goes through the wall";
    for (const auto& clash : clashes) {
        EXPECT_NE(clash->GetObjGuidA(), opening->objGuid);
        EXPECT_NE(clash->GetObjGuidB(), opening->objGuid);
    }
}

TEST(IfcDataSource, KeepsRelatedComponentsApart) {
    SceneBuilder builder;
    builder.Add("IfcSlab").Box({0, 0, 0}, {3000, 3000, 200});
    builder.Add("IfcPipeSegment").Box({500, 500, -1000}, {600, 600, 1000});
    EXPECT_EQ(Host({builder}).Clashes().size(), 1U);
    builder.Connect(0, 1, "element");
    EXPECT_TRUE(Host({builder}).Clashes().empty());
}

TEST(IfcDataSource, HandsOutGridAxesWithTheirTree) {
    SceneBuilder builder;
    builder.Storey("E0", 0).Add("IfcGrid").As("grid");
    builder.Grid(
        0, SceneBuilder::Json::array({SceneBuilder::LineAxis("1", {0, -50000, 0}, {0, 50000, 0}),
                                      SceneBuilder::LineAxis("A", {-50000, 0, 0}, {50000, 0, 0})}));
    Host host({builder});
    std::vector<SQNGIAxisItem*> items;
    KYTOOLS::GRAPH::QuadTree<SQNGIAxisItem*> tree{KYTOOLS::GRAPH::BoundingBox2d()};
    host.Source().GetFloorAxisInfo(1, L"E0", items, tree);
    ASSERT_EQ(items.size(), 2U);
    std::vector<SQNGIAxisItem*> near;
    tree.Query(KYTOOLS::GRAPH::BoundingBox2d(-10, 100, 10, 200), near);
    EXPECT_THAT(near, ElementsAre(items[0]));
    for (SQNGIAxisItem* item : items)
        delete item;
    items.clear();
    host.Source().GetFloorAxisInfo(1, L"nowhere", items, tree);
    EXPECT_TRUE(items.empty());
}

TEST(IfcDataSource, PlacesClashesAmongTheGridAxes) {
    SceneBuilder builder = UnderASlab("IfcDuctSegment", {900, 1900, 2700}, {1100, 2100, 2900});
    builder.Add("IfcGrid").As("grid");
    builder.Grid(-1, SceneBuilder::Json::array(
                         {SceneBuilder::LineAxis("1", {0, -50000, 0}, {0, 50000, 0}),
                          SceneBuilder::LineAxis("A", {-50000, 0, 0}, {50000, 0, 0})}));
    Host host({builder});
    const auto clashes = host.Clashes();
    ASSERT_EQ(clashes.size(), 1U);
    EXPECT_EQ(clashes[0]->GetAxisPos(), L"1(+1000mm) / A(+2000mm)");
}

TEST(IfcDataSource, TellsTheHostWhatItDoesAndShows) {
    std::vector<std::wstring> shown;
    std::vector<ComponentId> marked;
    DataSourceOptions options;
    options.showProgress = [&shown](const std::wstring& text) { shown.push_back(text); };
    options.highlight = [&marked](int, ComponentId id) { marked.push_back(id); };
    SceneBuilder builder;
    builder.Storey("E0", 0).Add("IfcWall").Named("W1").Box({0, 0, 0}, {3000, 200, 2500}).On(0);
    Host host({builder}, options);
    EXPECT_THAT(shown, ElementsAre(L"f"));
    host.Source().HighlightObj(1, ComponentId{0});
    host.Source().HighlightObj(1, ComponentId{7});
    EXPECT_THAT(marked, ElementsAre(0U));
    EXPECT_EQ(host.Source().GetObjDisplayName(1, ComponentId{0}),
              L"W1 (IfcWall, 0000000000000000000000)");
    EXPECT_EQ(host.Source().GetObjDisplayName(1, ComponentId{7}), L"");
    const std::wstring guid(32, L'0');
    EXPECT_EQ(host.Source().GetObjXiaoLeiName(1, L"E0", guid), L"填充墙");
    EXPECT_EQ(host.Source().GetObjXiaoLeiName(1, L"E1", guid), L"");
}

TEST(IfcDataSource, GivesNoAttributesForUnknownIds) {
    SceneBuilder builder;
    builder.Add("IfcWall").Box({0, 0, 0}, {3000, 200, 2500});
    Host host({builder});
    std::map<std::wstring, std::wstring> attributes;
    EXPECT_FALSE(host.Source().GetObjAttributes(1, ComponentId{7}, attributes));
    EXPECT_TRUE(attributes.empty());
    EXPECT_TRUE(host.Source().GetObjAttributes(1, ComponentId{0}, attributes));
    EXPECT_EQ(attributes[L"topheight"], L"2500");
}

// The boxes must reach as far as the library's own clearances, whatever these are.
TEST(IfcDataSource, ReachesAsFarAsTheLibrarysClearancesForEveryPairOfKinds) {
    const char* systems[] = {"", "", "Drain", "Cold water", "Hot water"};
    const char* classes[] = {"IfcDuctSegment", "IfcCableCarrierSegment", "IfcPipeSegment",
                             "IfcPipeSegment", "IfcPipeSegment"};
    for (std::size_t a = 0; a < 5; ++a) {
        for (std::size_t b = 0; b < 5; ++b) {
            SceneBuilder builder;
            builder.Storey("E0", 0).System(systems[a]).System(systems[b]);
            builder.Add(classes[a]).Box({0, 0, 0}, {3000, 100, 100}).On(0);
            builder.With("systems", std::vector<int>{0});
            builder.Add(classes[b]).Box({0, 0, 10000}, {3000, 100, 10100}).On(0);
            builder.With("systems", std::vector<int>{1});
            Host host({builder});
            auto& first = const_cast<ObjectModelInfo&>(host.Object(0));
            auto& second = const_cast<ObjectModelInfo&>(host.Object(1));
            KYCOLLISION::Rule::KyCollisionMode clearance;
            clearance.SetModeType(KYCOLLISION::Rule::eModeClearance);
            KYCOLLISION::MODEL::CollisionAlgorithm algorithm(&first, &second);
            algorithm.SetDataSource(&host.Source());
            algorithm.SetCollisionMode(&clearance, &clearance);
            QNIM::GeometryPrimitiveResource::CQNIMPosition p1;
            QNIM::GeometryPrimitiveResource::CQNIMPosition p2;
            EXPECT_FALSE(algorithm.CollisionCheck(p1, p2));
            int offsetA = 0;
            int offsetB = 0;
            algorithm.GetBodyOffset(offsetA, offsetB);
            EXPECT_GT(offsetA, 0);
            EXPECT_LE(100.0 + offsetA, first.GetBoundingBox().GetMaxZ());
            EXPECT_GE(10000.0 - offsetB, second.GetBoundingBox().GetMinZ());
        }
    }
}

}  // namespace
}  // namespace ifchost
