// SPDX-License-Identifier: Apache-2.0
#include "SceneConverter.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "ConverterProcess.h"
#include "InstalledData.h"
#include "PackageCache.h"
#include "ScenePackage.h"
#include "Sha256.h"

namespace ifchost {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Exit codes of convert.mjs.
constexpr int kExitDone = 0;
constexpr int kExitInput = 3;
constexpr int kExitReader = 4;
constexpr int kExitOutput = 5;

constexpr const char* kScript = "convert.mjs";

std::string DurationText(std::chrono::milliseconds time) {
    const auto minutes = std::chrono::floor<std::chrono::minutes>(time).count();
    return minutes > 0 ? std::to_string(minutes) + " min" : std::to_string(time.count()) + " ms";
}

fs::path FromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? fs::path() : fs::path(value);
}

fs::path DefaultNode() {
    const fs::path named = FromEnvironment("KYCLASH_NODE");
    if (named.empty()) return FindOnPath("node");
    return named.has_parent_path() ? named : FindOnPath(named.string());
}

fs::path DefaultConverterDir() {
    const fs::path named = FromEnvironment("KYCLASH_CONVERTER_DIR");
    if (!named.empty()) return named;
    const auto installed = InstalledDataFolder();
    return installed ? *installed / "converter" : fs::path(IFCHOST_CONVERTER_DIR);
}

std::string InstallCommand(const fs::path& converterDir) {
    return "npm ci --prefix \"" + PathText(converterDir) + "\"";
}

/// The converter's sources in the order of their names; empty when the folder is not one.
std::vector<fs::path> ConverterSources(const fs::path& dir) {
    std::vector<fs::path> sources;
    std::error_code code;
    if (!fs::is_regular_file(dir / kScript, code)) return sources;
    for (const fs::path& folder : {dir, dir / "lib"}) {
        for (fs::directory_iterator it(folder, code), end; !code && it != end; it.increment(code)) {
            if (it->path().extension() == ".mjs") sources.push_back(it->path());
        }
    }
    sources.push_back(dir / "package.json");
    sources.push_back(dir / "package-lock.json");
    std::sort(sources.begin(), sources.end());
    return sources;
}

/// A text that changes with whatever can change a package other than the input; nothing when the
/// converter is not whole.
std::optional<std::string> ConverterFingerprint(const ConvertOptions& options) {
    std::string text = "format " + std::to_string(ScenePackage::kVersion) + " segments " +
                       std::to_string(options.circleSegments);
    const auto sources = ConverterSources(options.converterDir);
    if (sources.empty()) return std::nullopt;
    for (const fs::path& source : sources) {
        const auto hash = HashFile(source);
        if (!hash) return std::nullopt;
        text += " " + *hash;
    }
    return text;
}

std::string CacheKey(const std::string& contentHash, const std::string& fingerprint) {
    Sha256 hash;
    hash.Update(contentHash);
    hash.Update(fingerprint);
    return Sha256::Hex(hash.Finish());
}

ConvertPhase PhaseOf(const std::string& word) {
    if (word == "relations") return ConvertPhase::Relations;
    if (word == "products") return ConvertPhase::Products;
    if (word == "writing") return ConvertPhase::Writing;
    return ConvertPhase::Reading;
}

/// One input on its way.
struct Job {
    std::size_t index = 0;
    std::uintmax_t size = 0;
    std::string key;
};

/// One call of SceneConverter::Convert().
class Batch {
  public:
    Batch(const ConvertOptions& options, const std::vector<fs::path>& inputs,
          const std::atomic<bool>* cancel, const SceneConverter::ProgressCallback& progress)
        : options_(options),
          cache_(options.cacheDir),
          cancel_(cancel),
          progress_(progress),
          results_(inputs.size()) {
        for (std::size_t i = 0; i < inputs.size(); ++i)
            results_[i].input = inputs[i];
    }

    std::vector<ConvertResult> Run() {
        std::string reason;
        const bool cacheUsable = cache_.Prepare(reason);
        if (!cacheUsable) FailAll(ConvertErrorKind::CacheUnusable, reason);
        const auto fingerprint = ConverterFingerprint(options_);
        if (cacheUsable && !fingerprint) FailAll(ConvertErrorKind::ConverterMissing, NoConverter());
        if (cacheUsable && fingerprint) {
            RunParallel(HashAll(*fingerprint));
            CopyToTwins();
        }
        return std::move(results_);
    }

