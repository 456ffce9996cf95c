// SPDX-License-Identifier: Apache-2.0
// The whole sequence on real models, from rules to kept handling. The folder is KYCLASH_MODELS, or
// "shared/models" beside the source tree; without it the tests are skipped.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandRunner.h"

namespace kyclash {
namespace {

using ifchost::testing::ModelFolder;
using ifchost::testing::WhyNoModels;
using ::testing::HasSubstr;
using testing::ReadAll;
using testing::RunCommand;
using testing::SourcePath;
using testing::TemporaryFolder;
using Json = nlohmann::json;

class RealModels : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const std::string why = WhyNoModels(); !why.empty()) GTEST_SKIP() << why;
    }

    static std::string Model(const char* name) { return (ModelFolder() / name).string(); }

    static Json Check(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "check");
        arguments.insert(arguments.end(), {"--quiet", "--json"});
        const auto outcome = RunCommand(arguments);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.errors;
        return Json::parse(outcome.out);
    }

    static int Clashes(const Json& report) {
        int clashes = 0;
        for (const Json& floor : report["floors"])
            clashes += static_cast<int>(floor["clashes"].size());
        return clashes;
    }

    TemporaryFolder folder_;
};

TEST_F(RealModels, GoThroughTheWholeSequence) {
    const std::string model = Model("duplex_arch.ifc");
    const std::string out = (folder_.Path() / "out").string();
    const Json first = Check({model, "--out", out});
    const int clashes = Clashes(first);
    EXPECT_GT(clashes, 0);
    EXPECT_TRUE(first["rules"]["withoutRule"].empty());
    EXPECT_TRUE(first["unmapped"].empty());
    EXPECT_THAT(ReadAll(out + "/openings.csv"), HasSubstr("IfcDoor"));

    const Json second = Check({model, "--out", out, "--previous", out + "/results.xml"});
    EXPECT_EQ(second["previous"]["counts"]["still open"], clashes);
    EXPECT_EQ(Clashes(second), clashes);

    const Json federated = Check(
        {Model("duplex_electrical.ifc"), model, "--out", out, "--previous", out + "/results.xml"});
    EXPECT_EQ(federated["previous"]["counts"]["still open"], clashes)
        << "the model has another project id now";
    EXPECT_EQ(federated["previous"]["counts"]["gone"], 0);
    EXPECT_EQ(federated["previous"]["counts"]["not re-tested"], 0);
}

TEST_F(RealModels, AccountForEveryProduct) {
    for (const char* name :
         {"pcert_hvac.ifc", "sch_staal.ifc", "indexed_polycurve_issue2499.ifc"}) {
        const Json report = Check({Model(name)});
        const Json& model = report["models"][0];
        int accounted = model["checked"];
        for (const auto& [reason, count] : model["skipped"].items())
            accounted += count.get<int>();
        EXPECT_EQ(accounted, model["products"]) << name;
        EXPECT_EQ(model["sha256"].get<std::string>().size(), 64U) << name;
    }
}

}  // namespace
}  // namespace kyclash
