// SPDX-License-Identifier: Apache-2.0
// What was installed along with the running program.
#pragma once

#include <filesystem>
#include <optional>

namespace ifchost {

/// The folder `share/kyclash` of the installation that the running program belongs to; nothing for
/// a program that was not installed.
std::optional<std::filesystem::path> InstalledDataFolder();

}  // namespace ifchost
