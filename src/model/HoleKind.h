// SPDX-License-Identifier: Apache-2.0
// Which categories are openings.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

namespace kycb::model {

/// The code of an opening: 101 wall hole, 103 slab hole, 104 door, 105 window (102 is not in use);
/// -1 for a category that is no opening.
int HoleKind(const KYCOLLISION::MODEL::AttCategory& category);

}  // namespace kycb::model
