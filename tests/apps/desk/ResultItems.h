// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <memory>
#include <string>

/// A clash with what tests look at; the rest is as the check would leave it.
struct ItemPlan {
    int projectA = 1;
    std::wstring floorA = L"F1";
    std::wstring guidA = L"a";
    int projectB = 1;
    std::wstring floorB = L"F1";
    std::wstring guidB = L"b";
    std::wstring position = L"0,0,0";
    SObjAttInfo main;
    SObjAttInfo second;
};

inline std::unique_ptr<KYCOLLISION::RESULT::KyResultItem> MakeItem(const ItemPlan& plan) {
    auto item = std::make_unique<KYCOLLISION::RESULT::KyResultItem>();
    item->SetBaseInfo(plan.projectA, plan.floorA, plan.guidA, plan.projectB, plan.floorB,
                      plan.guidB, plan.position);
    item->SetObjAttInfo_Main(plan.main);
    item->SetObjAttInfo_Second(plan.second);
    return item;
}
