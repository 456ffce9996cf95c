// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desk/core/ModelNote.h"

namespace desk {

class BackgroundTask;

/// How models are read.
struct LoadOptions {
    std::optional<std::filesystem::path> mapping;  ///< none: the mapping that ships with the host
    std::filesystem::path cacheDir;                ///< empty: the reader's own default
    int circleSegments = 24;
};

/// What came of reading. Without a work set the errors say why, unless it was stopped.
struct LoadedModels {
    std::shared_ptr<const ifchost::IfcWorkset> workset;
    std::vector<std::string> errors;  ///< UTF-8, each names its file
    std::vector<ModelNote> notes;
    bool stopped = false;
};

/// Reads all models, as one work set; reports to `task` and heeds its stop flag.
LoadedModels LoadModels(const std::vector<std::filesystem::path>& models,
                        const LoadOptions& options, BackgroundTask& task);

}  // namespace desk
