// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <iosfwd>

#include "kyclash/ExitCode.h"
#include "kyclash/ReportFormat.h"

namespace kyclash {

/// What `kyclash diff` was asked for.
struct DiffOptions {
    std::filesystem::path oldFile;
    std::filesystem::path newFile;
    ReportFormat format = ReportFormat::Text;
};

/// Prints what two result files do not have in common: new clashes, gone ones, and those whose
/// place or handling differs.
ExitCode RunDiff(const DiffOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace kyclash
