// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <vector>

namespace desk {

/// Sorts results as KyResultItem::PriorityCompareHigh orders them, equal ones in the order given.
///
/// The comparison itself looks up priorities and converts texts each time. Here it is asked only
/// about the different kinds and names that occur, so that lists of any length sort at once.
void SortByPriority(std::vector<KYCOLLISION::RESULT::KyResultItem*>& items);

}  // namespace desk
