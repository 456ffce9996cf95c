// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMCurve.h"

namespace QNIM::GeometryPrimitiveResource {

/// The straight line from a start to an end point (mm); the two may coincide.
class KYCB_API CQNIMLineSegment : public CQNIMCurve {
  public:
    CQNIMLineSegment(const CQNIMPosition& start, const CQNIMPosition& end)
        : CQNIMCurve(Kind::kLineSegment), start_(start), end_(end) {}

    const CQNIMPosition& GetStartPt() const { return start_; }
    const CQNIMPosition& GetEndPt() const { return end_; }

    CQNIMBoundingBox GetBoundingBox() const override;

  private:
    CQNIMPosition start_;
    CQNIMPosition end_;
};

}  // namespace QNIM::GeometryPrimitiveResource
