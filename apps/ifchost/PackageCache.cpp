// SPDX-License-Identifier: Apache-2.0
#include "PackageCache.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <random>
#include <system_error>
#include <vector>

#include "Sha256.h"

namespace ifchost {
namespace {

namespace fs = std::filesystem;

constexpr const char* kPackageSuffix = ".kyscene";
// What is being made has this in its name, with a unique part behind it.
constexpr const char* kTemporaryMark = ".tmp-";
// No conversion runs that long, so an older temporary file belongs to no one.
constexpr auto kStaleAge = std::chrono::hours(24);
constexpr std::size_t kReadChunk = std::size_t{1} << 20;

fs::path FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? fs::path() : fs::path(value);
}

bool CanWriteIn(const fs::path& dir) {
    const fs::path probe =
        dir / ("probe" + std::string(kTemporaryMark) + std::to_string(std::random_device{}()));
    const bool written = static_cast<bool>(std::ofstream(probe) << "probe" << std::flush);
    std::error_code ignored;
    fs::remove(probe, ignored);
    return written;
}

bool IsStale(const fs::directory_entry& entry) {
    if (entry.path().filename().string().find(kTemporaryMark) == std::string::npos) return false;
    std::error_code code;
    const auto time = entry.last_write_time(code);
    return !code && fs::file_time_type::clock::now() - time > kStaleAge;
}

void RemoveStale(const fs::path& dir) {
    std::error_code code;
    for (fs::directory_iterator it(dir, code), end; !code && it != end; it.increment(code)) {
        std::error_code ignored;
        if (IsStale(*it)) fs::remove(it->path(), ignored);
    }
}

}  // namespace

fs::path DefaultCacheDir() {
    // A relative path here would make the cache depend on the working directory.
    if (const auto dir = FromEnvironment("XDG_CACHE_HOME"); dir.is_absolute()) {
        return dir / "kyclash";
    }
    if (const auto dir = FromEnvironment("HOME"); !dir.empty()) return dir / ".cache" / "kyclash";
    if (const auto dir = FromEnvironment("LOCALAPPDATA"); !dir.empty()) return dir / "kyclash";
    return {};
}

std::string PathText(const fs::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::optional<std::string> HashFile(const fs::path& path, const std::atomic<bool>* cancel) {
    std::error_code code;
    if (!fs::is_regular_file(path, code)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    Sha256 hash;
    std::vector<char> chunk(kReadChunk);
    while (file) {
        if (cancel != nullptr && cancel->load()) return std::nullopt;
        file.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        hash.Update(chunk.data(), static_cast<std::size_t>(file.gcount()));
    }
    if (!file.eof()) return std::nullopt;
    return Sha256::Hex(hash.Finish());
}

bool PackageCache::Prepare(std::string& reason) {
    if (dir_.empty()) {
        reason = "no cache folder: none of XDG_CACHE_HOME, HOME and LOCALAPPDATA is set";
        return false;
    }
    std::error_code code;
    fs::create_directories(dir_, code);
    if (!fs::is_directory(dir_)) {
        reason = "cannot make the cache folder " + PathText(dir_) + ": " + code.message();
        return false;
    }
    if (!CanWriteIn(dir_)) {
        reason = "cannot write in the cache folder " + PathText(dir_);
        return false;
    }
    RemoveStale(dir_);
    return true;
}

fs::path PackageCache::PathOf(const std::string& key) const {
    return dir_ / (key + kPackageSuffix);
}

bool PackageCache::Has(const std::string& key) const {
    SceneError error;
    return fs::exists(PathOf(key)) && ScenePackage::Open(PathOf(key), error).has_value();
}

fs::path PackageCache::TemporaryFor(const std::string& key) const {
    std::random_device random;
    const std::string unique = std::to_string(random()) + std::to_string(random());
    return dir_ / (key + kTemporaryMark + unique);
}

std::optional<SceneError> PackageCache::Publish(const fs::path& temporary, const std::string& key) {
    SceneError error;
    if (!ScenePackage::Open(temporary, error)) return error;
    std::error_code code;
    fs::rename(temporary, PathOf(key), code);
    // Where a mapped file cannot be replaced, another process has already put the same one there.
    if (code && !Has(key)) return SceneError{PathText(PathOf(key)), "", code.message()};
    return std::nullopt;
}

void PackageCache::Discard(const fs::path& temporary) const {
    const std::string prefix = temporary.filename().string();
    std::vector<fs::path> found;
    std::error_code code;
    for (fs::directory_iterator it(dir_, code), end; !code && it != end; it.increment(code)) {
        if (it->path().filename().string().starts_with(prefix)) found.push_back(it->path());
    }
    for (const fs::path& path : found)
        fs::remove(path, code);
}

}  // namespace ifchost
