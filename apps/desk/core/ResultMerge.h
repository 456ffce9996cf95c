// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace KYCOLLISION::RESULT {
class IKyResultData;
}

namespace desk {

using FloorKey = std::pair<int, std::wstring>;
/// A component: project, floor, GUID.
using ComponentKey = std::tuple<int, std::wstring, std::wstring>;
/// The components of a clash, whichever of them is the main one.
using PairKey = std::pair<ComponentKey, ComponentKey>;
using ResultsByFloor = std::map<FloorKey, std::vector<KYCOLLISION::RESULT::KyResultItem*>>;

PairKey PairOf(const KYCOLLISION::RESULT::KyResultItem& item);

/// How far a run came: which floors it went through as a whole, and whether that is all of them.
struct CheckedFloors {
    std::vector<FloorKey> complete;    ///< everything about them is new
    std::vector<FloorKey> incomplete;  ///< were to be checked, but the run was stopped
};

/// Puts the results of a run into the container, which takes them over.
///
/// On complete floors the new results take the place of the old ones. Elsewhere (floors that a
/// stopped run did not finish; floors that were not asked for, but on which the main component of
/// a found clash stands) new clashes are added to what is there. How the user handled a clash
/// (state, remark, view, picture) goes over to the same clash found again, also when the two
/// components have swapped their places.
void MergeResults(KYCOLLISION::RESULT::IKyResultData& container, ResultsByFloor results,
                  const CheckedFloors& floors);

}  // namespace desk
