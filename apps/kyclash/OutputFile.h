// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kyclash {

/// Replaces `file` by `text`: written beside it under a name of its own, then renamed, so that a
/// reader never sees half of it. The reason, naming the file, when that fails.
std::optional<std::string> ReplaceFile(const std::filesystem::path& file, std::string_view text);

/// Makes the folder, and those above it, when it is not there. The reason when that fails.
std::optional<std::string> MakeFolder(const std::filesystem::path& folder);

}  // namespace kyclash
