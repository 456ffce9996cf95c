// SPDX-License-Identifier: Apache-2.0
// One run of the converter as a child process.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ifchost {

/// `name` as an executable in one of the folders of PATH; empty when there is none.
std::filesystem::path FindOnPath(const std::string& name);

/// How a child ended.
struct ProcessOutcome {
    enum class End { Exited, NotStarted, TimedOut, Cancelled };
    End end = End::NotStarted;
    int exitCode = -1;      ///< of `Exited`; a signal counts as a code other than 0
    std::string message;    ///< of `NotStarted`: why
    std::string errorLine;  ///< text of the child's last "error TEXT" line
    std::string lastLine;   ///< last line of its standard error that is no progress line
};

/// What to run and how long.
struct ProcessRequest {
    std::filesystem::path program;
    std::vector<std::string> arguments;
    std::filesystem::path logFile;  ///< takes the child's standard error; the caller removes it
    std::chrono::milliseconds timeLimit{0};
    const std::atomic<bool>* cancel = nullptr;  ///< may be null
};

/// Called with each "progress PHASE DONE TOTAL" line.
using ProgressLine =
    std::function<void(const std::string& phase, std::size_t done, std::size_t total)>;

/// Runs the child to its end, or kills it when its time is up or `cancel` becomes true. Its
/// standard output is thrown away. May be called from several threads at once.
ProcessOutcome RunProcess(const ProcessRequest& request, const ProgressLine& onProgress);

}  // namespace ifchost
