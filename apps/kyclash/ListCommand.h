// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>

#include "kyclash/ExitCode.h"
#include "kyclash/ModelLoading.h"
#include "kyclash/ReportFormat.h"

namespace kyclash {

/// What `kyclash list` was asked for.
struct ListOptions {
    LoadOptions load;
    std::optional<std::filesystem::path> csv;  ///< a table of all products goes to this file
    ReportFormat format = ReportFormat::Text;
    bool quiet = false;
};

/// Prints what the models hold: projects, floors, kinds with counts, and what is not checked.
ExitCode RunList(const ListOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace kyclash
