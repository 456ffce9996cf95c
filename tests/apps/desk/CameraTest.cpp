// SPDX-License-Identifier: Apache-2.0
#include <QLocale>
#include <cmath>

#include <gmock/gmock.h>

#include "desk/view/Camera.h"

using desk::Camera;
using desk::SceneBounds;

namespace {

SceneBounds Box(float size) {
    SceneBounds bounds;
    bounds.Add(-size, -size, 0);
    bounds.Add(size, size, size);
    return bounds;
}

// Whether all corners of a box are on the screen.
bool IsInView(const Camera& camera, const SceneBounds& bounds, float aspect) {
    const QMatrix4x4 matrix = camera.ViewProjection(aspect, bounds);
    for (const float x : {bounds.min[0], bounds.max[0]}) {
        for (const float y : {bounds.min[1], bounds.max[1]}) {
            for (const float z : {bounds.min[2], bounds.max[2]}) {
                const QVector3D point = matrix.map(QVector3D(x, y, z));
                if (std::abs(point.x()) > 1 || std::abs(point.y()) > 1 || std::abs(point.z()) > 1)
                    return false;
            }
        }
    }
    return true;
}

}  // namespace

TEST(Camera, FitsABoxFromEveryDirectionAndInEveryShapeOfView) {
    for (const float size : {500.0F, 20000.0F, 300000.0F}) {
        for (const float aspect : {0.4F, 1.0F, 2.5F}) {
            for (float yaw = -3.0F; yaw < 3.0F; yaw += 0.7F) {
                for (const float pitch : {-1.5F, 0.0F, 0.6F, 1.5F}) {
                    Camera camera;
                    camera.LookFrom(yaw, pitch);
                    camera.Fit(Box(size), aspect);
                    EXPECT_TRUE(IsInView(camera, Box(size), aspect))
                        << size << ' ' << aspect << ' ' << yaw << ' ' << pitch;
                }
            }
        }
    }
}

TEST(Camera, StaysWhereItIsForAnEmptyBox) {
    Camera camera;
    const QString before = camera.ToText();
    camera.Fit(SceneBounds(), 1);
    EXPECT_EQ(camera.ToText(), before);
}

TEST(Camera, TurnsAroundItsTarget) {
    Camera camera;
    camera.Fit(Box(1000), 1);
    const QVector3D target = camera.Target();
    const float distance = camera.Distance();
    camera.Orbit(1, 0.3F);
    EXPECT_EQ(camera.Target(), target);
    EXPECT_NEAR((camera.Position() - target).length(), distance, distance * 1e-5F);
}

TEST(Camera, NeverTurnsOverItsHead) {
    Camera camera;
    for (int i = 0; i < 100; ++i)
        camera.Orbit(0, 0.5F);
    EXPECT_LT(camera.Forward().z(), 0);
    EXPECT_GT(QVector3D::crossProduct(camera.Forward(), QVector3D(0, 0, 1)).length(), 0.01F);
    EXPECT_TRUE(IsInView(camera, SceneBounds(), 1));
}

TEST(Camera, MovesWithTheMouse) {
    Camera camera;
    camera.LookFrom(0, 0);  // along +x: right is -y
    const QVector3D before = camera.Target();
    camera.Pan(0.5F, 0);
    EXPECT_LT(camera.Target().y(), before.y());
    camera.Pan(0, 0.5F);
    EXPECT_GT(camera.Target().z(), before.z());
}

TEST(Camera, ZoomsWithinLimits) {
    Camera camera;
    const float before = camera.Distance();
    camera.Zoom(2);
    EXPECT_FLOAT_EQ(camera.Distance(), before / 2);
    camera.Zoom(1e20F);
    EXPECT_GT(camera.Distance(), 0);
    camera.Zoom(1e-30F);
    EXPECT_TRUE(std::isfinite(camera.Distance()));
}

TEST(Camera, ComesBackFromItsText) {
    Camera camera;
    camera.Fit(Box(12345), 1.3F);
    camera.Orbit(0.4F, -0.2F);
    const auto back = Camera::FromText(camera.ToText());
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(back->ToText(), camera.ToText());
}

TEST(Camera, RefusesTextsOfOthers) {
    for (const char* text : {"", "camera", "camera 1 2 3 4 5", "camera 1 2 3 4 5 x",
                             "camera 1 2 3 4 5 inf", "view 1 2 3 4 5 6", "camera 1 2 3 4 5 6 7"}) {
        EXPECT_FALSE(Camera::FromText(text).has_value()) << text;
    }
}
