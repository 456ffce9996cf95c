// SPDX-License-Identifier: Apache-2.0
#include "kyclash/OutputFile.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "ifchost/PackageCache.h"
#include "platform/DiskFlush.h"

namespace kyclash {
namespace {

namespace fs = std::filesystem;

// A stream tells only that it failed; the system tells why.
std::error_code LastError() {
    if (errno != 0) return {errno, std::generic_category()};
    return std::make_error_code(std::errc::io_error);
}

std::error_code Write(const fs::path& file, std::string_view text) {
    errno = 0;
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    return out.good() ? FlushToDisk(file) : LastError();
}

// Links stay links: what they lead to is replaced.
fs::path TargetOf(const fs::path& file) {
    std::error_code error;
    if (!fs::is_symlink(file, error)) return file;
    const fs::path target = fs::weakly_canonical(file, error);
    return error ? file : target;
}

}  // namespace

std::optional<std::string> ReplaceFile(const fs::path& file, std::string_view text) {
    const fs::path target = TargetOf(file);
    fs::path beside = target;
    beside += ".saving";
    std::error_code error = Write(beside, text);
    if (!error) fs::rename(beside, target, error);
    if (error) {
        std::error_code ignored;
        fs::remove(beside, ignored);
        return ifchost::PathText(file) + ": could not be written: " + error.message();
    }
    FlushToDisk(target.has_parent_path() ? target.parent_path() : fs::path("."));
    return std::nullopt;
}

std::optional<std::string> PrepareFolder(const fs::path& folder) {
    if (auto reason = MakeFolder(folder)) return reason;
    const fs::path trial = folder / ".kyclash-trial";
    if (const std::error_code error = Write(trial, "")) {
        return ifchost::PathText(folder) + ": files cannot be written there: " + error.message();
    }
    std::error_code ignored;
    fs::remove(trial, ignored);
    return std::nullopt;
}

std::optional<std::string> MakeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error && fs::is_directory(folder, error)) return std::nullopt;
    return ifchost::PathText(folder) + ": is no folder and could not be made one" +
           (error ? ": " + error.message() : std::string());
}

}  // namespace kyclash
