// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionMode.h"

#include "platform/Text.h"

namespace KYCOLLISION::Rule {

void KyCollisionMode::InitParams(EnumModeType type, const std::wstring& tolerance) {
    modeType_ = type;
    tolerance_ = kycb::text::ToInt(tolerance);
}

}  // namespace KYCOLLISION::Rule