  private:
    bool Cancelled() const { return cancel_ != nullptr && cancel_->load(); }

    std::string NoConverter() const {
        return "the converter is not in \"" + PathText(options_.converterDir) +
               "\"; KYCLASH_CONVERTER_DIR names its folder";
    }

    void Report(std::size_t index, ConvertPhase phase, std::size_t done = 0,
                std::size_t total = 1) {
        if (!progress_) return;
        const std::lock_guard lock(progressMutex_);
        progress_({index, phase, done, total});
    }

    void Fail(std::size_t index, ConvertErrorKind kind, const std::string& message) {
        results_[index].error = kind;
        results_[index].message = PathText(results_[index].input) + ": " + message;
        Report(index, ConvertPhase::Failed, 1);
    }

    void FailAll(ConvertErrorKind kind, const std::string& message) {
        for (std::size_t i = 0; i < results_.size(); ++i)
            Fail(i, kind, message);
    }

    void Succeed(std::size_t index, const std::string& key, bool fromCache) {
        results_[index].package = cache_.PathOf(key);
        results_[index].fromCache = fromCache;
        Report(index, ConvertPhase::Done, 1);
    }

    void AddDuration(std::size_t index, Clock::time_point start) {
        results_[index].duration +=
            std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    }

    /// The inputs that have to be converted, big ones first.
    std::vector<Job> HashAll(const std::string& fingerprint) {
        std::vector<Job> jobs;
        std::map<std::string, std::size_t> byKey;
        for (std::size_t i = 0; i < results_.size(); ++i) {
            const auto key = Hash(i, fingerprint);
            if (!key) continue;
            if (const auto [known, isNew] = byKey.try_emplace(*key, i); !isNew) {
                twinOf_[i] = known->second;
            } else if (cache_.Has(*key)) {
                Succeed(i, *key, true);
            } else {
                Report(i, ConvertPhase::Waiting);
                std::error_code code;
                jobs.push_back({i, fs::file_size(results_[i].input, code), *key});
            }
        }
        std::stable_sort(jobs.begin(), jobs.end(),
                         [](const Job& a, const Job& b) { return a.size > b.size; });
        return jobs;
    }

    std::optional<std::string> Hash(std::size_t index, const std::string& fingerprint) {
        Report(index, ConvertPhase::Hashing);
        const auto start = Clock::now();
        const auto hash = HashFile(results_[index].input, cancel_);
        AddDuration(index, start);
        if (hash) return CacheKey(*hash, fingerprint);
        std::error_code code;
        if (Cancelled()) {
            Fail(index, ConvertErrorKind::Cancelled, "cancelled");
        } else if (fs::is_directory(results_[index].input, code)) {
            Fail(index, ConvertErrorKind::InputMissing, "is a folder, not an IFC file");
        } else if (fs::exists(results_[index].input, code)) {
            Fail(index, ConvertErrorKind::InputMissing, "cannot be read");
        } else {
            Fail(index, ConvertErrorKind::InputMissing, "there is no such file");
        }
        return std::nullopt;
    }

    void RunParallel(const std::vector<Job>& jobs) {
        const unsigned cores = std::max(1U, std::thread::hardware_concurrency());
        const std::size_t wanted = options_.parallel == 0 ? cores : options_.parallel;
        std::atomic<std::size_t> next{0};
        const auto work = [&] {
            for (std::size_t i = next++; i < jobs.size(); i = next++)
                RunJob(jobs[i]);
        };
        std::vector<std::jthread> workers;
        for (std::size_t i = 1; i < std::min(wanted, jobs.size()); ++i)
            workers.emplace_back(work);
        work();
    }

    /// RunOne() for a thread of its own, which no exception may leave.
    void RunJob(const Job& job) {
        const auto start = Clock::now();
        try {
            RunOne(job);
        } catch (const std::exception& error) {
            Fail(job.index, ConvertErrorKind::Crash, error.what());
        }
        AddDuration(job.index, start);
    }

    void RunOne(const Job& job) {
        if (Cancelled()) return Fail(job.index, ConvertErrorKind::Cancelled, "cancelled");
        if (options_.node.empty()) {
            return Fail(job.index, ConvertErrorKind::NodeMissing,
                        "Node.js is needed to read IFC files and is not on PATH; install it (apt "
                        "install nodejs) or name it in KYCLASH_NODE");
        }
        const fs::path temporary = cache_.TemporaryFor(job.key);
        const ProcessOutcome outcome = RunChild(job, temporary);
        if (Judge(job.index, outcome)) PublishPackage(job, temporary);
        cache_.Discard(temporary);
    }

