// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/HostServices.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "platform/Path.h"
#include "platform/Text.h"

namespace {

struct Services {
    std::wstring sysRoot;
    std::function<bool(const std::wstring&)> checkFileExist;
    std::function<void(const std::wstring&, unsigned int)> showMessageBox;
};

Services& HostServices() {
    static Services services;
    return services;
}

std::wstring EnvironmentRoot() {
    const char* root = std::getenv("KYCOLLISION_SYSTEM_ROOT");
    return root ? kycb::text::FromUtf8(root) : std::wstring();
}

void WriteLineToStandardError(std::wstring text) {
    std::replace_if(
        text.begin(), text.end(), [](wchar_t c) { return c < L' '; }, L' ');
    const std::string line = kycb::text::ToUtf8(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

namespace BASETOOLS {

std::wstring GetSysRoot() {
    std::wstring root = HostServices().sysRoot;
    if (root.empty()) root = EnvironmentRoot();
    if (!root.empty() && root.back() != L'/' && root.back() != L'\\') root += L'/';
    return root;
}

void SetSysRoot(const std::wstring& root) {
    HostServices().sysRoot = root;
}

std::wstring StringTrim(const std::wstring& text) {
    const std::size_t first = text.find_first_not_of(L' ');
    if (first == std::wstring::npos) return {};
    return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

bool CheckFileExist(const std::wstring& path) {
    if (HostServices().checkFileExist) return HostServices().checkFileExist(path);
    std::error_code error;
    return kycb::platform::IsUsablePath(path) &&
           std::filesystem::is_regular_file(kycb::platform::ToNativePath(path), error);
}

void SetCheckFileExist(std::function<bool(const std::wstring&)> check) {
    HostServices().checkFileExist = std::move(check);
}

}  // namespace BASETOOLS

namespace BASEUI {

void ShowMessageBox(const std::wstring& text, unsigned int style) {
    if (HostServices().showMessageBox) {
        HostServices().showMessageBox(text, style);
    } else {
        WriteLineToStandardError(text);
    }
}

void SetMessageBox(std::function<void(const std::wstring&, unsigned int)> show) {
    HostServices().showMessageBox = std::move(show);
}

}  // namespace BASEUI
