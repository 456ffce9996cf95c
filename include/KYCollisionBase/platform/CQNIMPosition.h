// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMVector.h"

namespace QNIM::GeometryPrimitiveResource {

/// A point in world coordinates (mm). The default is the origin.
class CQNIMPosition {
  public:
    CQNIMPosition() = default;
    CQNIMPosition(double x, double y, double z) : x_(x), y_(y), z_(z) {}

    double GetX() const { return x_; }
    double GetY() const { return y_; }
    double GetZ() const { return z_; }

    /// The distance between two points, without overflow in between (mm).
    double DistToPt(const CQNIMPosition& other) const { return (*this - other).Length(); }

    friend CQNIMVector operator-(const CQNIMPosition& a, const CQNIMPosition& b) {
        return {a.x_ - b.x_, a.y_ - b.y_, a.z_ - b.z_};
    }
    friend CQNIMPosition operator+(const CQNIMPosition& p, const CQNIMVector& v) {
        return {p.x_ + v.GetX(), p.y_ + v.GetY(), p.z_ + v.GetZ()};
    }
    friend bool operator==(const CQNIMPosition&, const CQNIMPosition&) = default;

  private:
    double x_ = 0.0;
    double y_ = 0.0;
    double z_ = 0.0;
};

}  // namespace QNIM::GeometryPrimitiveResource
