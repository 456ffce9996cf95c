// SPDX-License-Identifier: Apache-2.0
// Runs the kyclash program as a user does.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <boost/process.hpp>

#include "apps/ifchost/PackageBuilder.h"

namespace kyclash::testing {

using ifchost::testing::ReadAll;
using ifchost::testing::TemporaryFolder;

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

inline std::string SourcePath(const std::string& relative) {
    return (std::filesystem::path(KYCLASH_SOURCE_DIR) / relative).string();
}

/// Whether models can be converted here; tests that need it are skipped without.
inline bool HasConverter() {
    const char* folder = std::getenv("KYCLASH_CONVERTER_DIR");
    const std::filesystem::path converter =
        folder != nullptr ? std::filesystem::path(folder)
                          : std::filesystem::path(SourcePath("apps/ifchost/converter"));
    return std::filesystem::exists(converter / "node_modules" / "web-ifc");
}

inline constexpr const char* kNoConverter =
    "the IFC converter is not installed: run npm ci in apps/ifchost/converter";

}  // namespace kyclash::testing
