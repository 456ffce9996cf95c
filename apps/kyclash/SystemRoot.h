// SPDX-License-Identifier: Apache-2.0
// Where the category tree, the priorities and the default rules are.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace kyclash {

/// The folder of the data that ships with the command: `share/kyclash` of the installation that the
/// running program belongs to, else the one that was set when the program was built.
std::filesystem::path ShippedDataFolder();

/// The rule file that ships with the command.
std::filesystem::path DefaultRulesFile();

/// Gives the library its system root: `option`, else the variable KYCOLLISION_SYSTEM_ROOT, else the
/// one that ships with the command.
///
/// `remarks` gets what there is to say, in UTF-8. False, with the reason as the last of them, when
/// the folder holds neither the category tree nor the priority file. One of them missing or
/// unreadable is a warning.
///
/// To be called before anything that asks for categories or priorities: the library reads both
/// files once per process.
bool SetSystemRoot(const std::optional<std::filesystem::path>& option,
                   std::vector<std::string>& remarks);

/// The same for a command: the remarks go to `errors`. From then on each message of the library is
/// written to the standard error stream once, however often it comes.
bool UseSystemRoot(const std::optional<std::filesystem::path>& option, std::ostream& errors);

}  // namespace kyclash
