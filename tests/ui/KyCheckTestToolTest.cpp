// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/platform/BoundingBox2d.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/ui/KyCheckTestTool.h"
#include "KYCollisionBase/ui/SceneRecorder.h"

#include <array>
#include <numbers>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "opcode/TestMesh.h"

using kycb::PrimitiveKind;
using kycb::RecordedNode;
using kycb::SceneRecorder;
using kycb::opcode::test::BuiltMesh;
using kycb::opcode::test::MeshData;
using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr SQNGIRGBClr kRed{255, 0, 0};
constexpr SQNGIRGBClr kTeal{0, 128, 129};

using Ends = std::pair<CQNIMPosition, CQNIMPosition>;

class OddCurve : public CQNIMCurve {
  public:
    CQNIMBoundingBox GetBoundingBox() const override { return {}; }
};

class KyCheckTestToolTest : public testing::Test {
  protected:
    KyCheckTestToolTest() {
        BASEUI::SetMessageBox(
            [this](const std::wstring& text, unsigned) { messages_.push_back(text); });
        scene_.SetLineState(7);
        tool_.InitQGNIContext(&scene_);
    }
    ~KyCheckTestToolTest() override {
        tool_.Reset();
        BASEUI::SetMessageBox({});
    }

    const RecordedNode& Root() const { return *scene_.Root().Children().at(0); }
    const auto& Drawn() const { return Root().Children(); }

    // The only node drawn, after a look at what every drawn node has in common.
    const RecordedNode& TheNode(SQNGIRGBClr colour) const {
        EXPECT_THAT(Drawn(), SizeIs(1));
        ExpectDrawn(*Drawn().at(0), colour);
        return *Drawn().at(0);
    }

    static void ExpectDrawn(const RecordedNode& node, SQNGIRGBClr colour) {
        EXPECT_EQ(node.Name(), L"");
        EXPECT_EQ(node.Color(), colour);
        EXPECT_THAT(node.Updates(), ElementsAre(1));
    }

    // The ends of a node's line segments; each must have come with the scene's state.
    static std::vector<Ends> Segments(const RecordedNode& node) {
        std::vector<Ends> ends;
        for (const auto& primitive : node.Primitives()) {
            EXPECT_EQ(primitive.kind, PrimitiveKind::kLineSegment);
            EXPECT_EQ(primitive.state, 7);
            const auto& segment = std::get<CQNIMLineSegment>(primitive.curve);
            ends.emplace_back(segment.GetStartPt(), segment.GetEndPt());
        }
        return ends;
    }

    std::vector<std::wstring> messages_;
    SceneRecorder scene_;
    KyCheckTestTool& tool_ = *KyCheckTestTool::Instance();
};

}  // namespace

TEST_F(KyCheckTestToolTest, HasOneInstance) {
    EXPECT_EQ(KyCheckTestTool::Instance(), KyCheckTestTool::Instance());
}

TEST(KyCheckTestTool, HasNoContextAtFirst) {
    EXPECT_EQ(KyCheckTestTool::Instance()->GetQGNIContext(), nullptr);
}

TEST(KyCheckTestTool, DrawsNothingBeforeItHasAContext) {
    KyCheckTestTool& tool = *KyCheckTestTool::Instance();
    tool.DrawCollisionPoint({1, 2, 3}, kRed);
    tool.DrawTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, kRed);
    tool.ClearAll();
    tool.Reset();
    EXPECT_EQ(tool.GetQGNIContext(), nullptr);
}

