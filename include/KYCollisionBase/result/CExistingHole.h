// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/result/SObjAttInfo.h"

#include <string>

namespace KYCOLLISION::RESULT {

/// One opening that already exists in the model: a door, window, wall hole or slab hole.
struct CExistingHole {
    int projId = -1;
    std::wstring floorName;
    std::wstring objGuid;
    SObjAttInfo attInfo;
    int holeType = -1;
    int holeShape = -1;
    std::wstring holeCenter;
    int holeSize = 0;
    int holeWidth = 0;
    int holeHeight = 0;
    std::wstring holeElev;
    std::wstring parentId;
};

}  // namespace KYCOLLISION::RESULT
