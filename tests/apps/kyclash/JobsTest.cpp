// SPDX-License-Identifier: Apache-2.0
// A check in several processes against one in a single process, on the sample building.
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include "CommandRunner.h"

namespace kyclash::testing {
namespace {

struct Checked {
    nlohmann::json report;
    std::string results;
    std::string openings;
};

Checked Check(std::vector<std::string> options) {
    const TemporaryFolder folder;
    std::vector<std::string> arguments = {"check",
                                          SourcePath("samples/building.ifc"),
                                          "--quiet",
                                          "--json",
                                          "--list",
                                          "--out",
                                          folder.Path().string()};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const CommandOutcome outcome = RunCommand(arguments);
    EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
    Checked checked;
    checked.report = nlohmann::json::parse(outcome.out);
    // What a run costs, where it writes and the ids of its results are its own.
    for (const char* own : {"seconds", "peakMegabytes", "written"}) {
        EXPECT_EQ(checked.report.erase(own), 1U) << own;
    }
    checked.results = WithoutIds(ReadAll(folder.Path() / "results.csv"));
    checked.openings = ReadAll(folder.Path() / "openings.csv");
    return checked;
}

void ExpectSame(const Checked& a, const Checked& b) {
    EXPECT_EQ(a.report, b.report);
    EXPECT_EQ(a.results, b.results);
    EXPECT_EQ(a.openings, b.openings);
}

TEST(Jobs, FindWhatOneProcessFindsInTheSameOrder) {
    if (const std::string why = WhyNoConversion(); !why.empty()) GTEST_SKIP() << why;
    const Checked one = Check({});
    EXPECT_GT(one.results.size(), 1000U);
    ExpectSame(Check({"--jobs", "2"}), one);
    ExpectSame(Check({"--jobs", "16"}), one);
}

TEST(Jobs, CheckTheFloorsThatAreAskedFor) {
    if (const std::string why = WhyNoConversion(); !why.empty()) GTEST_SKIP() << why;
    const std::vector<std::string> floors = {"--floor", "F2", "--floor", "F1"};
    std::vector<std::string> inJobs = floors;
    inJobs.insert(inJobs.end(), {"--jobs", "2"});
    ExpectSame(Check(inJobs), Check(floors));
}

TEST(Jobs, AreAtLeastOne) {
    const CommandOutcome outcome = RunCommand({"check", "a.ifc", "--jobs", "0"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.errors, ::testing::HasSubstr("--jobs"));
}

}  // namespace
}  // namespace kyclash::testing
