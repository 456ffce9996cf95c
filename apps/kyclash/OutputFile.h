// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace kyclash {

/// Replaces `file` by `text` as a whole or not at all: written beside it under the name with
/// ".saving" appended, flushed to the disk, then renamed. A link stays one. The reason, naming the
/// file, when that fails.
std::optional<std::string> ReplaceFile(const std::filesystem::path& file, std::string_view text);

/// Makes the folder, and those above it, when it is not there. The reason when that fails.
std::optional<std::string> MakeFolder(const std::filesystem::path& folder);

/// Makes the folder and tries whether files can be written there, so that a long run does not find
/// out at its end. The reason when they cannot.
std::optional<std::string> PrepareFolder(const std::filesystem::path& folder);

}  // namespace kyclash
