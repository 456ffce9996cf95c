// SPDX-License-Identifier: Apache-2.0
#include "desk/view/Camera.h"

#include <QStringList>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace desk {
namespace {

constexpr float kFieldOfView = 40.0F;  // degrees, vertical
// Not quite upright: the view would have no "up" there.
constexpr float kSteepest = 1.55F;
constexpr float kNearest = 50.0F;    // mm
constexpr float kFarthest = 1.0e7F;  // mm: ten kilometres
// Around what is fitted stays some air.
constexpr float kFitMargin = 1.15F;

const QLatin1String kTextHead("camera");
constexpr qsizetype kTextParts = 7;

float HalfViewTangent() {
    return std::tan(kFieldOfView * std::numbers::pi_v<float> / 360.0F);
}

}  // namespace

QVector3D Camera::Forward() const {
    return {std::cos(pitch_) * std::cos(yaw_), std::cos(pitch_) * std::sin(yaw_),
            -std::sin(pitch_)};
}

QVector3D Camera::Position() const {
    return target_ - Forward() * distance_;
}

void Camera::Orbit(float yaw, float pitch) {
    LookFrom(yaw_ + yaw, pitch_ + pitch);
}

void Camera::LookFrom(float yaw, float pitch) {
    yaw_ = std::remainder(yaw, 2.0F * std::numbers::pi_v<float>);
    pitch_ = std::clamp(pitch, -kSteepest, kSteepest);
}

void Camera::Pan(float right, float up) {
    const QVector3D side = QVector3D::crossProduct(Forward(), QVector3D(0, 0, 1)).normalized();
    const QVector3D upward = QVector3D::crossProduct(side, Forward());
    const float height = 2.0F * distance_ * HalfViewTangent();
    target_ += side * (right * height) + upward * (up * height);
}

void Camera::Zoom(float factor) {
    distance_ = std::clamp(distance_ / factor, kNearest, kFarthest);
}

void Camera::Fit(const SceneBounds& bounds, float aspect) {
    if (bounds.IsEmpty()) return;
    const QVector3D low(bounds.min[0], bounds.min[1], bounds.min[2]);
    const QVector3D high(bounds.max[0], bounds.max[1], bounds.max[2]);
    target_ = (low + high) / 2.0F;
    const float radius = std::max((high - low).length() / 2.0F, kNearest);
    distance_ =
        std::clamp(kFitMargin * radius / (HalfViewTangent() * std::clamp(aspect, 0.1F, 1.0F)),
                   kNearest, kFarthest);
}

QMatrix4x4 Camera::ViewProjection(float aspect, const SceneBounds& bounds) const {
    const QVector3D eye = Position();
    float farthest = distance_ * 2.0F;
    if (!bounds.IsEmpty()) {
        const QVector3D low(bounds.min[0], bounds.min[1], bounds.min[2]);
        const QVector3D high(bounds.max[0], bounds.max[1], bounds.max[2]);
        const QVector3D middle = (low + high) / 2.0F;
        farthest = std::max(farthest, (middle - eye).length() + (high - low).length() / 2.0F);
    }
    // A near plane too close costs the precision of everything behind it.
    const float nearest = std::max(distance_ / 100.0F, farthest / 20000.0F);
    QMatrix4x4 matrix;
    matrix.perspective(kFieldOfView, aspect, nearest, farthest * 1.01F);
    matrix.lookAt(eye, target_, {0, 0, 1});
    return matrix;
}

QString Camera::ToText() const {
    QStringList parts(kTextHead);
    for (const float value : {target_.x(), target_.y(), target_.z(), distance_, yaw_, pitch_}) {
        parts << QString::number(static_cast<double>(value), 'g', 9);
    }
    return parts.join(' ');
}

std::optional<Camera> Camera::FromText(const QString& text) {
    const QStringList parts = text.split(' ');
    if (parts.size() != kTextParts || parts.front() != kTextHead) return std::nullopt;
    float values[kTextParts - 1];
    for (qsizetype i = 1; i < kTextParts; ++i) {
        bool isNumber = false;
        values[i - 1] = parts[i].toFloat(&isNumber);
        if (!isNumber || !std::isfinite(values[i - 1])) return std::nullopt;
    }
    Camera camera;
    camera.target_ = {values[0], values[1], values[2]};
    camera.distance_ = std::clamp(values[3], kNearest, kFarthest);
    camera.LookFrom(values[4], values[5]);
    return camera;
}

}  // namespace desk
