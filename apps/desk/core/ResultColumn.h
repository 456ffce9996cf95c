// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <string>

namespace desk {

/// The columns of the result list, from left to right.
enum class ResultColumn : int {
    kState,
    kFloor,
    kMainKind,
    kMainName,
    kSecondKind,
    kSecondName,
    kMainHeight,
    kSecondHeight,
    kAxisPosition,
    kRemark,
};
inline constexpr int kResultColumnCount = 10;

/// What a column holds for a result; for the state its number.
std::wstring ColumnText(const KYCOLLISION::RESULT::KyResultItem& item, ResultColumn column);

/// The minor category, which says the most; the major one where there is none.
std::wstring KindText(const SObjAttInfo& info);

}  // namespace desk
