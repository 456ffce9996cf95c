// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CQNIMLineSegment.h"

#include <algorithm>

namespace QNIM::GeometryPrimitiveResource {

CQNIMBoundingBox CQNIMLineSegment::GetBoundingBox() const {
    const CQNIMPosition& a = start_;
    const CQNIMPosition& b = end_;
    return {
        {std::min(a.GetX(), b.GetX()), std::min(a.GetY(), b.GetY()), std::min(a.GetZ(), b.GetZ())},
        {std::max(a.GetX(), b.GetX()), std::max(a.GetY(), b.GetY()), std::max(a.GetZ(), b.GetZ())}};
}

}  // namespace QNIM::GeometryPrimitiveResource
