// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyExcludeItem.h"

namespace KYCOLLISION::Rule {

bool KyExcludeItem::operator==(const KyExcludeItem& other) const {
    if (level != other.level || specialty != other.specialty) return false;
    if (level == 0) return true;
    if (dalei != other.dalei) return false;
    return level == 1 || xiaolei == other.xiaolei;
}

}  // namespace KYCOLLISION::Rule
