// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMPosition.h"

namespace QNIM::GeometryPrimitiveResource {

/// The closed axis-aligned box between a low and a high corner (mm).
class CQNIMBoundingBox {
  public:
    CQNIMBoundingBox() = default;
    CQNIMBoundingBox(const CQNIMPosition& low, const CQNIMPosition& high)
        : low_(low), high_(high) {}

    const CQNIMPosition& GetLowPt() const { return low_; }
    const CQNIMPosition& GetHighPt() const { return high_; }

  private:
    CQNIMPosition low_;
    CQNIMPosition high_;
};

}  // namespace QNIM::GeometryPrimitiveResource
