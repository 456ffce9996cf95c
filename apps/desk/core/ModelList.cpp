// SPDX-License-Identifier: Apache-2.0
#include "desk/core/ModelList.h"

#include <fstream>
#include <system_error>

#include <nlohmann/json.hpp>

namespace desk {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr int kVersion = 1;

std::string Utf8(const fs::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

fs::path FromUtf8(const std::string& text) {
    return fs::path(std::u8string(text.begin(), text.end()));
}

fs::path FolderOf(const fs::path& file) {
    std::error_code ignored;
    return fs::absolute(file, ignored).parent_path();
}

}  // namespace

fs::path ModelListPath(const fs::path& resultFile) {
    fs::path list = resultFile;
    return list.replace_extension(".models.json");
}

bool WriteModelList(const fs::path& resultFile, const std::vector<fs::path>& models,
                    std::string& error) {
    json list;
    list["version"] = kVersion;
    list["models"] = json::array();
    for (const fs::path& model : models) {
        std::error_code failure;
        const fs::path near = fs::proximate(model, FolderOf(resultFile), failure);
        list["models"].push_back(Utf8(failure ? model : near));
    }
    std::ofstream out(ModelListPath(resultFile), std::ios::binary);
    out << list.dump(2) << '\n';
    out.close();
    if (!out) error = Utf8(ModelListPath(resultFile)) + ": cannot be written";
    return !out.fail();
}

std::optional<std::vector<fs::path>> ReadModelList(const fs::path& resultFile, std::string& error) {
    const fs::path file = ModelListPath(resultFile);
    std::error_code ignored;
    if (!fs::exists(file, ignored)) return std::nullopt;
    std::ifstream in(file, std::ios::binary);
    std::vector<fs::path> models;
    try {
        const json list = json::parse(in);
        if (list.at("version") != kVersion) {
            error = Utf8(file) + ": /version: this version is not known";
            return std::nullopt;
        }
        for (const auto& model : list.at("models"))
            models.push_back(
                (FolderOf(file) / FromUtf8(model.get<std::string>())).lexically_normal());
    } catch (const json::exception& problem) {
        error = Utf8(file) + ": " + problem.what();
        return std::nullopt;
    }
    return models;
}

}  // namespace desk
