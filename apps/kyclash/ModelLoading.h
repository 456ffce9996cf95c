// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "ifchost/IfcWorkset.h"
#include "kyclash/Progress.h"

namespace kyclash {

/// What is to be read, and how.
struct LoadOptions {
    std::vector<std::filesystem::path> models;
    std::optional<std::filesystem::path> mapping;
    std::filesystem::path cacheDir;
    int circleSegments = 24;
};

/// Converts and opens the models and files them as one work set. Null when any of them, or the
/// mapping, could not be read (each is named on the standard error stream), or when the user
/// stopped it.
std::shared_ptr<const ifchost::IfcWorkset> LoadWorkset(const LoadOptions& options,
                                                       Progress& progress);

}  // namespace kyclash
