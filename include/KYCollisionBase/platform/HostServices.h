// SPDX-License-Identifier: Apache-2.0
// Services of the host application, each with a default that a host may replace by its own.
#pragma once

#include "KYCollisionBase/Export.h"

#include <functional>
#include <string>

namespace BASETOOLS {

/// The host's root directory, ending with a separator. The default is the environment variable
/// KYCOLLISION_SYSTEM_ROOT, or empty; SetSysRoot overrides it. A separator is added where the
/// configured text lacks one.
KYCB_API std::wstring GetSysRoot();

/// Replaces the root directory; an empty text returns to the default.
KYCB_API void SetSysRoot(const std::wstring& root);

/// `text` without blanks (the space character) at both ends.
KYCB_API std::wstring StringTrim(const std::wstring& text);

/// True when `path` names an existing regular file. Both "\\" and "/" separate directories.
KYCB_API bool CheckFileExist(const std::wstring& path);

/// Replaces the test behind CheckFileExist; an empty function returns to the default.
KYCB_API void SetCheckFileExist(std::function<bool(const std::wstring&)> check);

}  // namespace BASETOOLS

namespace BASEUI {

/// Shows `text` to the user; style 0 is a plain box with an OK button. The default writes one
/// UTF-8 line to the standard error stream.
KYCB_API void ShowMessageBox(const std::wstring& text, unsigned int style);

/// Replaces the message box; an empty function returns to the default.
KYCB_API void SetMessageBox(std::function<void(const std::wstring&, unsigned int)> show);

}  // namespace BASEUI
