// SPDX-License-Identifier: Apache-2.0
// What the 3-D view draws, on displays that can show it.
#include "KYCollisionBase/platform/CQNIMLineSegment.h"
#include "KYCollisionBase/platform/CQNIMPosition.h"
#include "KYCollisionBase/ui/IQNGINode.h"

#include <QImage>
#include <QTest>
#include <cmath>

#include <gmock/gmock.h>

#include "desk/view/SceneView.h"

using desk::SceneMeshes;
using desk::SceneView;
using QNIM::GeometryPrimitiveResource::CQNIMLineSegment;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

namespace {

// A view of an empty scene around zero, from 10 m to the south and level.
class SceneViewTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!view_.Problem().isEmpty()) GTEST_SKIP() << view_.Problem().toStdString();
        QPalette palette;
        palette.setColor(QPalette::Base, Qt::white);
        view_.setPalette(palette);
        auto meshes = std::make_shared<SceneMeshes>();
        meshes->bounds.Add(-1000, -1000, -1000);
        meshes->bounds.Add(1000, 1000, 1000);
        view_.SetMeshes(std::move(meshes));
        view_.SetCamera(*desk::Camera::FromText("camera 0 0 0 10000 1.5707964 0"));
        view_.resize(300, 200);
        view_.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&view_));
    }

    void DrawBlackLine(const CQNIMPosition& from, const CQNIMPosition& to) {
        IQNGINode* node = view_.Diagnostics().CreateNode(kQNGISceneRoot, {});
        node->SetColor({0, 0, 0});
        node->AddLineSegment(CQNIMLineSegment(from, to), 0);
    }

    // How much of a row of pixels is black, in pixels; `height` is a share of the view's.
    double BlackIn(double height) {
        const QImage shown = view_.grab().toImage();
        const int y = static_cast<int>(height * shown.height());
        const int ground = qGray(shown.pixel(2, y));
        double black = 0.0;
        for (int x = 0; x < shown.width(); ++x)
            black += 1.0 - static_cast<double>(qGray(shown.pixel(x, y))) / ground;
        return black;
    }

    SceneView view_;
};

}  // namespace

TEST_F(SceneViewTest, DrawsLinesAsWideOnADenseDisplayAsOnAPlainOne) {
    DrawBlackLine({0, 0, -1000}, {0, 0, 1000});
    // Two pixels of a plain display; the edges of a line are smoothed in quarters.
    EXPECT_NEAR(BlackIn(0.5), 2.0 * view_.devicePixelRatioF(), 0.51);
    EXPECT_NEAR(BlackIn(0.05), 0.0, 0.1) << "a view of 40 degrees shows 7.3 m at this distance";
}

TEST_F(SceneViewTest, CutsALineThatPassesTheEye) {
    // From the middle of the view over the eye to far behind it.
    DrawBlackLine({0, 0, 0}, {0, -30000, 3000});
    EXPECT_NEAR(BlackIn(0.25), 2.0 * view_.devicePixelRatioF(), 0.51);
    EXPECT_NEAR(BlackIn(0.75), 0.0, 0.1) << "nothing of it is mirrored to below the middle";
}
