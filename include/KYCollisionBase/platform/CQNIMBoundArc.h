// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMCurve.h"

namespace QNIM::GeometryPrimitiveResource {

/// A circular arc parallel to the xy plane (mm), run through counter-clockwise seen from above.
class KYCB_API CQNIMBoundArc : public CQNIMCurve {
  public:
    /// The arc about `centre` from `startAngle` over `sweepAngle` (radians, counter-clockwise from
    /// +x). A sweep of 2 pi is the full circle; more than that counts as 2 pi, and a negative sweep
    /// or radius as 0. An arc of no sweep or radius is a point.
    CQNIMBoundArc(const CQNIMPosition& centre, double radius, double startAngle, double sweepAngle);

    const CQNIMPosition& GetCentrePt() const { return centre_; }
    double GetRadius() const { return radius_; }
    double GetStartAngle() const { return startAngle_; }
    double GetSweepAngle() const { return sweepAngle_; }

    CQNIMPosition GetStartPt() const { return GetPtAt(startAngle_); }
    CQNIMPosition GetEndPt() const { return GetPtAt(startAngle_ + sweepAngle_); }

    /// The point of the circle that the arc belongs to at `angle` (radians from +x).
    CQNIMPosition GetPtAt(double angle) const;

    /// True when the arc passes the direction (dx, dy) seen from its centre, each end widened by
    /// `angleTolerance` (radians). The zero direction counts as that of the arc's start.
    bool IsInSweep(double dx, double dy, double angleTolerance) const;

    /// The point of the arc nearest to `point`; from equally near ones the arc's start is
    /// preferred.
    CQNIMPosition GetClosePt(const CQNIMPosition& point) const;

    /// The direction (length 1) in which the arc runs at the point of it nearest to `point`; zero
    /// for an arc of no radius.
    CQNIMVector GetTangentPtDir(const CQNIMPosition& point) const;

    CQNIMBoundingBox GetBoundingBox() const override;

  private:
    CQNIMPosition centre_;
    double radius_;
    double startAngle_;
    double sweepAngle_;
};

}  // namespace QNIM::GeometryPrimitiveResource
