// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/result/SObjAttInfo.h"

#include <string>

namespace KYCOLLISION::RESULT {

/// One opening that already exists in the model: a door, window, wall hole or slab hole.
struct CExistingHole {
    int projId = -1;         ///< project of the component; -1 when unknown
    std::wstring floorName;  ///< floor of the component
    std::wstring objGuid;    ///< GUID of the component
    SObjAttInfo attInfo;     ///< kind, name and system code of the component
    /// 101 wall hole, 103 slab hole, 104 door, 105 window or bay window; -1 for none. There is no
    /// 102.
    int holeType = -1;
    int holeShape = -1;       ///< the host's code of the shape
    std::wstring holeCenter;  ///< the centre as the host writes it, not parsed
    int holeSize = 0;         ///< the only number of a size of one number (mm), else 0
    int holeWidth = 0;        ///< the first number of a size of two or more (mm), else 0
    int holeHeight = 0;       ///< the second number of a size of two or more (mm), else 0
    std::wstring holeElev;    ///< the elevation as the host writes it, not parsed
    std::wstring parentId;    ///< the host's id of the wall or slab that holds the opening
};

}  // namespace KYCOLLISION::RESULT
