// SPDX-License-Identifier: Apache-2.0
#include "kyclash/OutputFile.h"

#include <fstream>
#include <system_error>

namespace kyclash {
namespace {

bool Write(const std::filesystem::path& file, std::string_view text) {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    return out.good();
}

}  // namespace

std::optional<std::string> ReplaceFile(const std::filesystem::path& file, std::string_view text) {
    std::filesystem::path beside = file;
    beside += ".saving";
    std::error_code error;
    if (!Write(beside, text)) {
        std::filesystem::remove(beside, error);
        return file.string() + ": could not be written";
    }
    std::filesystem::rename(beside, file, error);
    if (!error) return std::nullopt;
    std::error_code ignored;
    std::filesystem::remove(beside, ignored);
    return file.string() + ": could not be written: " + error.message();
}

std::optional<std::string> MakeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!error && std::filesystem::is_directory(folder, error)) return std::nullopt;
    return folder.string() + ": is no folder and could not be made one" +
           (error ? ": " + error.message() : std::string());
}

}  // namespace kyclash
