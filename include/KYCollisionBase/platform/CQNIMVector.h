// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

namespace QNIM::GeometryPrimitiveResource {

/// A direction or displacement in model coordinates (mm, right-handed, z up). Default: zero.
class KYCB_API CQNIMVector {
  public:
    CQNIMVector() = default;
    CQNIMVector(double x, double y, double z) : x_(x), y_(y), z_(z) {}

    static const CQNIMVector XAxis;
    static const CQNIMVector YAxis;
    static const CQNIMVector ZAxis;

    double GetX() const { return x_; }
    double GetY() const { return y_; }
    double GetZ() const { return z_; }

    double Length() const;

    /// Scales this vector to length 1; the zero vector stays zero.
    void Normalise();

    /// This vector turned by `angle` (radians, counter-clockwise seen against `axis`).
    CQNIMVector RotateByAxis(double angle, const CQNIMVector& axis) const;

    /// The angle in [0, 2 pi) by which this vector is turned about `axis` to point as `target`;
    /// 0 when either has no length.
    double GetRotateAngle(const CQNIMVector& target, const CQNIMVector& axis) const;

    double Dot(const CQNIMVector& other) const;
    CQNIMVector Cross(const CQNIMVector& other) const;

    CQNIMVector operator-() const { return {-x_, -y_, -z_}; }
    friend CQNIMVector operator+(const CQNIMVector& a, const CQNIMVector& b) {
        return {a.x_ + b.x_, a.y_ + b.y_, a.z_ + b.z_};
    }
    friend CQNIMVector operator-(const CQNIMVector& a, const CQNIMVector& b) {
        return {a.x_ - b.x_, a.y_ - b.y_, a.z_ - b.z_};
    }
    friend CQNIMVector operator*(const CQNIMVector& a, double s) {
        return {a.x_ * s, a.y_ * s, a.z_ * s};
    }
    friend CQNIMVector operator*(double s, const CQNIMVector& a) { return a * s; }

  private:
    double x_ = 0.0;
    double y_ = 0.0;
    double z_ = 0.0;
};

}  // namespace QNIM::GeometryPrimitiveResource
