// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMatrix4x4>
#include <QString>
#include <QVector3D>
#include <optional>

#include "desk/core/SceneMeshes.h"

namespace desk {

/// Where the scene is looked at from: a point that is looked at, a distance, two angles. z is up.
class Camera {
  public:
    /// Turns around the point looked at; radians. Looking straight up or down is the limit.
    void Orbit(float yaw, float pitch);
    /// Moves the point looked at along with the mouse: shares of the view's height.
    void Pan(float right, float up);
    /// Divides the distance; 2 comes twice as near.
    void Zoom(float factor);
    /// Shows a box as a whole, in the direction looked at so far; `aspect` is the view's width by
    /// its height. Nothing for an empty box.
    void Fit(const SceneBounds& bounds, float aspect);
    /// Looks in a direction: from the south-west and above, say.
    void LookFrom(float yaw, float pitch);

    QVector3D Target() const { return target_; }
    float Distance() const { return distance_; }
    QVector3D Position() const;
    /// Where it looks; of length 1.
    QVector3D Forward() const;

    /// World to clip space. The depth range is fitted to `bounds`.
    QMatrix4x4 ViewProjection(float aspect, const SceneBounds& bounds) const;

    /// As a text that FromText reads, in any locale.
    QString ToText() const;
    static std::optional<Camera> FromText(const QString& text);

  private:
    QVector3D target_;
    float distance_ = 10000.0F;  // mm
    float yaw_ = -2.2F;
    float pitch_ = 0.6F;
};

}  // namespace desk
