// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMCurve.h"

namespace QNIM::GeometryPrimitiveResource {

/// A circular arc parallel to the xy plane (mm), run through counter-clockwise seen from above.
class KYCB_API CQNIMBoundArc : public CQNIMCurve {
  public:
    /// The arc about `centre` from `startAngle` over `sweepAngle` (radians, counter-clockwise from
    /// +x; 0 < sweep <= 2 pi). A sweep of 2 pi is the full circle.
    CQNIMBoundArc(const CQNIMPosition& centre, double radius, double startAngle, double sweepAngle);

    const CQNIMPosition& GetCentrePt() const { return centre_; }
    double GetRadius() const { return radius_; }
    double GetStartAngle() const { return startAngle_; }
    double GetSweepAngle() const { return sweepAngle_; }

    /// The direction (length 1) in which the arc runs at the point of it nearest to `point`.
    CQNIMVector GetTangentPtDir(const CQNIMPosition& point) const;

    CQNIMBoundingBox GetBoundingBox() const override;

  private:
    CQNIMPosition centre_;
    double radius_;
    double startAngle_;
    double sweepAngle_;
};

}  // namespace QNIM::GeometryPrimitiveResource
