// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <system_error>

namespace kyclash {

/// Waits until what was written to a closed file has reached the disk. Of a folder: until the names
/// in it have, which some file systems refuse without harm.
std::error_code FlushToDisk(const std::filesystem::path& path);

}  // namespace kyclash
