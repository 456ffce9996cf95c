// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/CQNIMBoundingBox.h"

namespace QNIM::GeometryPrimitiveResource {

/// A bounded curve in world coordinates (mm); owned and deleted through this base.
class KYCB_API CQNIMCurve {
  public:
    /// What the curve is. Only CQNIMLineSegment and CQNIMBoundArc, and classes derived from them,
    /// are more than kOther; the curve algorithms tell the kinds apart by this.
    enum class Kind { kOther, kLineSegment, kBoundArc };

    virtual ~CQNIMCurve() = default;

    /// The smallest axis-aligned box around the curve.
    virtual CQNIMBoundingBox GetBoundingBox() const = 0;

    Kind GetKind() const { return kind_; }

  protected:
    CQNIMCurve() = default;
    CQNIMCurve(const CQNIMCurve&) = default;
    CQNIMCurve& operator=(const CQNIMCurve&) = default;

  private:
    friend class CQNIMLineSegment;
    friend class CQNIMBoundArc;
    explicit CQNIMCurve(Kind kind) : kind_(kind) {}

    Kind kind_ = Kind::kOther;
};

}  // namespace QNIM::GeometryPrimitiveResource