    ProcessOutcome RunChild(const Job& job, const fs::path& temporary) {
        ProcessRequest request;
        request.program = options_.node;
        // Joined by "=", since a path may begin with a dash.
        request.arguments = {(options_.converterDir / kScript).string(),
                             "--input=" + results_[job.index].input.string(),
                             "--output=" + temporary.string(),
                             "--circle-segments=" + std::to_string(options_.circleSegments)};
        request.logFile = temporary.string() + ".log";
        request.timeLimit = options_.timeLimit;
        request.cancel = cancel_;
        return RunProcess(request,
                          [&](const std::string& phase, std::size_t done, std::size_t total) {
                              Report(job.index, PhaseOf(phase), done, total);
                          });
    }

    /// Whether the child did its work; otherwise the failure is recorded.
    bool Judge(std::size_t index, const ProcessOutcome& outcome) {
        switch (outcome.end) {
            case ProcessOutcome::End::NotStarted:
                Fail(index, ConvertErrorKind::NodeMissing,
                     "cannot start \"" + PathText(options_.node) + "\": " + outcome.message);
                return false;
            case ProcessOutcome::End::Cancelled:
                Fail(index, ConvertErrorKind::Cancelled, "cancelled");
                return false;
            case ProcessOutcome::End::TimedOut:
                Fail(index, ConvertErrorKind::Timeout,
                     "not read within " + DurationText(options_.timeLimit));
                return false;
            case ProcessOutcome::End::Exited:
                return outcome.exitCode == kExitDone || FailByExitCode(index, outcome);
        }
        return false;
    }

    bool FailByExitCode(std::size_t index, const ProcessOutcome& outcome) {
        if (Cancelled()) {
            // An interrupt from the terminal ends the child as well.
            Fail(index, ConvertErrorKind::Cancelled, "cancelled");
            return false;
        }
        const std::string& said = outcome.errorLine.empty() ? outcome.lastLine : outcome.errorLine;
        switch (outcome.exitCode) {
            case kExitInput:
                Fail(index, ConvertErrorKind::InputInvalid, said);
                break;
            case kExitReader:
                Fail(index, ConvertErrorKind::ConverterMissing,
                     said + "; install it with: " + InstallCommand(options_.converterDir));
                break;
            case kExitOutput:
                Fail(index, ConvertErrorKind::CacheUnusable, said);
                break;
            default:
                Fail(index, ConvertErrorKind::Crash,
                     "the converter ended with code " + std::to_string(outcome.exitCode) +
                         (said.empty() ? "" : ": " + said));
        }
        return false;
    }

    void PublishPackage(const Job& job, const fs::path& temporary) {
        Report(job.index, ConvertPhase::Checking);
        if (const auto error = cache_.Publish(temporary, job.key)) {
            Fail(job.index, ConvertErrorKind::BadPackage, error->Text());
        } else {
            Succeed(job.index, job.key, false);
        }
    }

    void CopyToTwins() {
        for (const auto& [twin, original] : twinOf_) {
            const ConvertResult& from = results_[original];
            if (from.Ok()) {
                results_[twin].package = from.package;
                results_[twin].fromCache = true;
                Report(twin, ConvertPhase::Done, 1);
            } else {
                Fail(twin, from.error, "same content as " + from.message);
            }
        }
    }

    const ConvertOptions& options_;
    PackageCache cache_;
    const std::atomic<bool>* cancel_;
    const SceneConverter::ProgressCallback& progress_;
    std::mutex progressMutex_;
    std::vector<ConvertResult> results_;
    std::map<std::size_t, std::size_t> twinOf_;
};

}  // namespace

SceneConverter::SceneConverter(ConvertOptions options) : options_(std::move(options)) {
    if (options_.node.empty()) options_.node = DefaultNode();
    if (options_.converterDir.empty()) options_.converterDir = DefaultConverterDir();
    if (options_.cacheDir.empty()) options_.cacheDir = DefaultCacheDir();
}

std::vector<ConvertResult> SceneConverter::Convert(const std::vector<fs::path>& inputs,
                                                   const std::atomic<bool>* cancel,
                                                   const ProgressCallback& progress) {
    return Batch(options_, inputs, cancel, progress).Run();
}

}  // namespace ifchost
