// SPDX-License-Identifier: Apache-2.0
#include "desk/core/ResultColumn.h"

namespace desk {

using KYCOLLISION::RESULT::KyResultItem;

std::wstring KindText(const SObjAttInfo& info) {
    return info.Subcategory.empty() ? info.Category : info.Subcategory;
}

std::wstring ColumnText(const KyResultItem& item, ResultColumn column) {
    switch (column) {
        case ResultColumn::kState:
            return std::to_wstring(item.GetDisposeState());
        case ResultColumn::kFloor:
            return item.GetFloorA();
        case ResultColumn::kMainKind:
            return KindText(item.GetAttInfoA());
        case ResultColumn::kMainName:
            return item.GetNameA();
        case ResultColumn::kSecondKind:
            return KindText(item.GetAttInfoB());
        case ResultColumn::kSecondName:
            return item.GetNameB();
        case ResultColumn::kMainHeight:
            return item.GetHeightA();
        case ResultColumn::kSecondHeight:
            return item.GetHeightB();
        case ResultColumn::kAxisPosition:
            return item.GetAxisPos();
        case ResultColumn::kRemark:
            return item.GetRemark();
    }
    return {};
}

}  // namespace desk
