// SPDX-License-Identifier: Apache-2.0
// What the driver files by floor.
#pragma once

#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <map>
#include <memory>
#include <vector>

namespace kycb::test {

using FloorKey = KYCOLLISION::LOGIC::CCollisionCheck::FloorKey;
using ResultMap = std::map<FloorKey, std::vector<KYCOLLISION::RESULT::KyResultItem*>>;
using HoleMap =
    std::map<FloorKey, std::vector<std::shared_ptr<KYCOLLISION::RESULT::CExistingHole>>>;

inline void DeleteItems(ResultMap& results) {
    for (auto& [key, items] : results) {
        for (const KYCOLLISION::RESULT::KyResultItem* item : items) {
            delete item;
        }
    }
}

}  // namespace kycb::test
