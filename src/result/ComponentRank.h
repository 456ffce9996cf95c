// SPDX-License-Identifier: Apache-2.0
// The order of clashing components by kind, priority and name.
#pragma once

#include "KYCollisionBase/result/SObjAttInfo.h"

#include <string>
#include <vector>

namespace KYCOLLISION::RESULT {
class KyResultItem;
}

namespace kycb {

/// Everything that decides where a component ranks, computed once for many comparisons: category
/// paths and code page texts are costly to make.
struct ComponentRank {
    explicit ComponentRank(const SObjAttInfo& info);

    int priority;
    std::wstring categoryIndex;
    std::string categoryIndexAnsi;
    std::string nameAnsi;
};

/// -1, 0 or 1 as `a` ranks before, with or after `b`. Different category paths that look the same
/// in the code page rank after each other, both ways round.
int CompareRanks(const ComponentRank& a, const ComponentRank& b);

/// Sorts by KyResultItem::PriorityCompareHigh; items that it does not tell apart, null ones among
/// them, keep their order. Takes what is no strict weak ordering without harm.
void SortByPriority(std::vector<KYCOLLISION::RESULT::KyResultItem*>& items);

}  // namespace kycb
