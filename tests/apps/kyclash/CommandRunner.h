// SPDX-License-Identifier: Apache-2.0
// Runs the kyclash program as a user does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <boost/process.hpp>

#include "apps/ifchost/ModelConverter.h"
#include "apps/ifchost/PackageBuilder.h"

namespace kyclash::testing {

using ifchost::testing::ReadAll;
using ifchost::testing::TemporaryFolder;
using ifchost::testing::WhyNoConversion;

/// How a run ended and what it printed.
struct CommandOutcome {
    int exitCode = -1;
    std::string out;
    std::string errors;
};

inline CommandOutcome RunProgram(const std::string& program,
                                 const std::vector<std::string>& arguments) {
    namespace bp = boost::process;
    const TemporaryFolder folder;
    const auto out = (folder.Path() / "out").string();
    const auto errors = (folder.Path() / "errors").string();
    bp::environment environment = boost::this_process::environment();
    environment.erase("KYCOLLISION_SYSTEM_ROOT");
    CommandOutcome outcome;
    outcome.exitCode = bp::system(bp::exe = program, bp::args = arguments, environment,
                                  bp::std_in<bp::null, bp::std_out> out, bp::std_err > errors);
    outcome.out = ReadAll(out);
    outcome.errors = ReadAll(errors);
    return outcome;
}

/// Runs kyclash to its end. Converted models are kept in one folder for all tests of a build.
inline CommandOutcome RunCommand(const std::vector<std::string>& arguments) {
    return RunProgram(KYCLASH_PROGRAM, arguments);
}

/// Runs kyclash with what the shell makes of `arguments`, such as redirected streams.
inline CommandOutcome RunShell(const std::string& arguments) {
    return RunProgram("/bin/sh", {"-c", "exec '" KYCLASH_PROGRAM "' " + arguments});
}

constexpr std::size_t kResultIdSize = 32;

/// Whether the id of a result stands there: hexadecimal digits, of which those from the thirteenth
/// to the sixteenth are in lower case.
inline bool IsResultIdAt(const std::string& text, std::size_t at) {
    if (text.size() - at < kResultIdSize) return false;
    for (std::size_t i = 0; i < kResultIdSize; ++i) {
        const char c = text[at + i];
        const char firstLetter = i >= 12 && i < 16 ? 'a' : 'A';
        if (!(c >= '0' && c <= '9') && !(c >= firstLetter && c <= firstLetter + 5)) return false;
    }
    return true;
}

/// A result file's text with zeros for the ids of its results, which differ from run to run.
inline std::string WithoutIds(std::string text) {
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (IsResultIdAt(text, at)) text.replace(at, kResultIdSize, kResultIdSize, '0');
    }
    return text;
}

inline std::string SourcePath(const std::string& relative) {
    return (std::filesystem::path(IFCHOST_SOURCE_DIR) / relative).string();
}

}  // namespace kyclash::testing
