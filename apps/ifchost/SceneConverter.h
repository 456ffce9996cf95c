// SPDX-License-Identifier: Apache-2.0
// Turns IFC files into scene packages: several at once, each only once ever.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ifchost {

/// What a conversion is busy with. The order is that in time.
enum class ConvertPhase : std::uint8_t {
    Hashing,    ///< reading the file to look for it in the cache
    Waiting,    ///< not in the cache, waits for a free core
    Reading,    ///< the child reads the file
    Relations,  ///< the child reads relations
    Products,   ///< the child reads products and makes their meshes
    Writing,    ///< the child writes the package
    Checking,   ///< the package is checked
    Done,       ///< ready to be opened
    Failed
};

/// Why a file was not converted.
enum class ConvertErrorKind : std::uint8_t {
    None,
    InputMissing,      ///< the file does not exist or cannot be read
    InputInvalid,      ///< no IFC file, cut short, or of a schema that is not supported
    NodeMissing,       ///< no Node found
    ConverterMissing,  ///< convert.mjs or its node_modules are not there
    CacheUnusable,     ///< the cache directory cannot be made or written
    Timeout,           ///< the child took longer than the limit
    Crash,             ///< the child ended abnormally
    BadPackage,        ///< the child said that all went well but the package is unsound
    Cancelled
};

/// The outcome for one input.
struct ConvertResult {
    std::filesystem::path input;
    std::filesystem::path package;  ///< open with ScenePackage::Open(); empty after an error
    ConvertErrorKind error = ConvertErrorKind::None;
    std::string message;     ///< for the user, names the file, UTF-8; empty without an error
    bool fromCache = false;  ///< nothing had to be converted
    std::chrono::milliseconds duration{0};  ///< of hashing and conversion, without waiting

    bool Ok() const { return error == ConvertErrorKind::None; }
};

/// One step forward of one file. `done` of `total` steps of the phase; `total` is at least 1.
struct ConvertProgress {
    std::size_t input = 0;  ///< position in the list of inputs
    ConvertPhase phase = ConvertPhase::Hashing;
    std::size_t done = 0;
    std::size_t total = 1;
};

/// Settings of SceneConverter; every one has a usable default.
struct ConvertOptions {
    /// Chords of a full circle, 3 to 1024. The chords lie inside of the circle: a pipe of diameter
    /// d comes out up to d/2 * (1 - cos(180°/n)) too thin, at 24 4.3 mm for a 1 m duct.
    int circleSegments = 24;
    /// Most files converted at the same time; 0: as many as the machine has cores.
    unsigned parallel = 0;
    /// Longest time for one file, from the start of its child.
    std::chrono::milliseconds timeLimit = std::chrono::minutes(30);
    /// Node to run. Empty: the variable KYCLASH_NODE, else "node" on PATH.
    std::filesystem::path node;
    /// Folder of convert.mjs. Empty: the variable KYCLASH_CONVERTER_DIR, else the folder that was
    /// set when the program was built.
    std::filesystem::path converterDir;
    /// Folder of the packages. Empty: XDG_CACHE_HOME/kyclash, else the home folder's
    /// .cache/kyclash (LOCALAPPDATA/kyclash where that is set and the others are not).
    std::filesystem::path cacheDir;
};

/// Converts IFC files, each by a child process of its own, and keeps the packages.
///
/// A package is kept under the SHA-256 of the file's content, the converter's sources, its lock
/// file and the options, so that nothing stale is ever read and a moved or renamed file is known
/// again. Packages come into the cache by renaming after they were checked; several processes may
/// share one cache. A damaged package in the cache is converted anew.
///
/// Not copyable; Convert() may be called again, but not from two threads at once.
class SceneConverter {
  public:
    /// Called from several threads, never from two at once. It must not throw.
    using ProgressCallback = std::function<void(const ConvertProgress&)>;

    explicit SceneConverter(ConvertOptions options = {});
    SceneConverter(const SceneConverter&) = delete;
    SceneConverter& operator=(const SceneConverter&) = delete;

    /// Converts all inputs, big ones first, and returns when all are done: one result per input,
    /// in the order of inputs. One file's failure does not touch the others. When `cancel` becomes
    /// true the children are killed, and what was not finished is `Cancelled`. Does not throw on
    /// bad input.
    std::vector<ConvertResult> Convert(const std::vector<std::filesystem::path>& inputs,
                                       const std::atomic<bool>* cancel = nullptr,
                                       const ProgressCallback& progress = {});

  private:
    ConvertOptions options_;
};

}  // namespace ifchost
