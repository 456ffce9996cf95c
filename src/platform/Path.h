// SPDX-License-Identifier: Apache-2.0
// Paths of the contract, which are wide texts, as the file system takes them.
#pragma once

#include <filesystem>
#include <string>

namespace kycb::platform {

/// UTF-8 where paths are bytes. Both "\\" and "/" separate directories, also where "\\" could be
/// part of a name: the contract's own paths use it.
std::filesystem::path ToNativePath(const std::wstring& path);

/// False for a path that no file can have: an empty one, or one with a NUL character inside, which
/// the operating system would cut short and take for another file.
bool IsUsablePath(const std::wstring& path);

}  // namespace kycb::platform
