// SPDX-License-Identifier: Apache-2.0
// The files that a run leaves behind.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "kyclash/ClashHistory.h"
#include "kyclash/ResultTables.h"

namespace kyclash {

/// Why the results must not be written to `folder`: a result file there holds what a user did about
/// clashes and is not the one that is carried over, or is no result file at all. Nothing when they
/// may be.
std::optional<std::string> WhyNotReplace(const std::filesystem::path& folder,
                                         const std::optional<std::filesystem::path>& previous);

/// What is to be written.
struct RunResults {
    const std::vector<TrackedClash>& clashes;
    const std::vector<Opening>& openings;
    const ifchost::IfcWorkset& workset;
    bool hasHistory = false;  ///< whether there was a run to compare with
};

/// Writes results.xml, results.csv and openings.csv, and with a history results-gone.xml and
/// results-gone.csv, into `folder`, which is made when it is not there. Each file is replaced as a
/// whole or not at all. Without a history, lists of gone clashes from another run go.
/// @return the files written; nothing, after a message on `errors`, when one could not be.
std::optional<std::vector<std::string>> WriteResults(const std::filesystem::path& folder,
                                                     const RunResults& results,
                                                     std::ostream& errors);

}  // namespace kyclash
