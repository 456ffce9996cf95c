// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>

#include "kyclash/ExitCode.h"
#include "kyclash/ReportFormat.h"

namespace kyclash {

/// What `kyclash rules` was asked for.
struct RulesOptions {
    std::filesystem::path file;
    std::optional<std::filesystem::path> systemRoot;
    ReportFormat format = ReportFormat::Text;
};

/// Writes the default rules to a file. One that is there already is left as it is: exit code 2.
ExitCode RunRulesInit(const RulesOptions& options, std::ostream& out, std::ostream& errors);

/// Prints a rule file as kinds and a matrix.
ExitCode RunRulesShow(const RulesOptions& options, std::ostream& out, std::ostream& errors);

/// Prints what in a rule file cannot mean what it says. Exit code 0 for a file without remarks, 1
/// for one that cannot be used, and for one with remarks.
ExitCode RunRulesValidate(const RulesOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace kyclash
