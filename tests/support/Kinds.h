// SPDX-License-Identifier: Apache-2.0
// Component kinds that tests speak of, with what the category tables know of them.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

namespace kycb::test {

using KYCOLLISION::MODEL::AttCategory;

// Structural members.
inline const AttCategory kWall{L"土建", L"墙", L"砼内墙"};
inline const AttCategory kBeam{L"土建", L"梁", L"框架梁"};
inline const AttCategory kSlab{L"土建", L"楼梯楼板", L"现浇板"};

// Services runs: kinds 1 to 5.
inline const AttCategory kDuct{L"暖通", L"风管", L"送风管"};
inline const AttCategory kTray{L"电气", L"电缆桥架", L"桥架"};
inline const AttCategory kDrain{L"给排水", L"管道", L"污水管"};
inline const AttCategory kPressurePipe{L"给排水", L"管道", L"给水管"};
inline const AttCategory kHotPipe{L"给排水", L"管道", L"热给水管"};

// Neither structural member nor services run.
inline const AttCategory kBox{L"电气", L"配电设备", L"配电箱"};
inline const AttCategory kFurniture{L"装饰", L"家具", L"桌"};

// Openings.
inline const AttCategory kDoor{L"土建", L"门.窗.洞", L"门"};

// Components of imported models.
inline const AttCategory kRevitWall{L"Revit", L"墙", L"墙"};
inline const AttCategory kTeklaBeam{L"Tekla", L"钢结构", L"钢梁"};
inline const AttCategory kTeklaPanel{L"Tekla", L"混凝土", L"混凝土嵌板"};

/// The category path of a kind.
inline std::wstring PathOf(AttCategory kind) {
    return kind.categoryIndex();
}

}  // namespace kycb::test
