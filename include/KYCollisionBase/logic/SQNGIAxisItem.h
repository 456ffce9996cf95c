// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/CQNIMCurve.h"

#include <memory>
#include <string>

namespace KYCOLLISION::LOGIC {

/// One grid axis of a floor, as the host supplies it.
struct SQNGIAxisItem {
    std::wstring axisName;  ///< the label shown to the user, for example "3" or "B"
    /// The axis line in world coordinates (mm), owned: a line segment or a bounded arc. An axis of
    /// another kind, or without a curve, gives no position. It belongs at height 0, whatever the
    /// floor's: the nearest axis is sought in space from the clash point brought down to height 0.
    std::unique_ptr<QNIM::GeometryPrimitiveResource::CQNIMCurve> axisCurve;
};

}  // namespace KYCOLLISION::LOGIC
