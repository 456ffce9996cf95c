// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "kyclash/CheckReport.h"
#include "kyclash/ExitCode.h"

namespace kyclash {

/// What `kyclash check` was asked for.
struct CheckOptions {
    std::vector<std::filesystem::path> models;
    std::optional<std::filesystem::path> mapping;  ///< none: the mapping that ships with us
    std::optional<std::filesystem::path> rules;    ///< none: the rules that ship with us
    std::optional<std::filesystem::path> systemRoot;
    std::optional<std::filesystem::path> outDir;    ///< none: no files are written
    std::optional<std::filesystem::path> previous;  ///< result file of the run before
    std::vector<std::string> floors;                ///< names; empty: every floor
    std::filesystem::path cacheDir;                 ///< empty: the converter's default
    int circleSegments = 24;                        ///< chords of a full circle
    ReportFormat format = ReportFormat::Text;
    PairListing listing = PairListing::Shortened;
    std::size_t jobs = 1;  ///< floors checked at a time, each in a process of its own
    bool quiet = false;    ///< no progress, even on a terminal
};

/// Reads the models, runs the check and prints the report to the standard output stream. Errors
/// go to the standard error stream, each naming the file that it is about.
ExitCode RunCheck(const CheckOptions& options);

}  // namespace kyclash
