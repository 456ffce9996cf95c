// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>

namespace KYCOLLISION::Rule {

/// One exclusion of a rule item: a kind that it is not reported against. A plain value.
struct KYCB_API KyExcludeItem {
    /// 0 a whole specialty, 1 a major category, 2 a minor category; any other excludes nothing.
    int level = 0;
    std::wstring specialty;
    std::wstring dalei;    ///< used at levels 1 and 2
    std::wstring xiaolei;  ///< used at level 2

    /// Equal levels, and equal names down to that level; any other level than 0 and 1 compares all
    /// three names.
    bool operator==(const KyExcludeItem& other) const;
};

}  // namespace KYCOLLISION::Rule
