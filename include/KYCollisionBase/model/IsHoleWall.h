// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>

namespace KYCOLLISION::MODEL {

/// Whether a category (specialty, major and minor category, compared exactly) denotes a wall, or a
/// wall-like beam, that can hold openings. For hosts; the library itself does not ask.
KYCB_API bool IsHoleWall(const std::wstring& spec, const std::wstring& dalei,
                         const std::wstring& xiaolei);

}  // namespace KYCOLLISION::MODEL
