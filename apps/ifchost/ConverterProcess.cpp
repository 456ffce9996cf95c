// SPDX-License-Identifier: Apache-2.0
#include "ConverterProcess.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <sstream>
#include <string_view>
#include <system_error>
#include <thread>

#include <boost/process/args.hpp>
#include <boost/process/child.hpp>
#include <boost/process/error.hpp>
#include <boost/process/exe.hpp>
#include <boost/process/io.hpp>

namespace ifchost {
namespace {

namespace bp = boost::process;
namespace fs = std::filesystem;

// Short enough that Ctrl-C feels immediate, long enough to cost nothing.
constexpr auto kPollInterval = std::chrono::milliseconds(20);

#ifdef _WIN32
constexpr char kPathSeparator = ';';
constexpr const char* kExecutableSuffix = ".exe";
#else
constexpr char kPathSeparator = ':';
constexpr const char* kExecutableSuffix = "";
#endif

/// Starting a process duplicates all open handles until the new program runs, the pipe on which
/// another starting thread waits among them; so only one starts at a time.
std::mutex& StartMutex() {
    static std::mutex mutex;
    return mutex;
}

bool IsExecutable(const fs::path& path) {
    std::error_code code;
    const auto status = fs::status(path, code);
    constexpr auto kAnyExec =
        fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    return fs::is_regular_file(status) && (status.permissions() & kAnyExec) != fs::perms::none;
}

bool ParseCount(std::string_view text, std::size_t& value) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

/// Follows the log that a running child writes.
class LogFollower {
  public:
    LogFollower(const fs::path& path, const ProgressLine& onProgress, ProcessOutcome& outcome)
        : file_(path, std::ios::binary), onProgress_(onProgress), outcome_(outcome) {}

    /// Handles all whole lines that have come since the last call.
    void Read() {
        char chunk[4096];
        file_.clear();
        while (file_.read(chunk, sizeof(chunk)), file_.gcount() > 0) {
            pending_.append(chunk, static_cast<std::size_t>(file_.gcount()));
            file_.clear();
        }
        std::size_t start = 0;
        for (auto end = pending_.find('\n'); end != std::string::npos;
             end = pending_.find('\n', start)) {
            Handle(std::string_view(pending_).substr(start, end - start));
            start = end + 1;
        }
        pending_.erase(0, start);
    }

  private:
    void Handle(std::string_view line) {
        constexpr std::string_view kProgress = "progress ";
        constexpr std::string_view kError = "error ";
        if (line.starts_with(kProgress)) {
            HandleProgress(std::string(line.substr(kProgress.size())));
        } else if (line.starts_with(kError)) {
            outcome_.errorLine = line.substr(kError.size());
        } else if (!line.empty()) {
            outcome_.lastLine = line;
        }
    }

    void HandleProgress(const std::string& rest) {
        std::istringstream words(rest);
        std::string phase, done, total;
        words >> phase >> done >> total;
        std::size_t doneCount = 0;
        std::size_t totalCount = 0;
        if (!onProgress_ || !ParseCount(done, doneCount) || !ParseCount(total, totalCount)) return;
        onProgress_(phase, doneCount, std::max<std::size_t>(totalCount, 1));
    }

    std::ifstream file_;
    const ProgressLine& onProgress_;
    ProcessOutcome& outcome_;
    std::string pending_;
};

bp::child Start(const ProcessRequest& request, std::error_code& code) {
    const std::lock_guard lock(StartMutex());
    return bp::child(bp::exe = request.program.string(), bp::args = request.arguments,
                     bp::std_in<bp::null, bp::std_out> bp::null,
                     bp::std_err > request.logFile.string(), code);
}

void Kill(bp::child& child) {
    std::error_code ignored;
    child.terminate(ignored);
    child.wait(ignored);
}

void Supervise(bp::child& child, const ProcessRequest& request, LogFollower& log,
               ProcessOutcome& outcome) {
    const auto deadline = std::chrono::steady_clock::now() + request.timeLimit;
    std::error_code code;
    while (child.running(code)) {
        if (request.cancel != nullptr && request.cancel->load()) {
            Kill(child);
            outcome.end = ProcessOutcome::End::Cancelled;
            return;
        }
        if (std::chrono::steady_clock::now() > deadline) {
            Kill(child);
            outcome.end = ProcessOutcome::End::TimedOut;
            return;
        }
        log.Read();
        std::this_thread::sleep_for(kPollInterval);
    }
    outcome.end = ProcessOutcome::End::Exited;
    outcome.exitCode = child.exit_code();
}

}  // namespace

fs::path FindOnPath(const std::string& name) {
    const char* variable = std::getenv("PATH");
    std::istringstream folders(variable == nullptr ? "" : variable);
    for (std::string folder; std::getline(folders, folder, kPathSeparator);) {
        if (folder.empty()) continue;
        const fs::path candidate = fs::path(folder) / (name + kExecutableSuffix);
        if (IsExecutable(candidate)) return candidate;
    }
    return {};
}

ProcessOutcome RunProcess(const ProcessRequest& request, const ProgressLine& onProgress) {
    ProcessOutcome outcome;
    std::error_code code;
    bp::child child = Start(request, code);
    if (code) {
        outcome.message = code.message();
        return outcome;
    }
    LogFollower log(request.logFile, onProgress, outcome);
    Supervise(child, request, log, outcome);
    log.Read();
    return outcome;
}

}  // namespace ifchost
