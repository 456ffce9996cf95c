// SPDX-License-Identifier: Apache-2.0
// The folder that converted packages are kept in.
#pragma once

#include <atomic>
#include <filesystem>
#include <optional>
#include <string>

#include "ScenePackage.h"

namespace ifchost {

/// $XDG_CACHE_HOME/kyclash, $HOME/.cache/kyclash or %LOCALAPPDATA%\kyclash; empty without any.
std::filesystem::path DefaultCacheDir();

/// A UTF-8 text for a path, for messages.
std::string PathText(const std::filesystem::path& path);

/// SHA-256 of a file's content in hexadecimal; nothing when the file cannot be read to its end, or
/// when `cancel` (may be null) became true.
std::optional<std::string> HashFile(const std::filesystem::path& path,
                                    const std::atomic<bool>* cancel = nullptr);

/// Packages by key. Several processes may work on one folder: a package appears under its key by
/// renaming, as a whole.
class PackageCache {
  public:
    explicit PackageCache(std::filesystem::path dir) : dir_(std::move(dir)) {}

    /// Makes the folder and removes what crashed runs left behind. False, with the reason, when
    /// it cannot be written.
    bool Prepare(std::string& reason);

    std::filesystem::path PathOf(const std::string& key) const;
    /// Whether a sound package is there.
    bool Has(const std::string& key) const;
    /// A name of its own for a package in the making, in the same folder.
    std::filesystem::path TemporaryFor(const std::string& key) const;
    /// Checks the temporary package and gives it its place. The error of the package otherwise.
    std::optional<SceneError> Publish(const std::filesystem::path& temporary,
                                      const std::string& key);
    /// Removes the temporary package and what its child left beside it.
    void Discard(const std::filesystem::path& temporary) const;

  private:
    std::filesystem::path dir_;
};

}  // namespace ifchost
