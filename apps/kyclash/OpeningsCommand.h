// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "kyclash/ExitCode.h"
#include "kyclash/ModelLoading.h"
#include "kyclash/ReportFormat.h"

namespace kyclash {

/// What `kyclash openings` was asked for.
struct OpeningsOptions {
    LoadOptions load;
    std::vector<std::string> floors;           ///< names; empty: every floor
    std::optional<std::filesystem::path> csv;  ///< also as a table in this file
    ReportFormat format = ReportFormat::Text;
    bool quiet = false;
};

/// Lists the openings of the models: doors, windows, openings in walls and slabs.
ExitCode RunOpenings(const OpeningsOptions& options, std::ostream& out, std::ostream& errors);

}  // namespace kyclash