TEST_F(KyCheckTestToolTest, CreatesTheRootNodeUnderTheSceneRoot) {
    EXPECT_EQ(tool_.GetQGNIContext(), &scene_);
    ASSERT_THAT(scene_.Root().Children(), SizeIs(1));
    EXPECT_EQ(Root().Name(), L"testRoot");
    EXPECT_THAT(Root().Primitives(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, StoresANullContextAndCreatesNoRootForIt) {
    tool_.Reset();
    tool_.InitQGNIContext(nullptr);
    EXPECT_EQ(tool_.GetQGNIContext(), nullptr);
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    EXPECT_THAT(scene_.Root().Children(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, DrawsNothingAndClearsNothingAfterANullContext) {
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    tool_.InitQGNIContext(nullptr);
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    tool_.ClearAll();
    EXPECT_THAT(Drawn(), SizeIs(1));
}

TEST_F(KyCheckTestToolTest, DrawsACollisionPointAsAHorizontalCircle) {
    tool_.DrawCollisionPoint({10, 20, 30}, kTeal);
    const RecordedNode& node = TheNode(kTeal);
    ASSERT_THAT(node.Primitives(), SizeIs(1));
    EXPECT_EQ(node.Primitives()[0].kind, PrimitiveKind::kCurve);
    const auto& circle = std::get<CQNIMBoundArc>(node.Primitives()[0].curve);
    EXPECT_EQ(circle.GetCentrePt(), CQNIMPosition(10, 20, 30));
    EXPECT_EQ(circle.GetRadius(), 200.0);
    EXPECT_EQ(circle.GetSweepAngle(), 2 * std::numbers::pi);
}

TEST_F(KyCheckTestToolTest, DrawsATriangleAsThreeEdgesInOrder) {
    const CQNIMPosition a(0, 0, 0);
    const CQNIMPosition b(5, 0, 0);
    const CQNIMPosition c(0, 5, 1);
    tool_.DrawTriangle(a, b, c, kRed);
    EXPECT_THAT(Segments(TheNode(kRed)), ElementsAre(Ends(a, b), Ends(b, c), Ends(c, a)));
}

TEST_F(KyCheckTestToolTest, DrawsALineSegment) {
    tool_.DrawLineSeg({{1, 2, 3}, {4, 5, 6}}, kRed);
    EXPECT_THAT(Segments(TheNode(kRed)), ElementsAre(Ends({1, 2, 3}, {4, 5, 6})));
}

TEST_F(KyCheckTestToolTest, DrawsAnArc) {
    tool_.DrawArc(CQNIMBoundArc({1, 2, 3}, 50, 0.5, 1.5), kTeal);
    const RecordedNode& node = TheNode(kTeal);
    ASSERT_THAT(node.Primitives(), SizeIs(1));
    EXPECT_EQ(node.Primitives()[0].kind, PrimitiveKind::kArc);
    const auto& arc = std::get<CQNIMBoundArc>(node.Primitives()[0].curve);
    EXPECT_EQ(arc.GetCentrePt(), CQNIMPosition(1, 2, 3));
    EXPECT_EQ(arc.GetRadius(), 50);
    EXPECT_EQ(arc.GetStartAngle(), 0.5);
    EXPECT_EQ(arc.GetSweepAngle(), 1.5);
}

TEST_F(KyCheckTestToolTest, DrawsCurvesByTheirKind) {
    const CQNIMLineSegment segment({0, 0, 0}, {1, 0, 0});
    const CQNIMBoundArc arc({0, 0, 0}, 5, 0, 1);
    tool_.DrawQNIMCurve(&segment, kRed);
    tool_.DrawQNIMCurve(&arc, kTeal);
    ASSERT_THAT(Drawn(), SizeIs(2));
    ExpectDrawn(*Drawn()[0], kRed);
    EXPECT_EQ(Drawn()[0]->Primitives().at(0).kind, PrimitiveKind::kLineSegment);
    ExpectDrawn(*Drawn()[1], kTeal);
    EXPECT_EQ(Drawn()[1]->Primitives().at(0).kind, PrimitiveKind::kArc);
}

TEST_F(KyCheckTestToolTest, DrawsNoCurveOfAnotherKindAndNoNullCurve) {
    const OddCurve odd;
    tool_.DrawQNIMCurve(&odd, kRed);
    tool_.DrawQNIMCurve(nullptr, kRed);
    EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, DrawsABoxAsBottomLoopTopLoopAndVerticals) {
    const CQNIMBoundingBox box({1, 2, 3}, {4, 6, 8});
    tool_.DrawBoundingBox(box, kRed);
    const std::array<CQNIMPosition, 4> low{{{1, 2, 3}, {4, 2, 3}, {4, 6, 3}, {1, 6, 3}}};
    const std::array<CQNIMPosition, 4> high{{{1, 2, 8}, {4, 2, 8}, {4, 6, 8}, {1, 6, 8}}};
    EXPECT_THAT(Segments(TheNode(kRed)),
                ElementsAre(Ends(low[0], low[1]), Ends(low[1], low[2]), Ends(low[2], low[3]),
                            Ends(low[3], low[0]), Ends(high[0], high[1]), Ends(high[1], high[2]),
                            Ends(high[2], high[3]), Ends(high[3], high[0]), Ends(low[0], high[0]),
                            Ends(low[1], high[1]), Ends(low[2], high[2]), Ends(low[3], high[3])));
}

TEST_F(KyCheckTestToolTest, DrawsBothKindsOfBoxesAlike) {
    tool_.DrawBoundingBox(CQNIMBoundingBox({1, 2, 3}, {4, 6, 8}), kRed);
    tool_.DrawBoundingBox(KYTOOLS::GRAPH::BoundingBox3d(1, 2, 3, 4, 6, 8), kRed);
    ASSERT_THAT(Drawn(), SizeIs(2));
    EXPECT_EQ(Segments(*Drawn()[0]), Segments(*Drawn()[1]));
}

TEST_F(KyCheckTestToolTest, DrawsARectangleAsFourEdges) {
    tool_.DrawBoundingBox(KYTOOLS::GRAPH::BoundingBox2d(1, 2, 4, 6), kTeal);
    const std::array<CQNIMPosition, 4> corners{{{1, 2, 0}, {4, 2, 0}, {4, 6, 0}, {1, 6, 0}}};
    EXPECT_THAT(Segments(TheNode(kTeal)),
                ElementsAre(Ends(corners[0], corners[1]), Ends(corners[1], corners[2]),
                            Ends(corners[2], corners[3]), Ends(corners[3], corners[0])));
}

TEST_F(KyCheckTestToolTest, DrawsNoNullBoxes) {
    tool_.DrawBoundingBox(KYTOOLS::GRAPH::BoundingBox3d(), kRed);
    tool_.DrawBoundingBox(KYTOOLS::GRAPH::BoundingBox2d(), kRed);
    EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, DrawsEachTriangleOfAMeshAsANodeOfItsOwn) {
    BuiltMesh mesh(
        MeshData{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 0.5F}}, {{0, 1, 2}, {3, 2, 1}}});
    tool_.DrawObjectModelTriangle(&mesh.Model(), kTeal);
    ASSERT_THAT(Drawn(), SizeIs(2));
    const CQNIMPosition a(0, 0, 0);
    const CQNIMPosition b(1, 0, 0);
    const CQNIMPosition c(0, 1, 0);
    const CQNIMPosition d(0, 0, 0.5);
    ExpectDrawn(*Drawn()[0], kTeal);
    EXPECT_THAT(Segments(*Drawn()[0]), ElementsAre(Ends(a, b), Ends(b, c), Ends(c, a)));
    ExpectDrawn(*Drawn()[1], kTeal);
    EXPECT_THAT(Segments(*Drawn()[1]), ElementsAre(Ends(d, c), Ends(c, b), Ends(b, d)));
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(KyCheckTestToolTest, WidensSinglePrecisionAsItIs) {
    BuiltMesh mesh(MeshData{{{0.1F, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}});
    tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
    EXPECT_EQ(Segments(*Drawn().at(0)).at(0).first.GetX(), static_cast<double>(0.1F));
}

TEST_F(KyCheckTestToolTest, DrawsNothingForANullOrEmptyMesh) {
    tool_.DrawObjectModelTriangle(nullptr, kRed);
    BuiltMesh empty(MeshData{{{0, 0, 0}}, {}});
    tool_.DrawObjectModelTriangle(&empty.Model(), kRed);
    Opcode::Model neverBuilt;
    tool_.DrawObjectModelTriangle(&neverBuilt, kRed);
    EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, DrawsNothingOfAMeshThatWasRefused) {
    BuiltMesh broken(MeshData{{{0, 0, 0}, {1, 0, 0}}, {{0, 1, 99}}});
    ASSERT_FALSE(broken.Accepted());
    tool_.DrawObjectModelTriangle(&broken.Model(), kRed);
    EXPECT_THAT(Drawn(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, ShowsTriErrorOnceForEachTriangleWithALongEdgeAndDrawsOn) {
    BuiltMesh mesh(MeshData{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2000000, 0, 0}},
                            {{0, 1, 3}, {0, 1, 2}, {3, 0, 1}, {2, 1, 0}}});
    tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
    EXPECT_THAT(Drawn(), SizeIs(4));
    EXPECT_THAT(messages_, ElementsAre(L"Tri Error", L"Tri Error"));
}

TEST_F(KyCheckTestToolTest, DrawsTheTriangleBeforeItShowsTriError) {
    std::size_t drawnByThen = 0;
    BASEUI::SetMessageBox([&](const std::wstring&, unsigned) { drawnByThen = Drawn().size(); });
    BuiltMesh mesh(MeshData{{{0, 0, 0}, {1, 0, 0}, {2000000, 0, 0}}, {{0, 1, 2}}});
    tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
    EXPECT_EQ(drawnByThen, 1U);
}

TEST_F(KyCheckTestToolTest, TakesAnEdgeOfExactlyAKilometreForGood) {
    BuiltMesh mesh(MeshData{{{0, 0, 0}, {1000000, 0, 0}, {0, 1, 0}}, {{0, 1, 0}}});
    tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
    EXPECT_THAT(messages_, IsEmpty());
}

// Each of the three edges is looked at: the far corner is each of the three in turn, and of two
// corners 1.4 km apart each is near the third.
TEST_F(KyCheckTestToolTest, MeasuresAllThreeEdges) {
    const std::vector<IceMaths::Point> points{{0, 0, 0}, {700000, 0, 0}, {-700000, 0, 0}};
    for (const auto& triangle :
         std::vector<IceMaths::IndexedTriangle>{{1, 2, 0}, {1, 0, 2}, {0, 1, 2}}) {
        messages_.clear();
        BuiltMesh mesh(MeshData{points, {triangle}});
        tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
        EXPECT_THAT(messages_, SizeIs(1));
    }
}

TEST_F(KyCheckTestToolTest, ShowsNoTriErrorWithoutAContext) {
    tool_.Reset();
    BuiltMesh mesh(MeshData{{{0, 0, 0}, {1, 0, 0}, {2000000, 0, 0}}, {{0, 1, 2}}});
    tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
    EXPECT_THAT(messages_, IsEmpty());
}

TEST_F(KyCheckTestToolTest, DrawsNothingByAnyOperationWithoutAContext) {
    tool_.Reset();
    const CQNIMLineSegment segment({0, 0, 0}, {1, 0, 0});
    const CQNIMBoundArc arc({0, 0, 0}, 5, 0, 1);
    BuiltMesh mesh(MeshData{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 1, 2}}});
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    tool_.DrawTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, kRed);
    tool_.DrawObjectModelTriangle(&mesh.Model(), kRed);
    tool_.DrawQNIMCurve(&segment, kRed);
    tool_.DrawQNIMCurve(&arc, kRed);
    tool_.DrawLineSeg(segment, kRed);
    tool_.DrawArc(arc, kRed);
    tool_.DrawBoundingBox(CQNIMBoundingBox({0, 0, 0}, {1, 1, 1}), kRed);
    tool_.DrawBoundingBox(KYTOOLS::GRAPH::BoundingBox3d(0, 0, 0, 1, 1, 1), kRed);
    tool_.DrawBoundingBox(KYTOOLS::GRAPH::BoundingBox2d(0, 0, 1, 1), kRed);
    tool_.ClearAll();
    tool_.Reset();
    EXPECT_THAT(scene_.Root().Children(), IsEmpty());
}

TEST_F(KyCheckTestToolTest, ClearsAllAndKeepsTheRoot) {
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    tool_.DrawTriangle({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, kTeal);
    ASSERT_THAT(Drawn(), SizeIs(2));
    tool_.ClearAll();
    EXPECT_THAT(Drawn(), IsEmpty());
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    EXPECT_THAT(Drawn(), SizeIs(1));
}

TEST_F(KyCheckTestToolTest, DrawsNothingAfterResetUntilThereIsAContextAgain) {
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    tool_.Reset();
    EXPECT_EQ(tool_.GetQGNIContext(), nullptr);
    EXPECT_THAT(scene_.Root().Children(), IsEmpty());
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    EXPECT_THAT(scene_.Root().Children(), IsEmpty());
    tool_.InitQGNIContext(&scene_);
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    EXPECT_THAT(Drawn(), SizeIs(1));
}

TEST_F(KyCheckTestToolTest, ResetReleasesTheRootAlsoAfterANullContext) {
    tool_.InitQGNIContext(nullptr);
    tool_.Reset();
    EXPECT_THAT(scene_.Root().Children(), IsEmpty());
}

namespace {

class RefusingContext : public IQNGIContext {
  public:
    IQNGINode* CreateNode(QNGINodeId, const std::wstring&) override { return nullptr; }
    int GetLineState() const override { return 0; }
};

}  // namespace

TEST_F(KyCheckTestToolTest, DrawsNothingIntoAContextThatCreatesNoNodes) {
    tool_.Reset();
    RefusingContext refusing;
    tool_.InitQGNIContext(&refusing);
    tool_.DrawCollisionPoint({0, 0, 0}, kRed);
    tool_.ClearAll();
    tool_.Reset();
    EXPECT_EQ(tool_.GetQGNIContext(), nullptr);
}
