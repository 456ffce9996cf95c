// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMPosition.h"

namespace KYCOLLISION::MODEL {

class ObjectModelInfo;

/// One clash recorded on a component.
struct SCollisionWithObj {
    ObjectModelInfo* other = nullptr;  ///< the component clashed with; not owned
    QNIM::GeometryPrimitiveResource::CQNIMPosition clashPoint;  ///< world coordinates (mm)
    int ownBodyOffset = 0;    ///< body offset with which this component was tested (mm)
    int otherBodyOffset = 0;  ///< body offset with which the other one was tested (mm)
};

}  // namespace KYCOLLISION::MODEL
