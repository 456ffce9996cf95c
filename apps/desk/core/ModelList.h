// SPDX-License-Identifier: Apache-2.0
// Which models a result file belongs to. Result files do not say so; a list beside them does.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace desk {

/// Where the list of a result file stands: "results.xml" has "results.models.json".
std::filesystem::path ModelListPath(const std::filesystem::path& resultFile);

/// Writes the list; the order decides which project id each model has. Paths are kept relative to
/// the result file, so that a folder with both can be moved. False, with `error` naming the file,
/// when it cannot be written.
bool WriteModelList(const std::filesystem::path& resultFile,
                    const std::vector<std::filesystem::path>& models, std::string& error);

/// The models of a result file; nothing when there is no list (then `error` stays empty) or when
/// it cannot be read (then `error` says why, naming file and place).
std::optional<std::vector<std::filesystem::path>> ReadModelList(
    const std::filesystem::path& resultFile, std::string& error);

}  // namespace desk
