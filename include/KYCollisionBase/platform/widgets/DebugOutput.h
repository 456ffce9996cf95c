// SPDX-License-Identifier: Apache-2.0
// Where the controls send the texts that are meant for a developer.
#pragma once

#include "KYCollisionBase/platform/widgets/UiExport.h"

#include <functional>
#include <string>

namespace BASETOOLS {

/// Sends `text` to the developer. The default is the logging category "kycollision.ui" at debug
/// level, which is switched off unless QT_LOGGING_RULES or the host switches it on.
KYCB_UI_API void OutputDebugString(const std::wstring& text);

/// Replaces the receiver; an empty function returns to the default. Interface thread only.
KYCB_UI_API void SetDebugOutput(std::function<void(const std::wstring&)> receive);

}  // namespace BASETOOLS
