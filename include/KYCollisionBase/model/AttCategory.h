// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <map>
#include <string>

namespace KYCOLLISION::MODEL {

/// The classification of a component: specialty, major category and minor category, with the fixed
/// knowledge about the families that the clearance tables and filters speak of. A plain value.
class KYCB_API AttCategory {
  public:
    AttCategory() = default;
    AttCategory(std::wstring specialtyName, std::wstring daleiName, std::wstring xiaoleiName);

    bool operator==(const AttCategory& other) const = default;

    /// The category path, the key of a component kind; empty without a specialty or major category.
    std::wstring categoryIndex();

    bool IsSgFgQj_RP() const;
    bool IsQzlb_JJP() const;
    int IsFgQjPsLsRs_JJP() const;
    bool IsNeedFiter() const;

    int GetAttPriority() const;
    static bool InitTypePriorityMap();

    std::wstring specialty;
    std::wstring dalei;
    std::wstring xiaolei;

    static std::map<std::wstring, int> s_typePriorityMap;
};

}  // namespace KYCOLLISION::MODEL
