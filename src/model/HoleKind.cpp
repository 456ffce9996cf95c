// SPDX-License-Identifier: Apache-2.0
#include "model/HoleKind.h"

namespace kycb::model {

namespace {

struct Row {
    const wchar_t* specialty;
    const wchar_t* dalei;
    const wchar_t* xiaolei;
    int code;
};

constexpr int kWallHole = 101;
constexpr int kSlabHole = 103;
constexpr int kDoor = 104;
constexpr int kWindow = 105;

constexpr Row kRows[] = {
    {L"土建", L"门.窗.洞", L"门", kDoor},      {L"土建", L"门.窗.洞", L"窗", kWindow},
    {L"土建", L"门.窗.洞", L"飘窗", kWindow},  {L"土建", L"门.窗.洞", L"墙洞", kWallHole},
    {L"土建", L"板.楼梯", L"板洞", kSlabHole}, {L"钢筋", L"墙", L"洞", kWallHole},
    {L"钢筋", L"墙", L"门洞", kDoor},          {L"钢筋", L"墙", L"窗洞", kWindow},
    {L"钢筋", L"墙", L"飘窗", kWindow},        {L"钢筋", L"板", L"板洞", kSlabHole},
};

}  // namespace

int HoleKind(const KYCOLLISION::MODEL::AttCategory& category) {
    for (const Row& row : kRows) {
        if (category.specialty == row.specialty && category.dalei == row.dalei &&
            category.xiaolei == row.xiaolei) {
            return row.code;
        }
    }
    return -1;
}

}  // namespace kycb::model
