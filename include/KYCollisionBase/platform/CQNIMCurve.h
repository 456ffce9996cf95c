// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/CQNIMBoundingBox.h"

namespace QNIM::GeometryPrimitiveResource {

/// A bounded curve in world coordinates (mm); owned and deleted through this base.
class KYCB_API CQNIMCurve {
  public:
    virtual ~CQNIMCurve() = default;

    /// The smallest axis-aligned box around the curve.
    virtual CQNIMBoundingBox GetBoundingBox() const = 0;
};

}  // namespace QNIM::GeometryPrimitiveResource
