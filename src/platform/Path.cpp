// SPDX-License-Identifier: Apache-2.0
#include "platform/Path.h"

#include <algorithm>

#include "platform/Text.h"

namespace kycb::platform {

std::filesystem::path ToNativePath(const std::wstring& path) {
    std::wstring portable = path;
    std::replace(portable.begin(), portable.end(), L'\\', L'/');
    const std::string bytes = text::ToUtf8(portable);
    return {std::u8string(bytes.begin(), bytes.end())};
}

bool IsUsablePath(const std::wstring& path) {
    return !path.empty() && path.find(L'\0') == std::wstring::npos;
}

}  // namespace kycb::platform
