// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/IsHoleWall.h"

namespace KYCOLLISION::MODEL {

namespace {

struct WallKind {
    const wchar_t* specialty;
    const wchar_t* dalei;
    const wchar_t* xiaolei;  // null: every minor category
};

constexpr WallKind kWallKinds[] = {
    {L"土建", L"墙", nullptr},       {L"土建", L"几何构件", L"几何墙"},
    {L"钢筋", L"墙", L"剪力墙"},     {L"钢筋", L"墙", L"砖墙"},
    {L"钢筋", L"墙", L"人防墙"},     {L"钢筋", L"墙", L"连梁"},
    {L"钢筋", L"墙", L"人防门楣梁"}, {L"钢筋", L"墙", L"人防门槛梁"},
    {L"钢筋", L"墙", L"暗梁"},       {L"钢筋", L"墙", L"过梁"},
    {L"Revit", L"墙", L"墙"},        {L"Tekla", L"混凝土", L"混凝土嵌板"},
};

}  // namespace

bool IsHoleWall(const std::wstring& spec, const std::wstring& dalei, const std::wstring& xiaolei) {
    for (const WallKind& kind : kWallKinds) {
        if (spec == kind.specialty && dalei == kind.dalei &&
            (!kind.xiaolei || xiaolei == kind.xiaolei)) {
            return true;
        }
    }
    return false;
}

}  // namespace KYCOLLISION::MODEL
