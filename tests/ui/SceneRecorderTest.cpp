// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/ui/SceneRecorder.h"

#include <set>

#include <gmock/gmock.h>

using kycb::PrimitiveKind;
using kycb::SceneRecorder;
using QNIM::GeometryPrimitiveResource::CQNIMBoundArc;
using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMCurve;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class OddCurve : public CQNIMCurve {
  public:
    CQNIMBoundingBox GetBoundingBox() const override { return {}; }
};

}  // namespace

TEST(SceneRecorder, CreatesNamedNodesBelowTheirParents) {
    SceneRecorder scene;
    IQNGINode* parent = scene.CreateNode(kQNGISceneRoot, L"parent");
    scene.CreateNode(parent->GetId(), L"child");
    ASSERT_THAT(scene.Root().Children(), SizeIs(1));
    EXPECT_EQ(scene.Root().Children()[0]->Name(), L"parent");
    ASSERT_THAT(scene.Root().Children()[0]->Children(), SizeIs(1));
    EXPECT_EQ(scene.Root().Children()[0]->Children()[0]->Name(), L"child");
}

TEST(SceneRecorder, RefusesAParentThatDoesNotExist) {
    SceneRecorder scene;
    EXPECT_EQ(scene.CreateNode(99, L"orphan"), nullptr);
    EXPECT_THAT(scene.Root().Children(), IsEmpty());
}

TEST(SceneRecorder, NeverUsesAnIdTwice) {
    SceneRecorder scene;
    std::set<QNGINodeId> ids{kQNGISceneRoot};
    for (int i = 0; i < 10; ++i) {
        IQNGINode* node = scene.CreateNode(kQNGISceneRoot, L"");
        EXPECT_TRUE(ids.insert(node->GetId()).second);
        if (i % 2 == 0) node->Release();
    }
    EXPECT_THAT(scene.Root().Children(), SizeIs(5));
}

TEST(SceneRecorder, RecordsColoursUpdatesAndPrimitivesInOrder) {
    SceneRecorder scene;
    IQNGINode* node = scene.CreateNode(kQNGISceneRoot, L"");
    node->SetColor({1, 2, 3});
    node->AddArc(CQNIMBoundArc({0, 0, 0}, 1, 0, 1));
    node->AddLineSegment({{0, 0, 0}, {1, 0, 0}}, 5);
    node->Update(1);
    node->Update(4);
    const auto& recorded = *scene.Root().Children().at(0);
    EXPECT_EQ(recorded.Color(), (SQNGIRGBClr{1, 2, 3}));
    EXPECT_THAT(recorded.Updates(), ElementsAre(1, 4));
    ASSERT_THAT(recorded.Primitives(), SizeIs(2));
    EXPECT_EQ(recorded.Primitives()[0].kind, PrimitiveKind::kArc);
    EXPECT_EQ(recorded.Primitives()[1].kind, PrimitiveKind::kLineSegment);
    EXPECT_EQ(recorded.Primitives()[1].state, 5);
}

TEST(SceneRecorder, KeepsKnownCurvesAndNotesUnknownOnes) {
    SceneRecorder scene;
    IQNGINode* node = scene.CreateNode(kQNGISceneRoot, L"");
    node->AddCurve(CQNIMLineSegment({0, 0, 0}, {1, 0, 0}));
    node->AddCurve(CQNIMBoundArc({0, 0, 0}, 1, 0, 1));
    node->AddCurve(OddCurve());
    const auto& primitives = scene.Root().Children().at(0)->Primitives();
    ASSERT_THAT(primitives, SizeIs(3));
    EXPECT_TRUE(std::holds_alternative<CQNIMLineSegment>(primitives[0].curve));
    EXPECT_TRUE(std::holds_alternative<CQNIMBoundArc>(primitives[1].curve));
    EXPECT_TRUE(std::holds_alternative<kycb::UnknownCurve>(primitives[2].curve));
    for (const auto& primitive : primitives)
        EXPECT_EQ(primitive.kind, PrimitiveKind::kCurve);
}

TEST(SceneRecorder, ReleasesANodeWithEverythingBelowIt) {
    SceneRecorder scene;
    IQNGINode* parent = scene.CreateNode(kQNGISceneRoot, L"a");
    scene.CreateNode(parent->GetId(), L"below");
    scene.CreateNode(kQNGISceneRoot, L"b");
    parent->Release();
    ASSERT_THAT(scene.Root().Children(), SizeIs(1));
    EXPECT_EQ(scene.Root().Children()[0]->Name(), L"b");
}

TEST(SceneRecorder, HandsOutTheLineStateItWasGiven) {
    SceneRecorder scene;
    EXPECT_EQ(scene.GetLineState(), 0);
    scene.SetLineState(3);
    EXPECT_EQ(scene.GetLineState(), 3);
}
