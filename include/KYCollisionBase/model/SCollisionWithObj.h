// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMPosition.h"

namespace KYCOLLISION::MODEL {

class ObjectModelInfo;

/// One clash recorded on a component. The partner holds the mirrored record, with the two body
/// offsets exchanged, until result generation takes one of the two away.
struct SCollisionWithObj {
    ObjectModelInfo* other = nullptr;  ///< the component clashed with; not owned
    /// The middle of the region in which the two tested bodies touch; world coordinates (mm).
    QNIM::GeometryPrimitiveResource::CQNIMPosition clashPoint;
    int ownBodyOffset = 0;    ///< body offset with which this component was tested (mm, + grows)
    int otherBodyOffset = 0;  ///< body offset with which the other one was tested (mm, + grows)
};

}  // namespace KYCOLLISION::MODEL
