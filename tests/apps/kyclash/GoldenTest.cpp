// SPDX-License-Identifier: Apache-2.0
// The sample building against the files in samples/golden, which were reviewed by hand; the README
// there says why each clash is one. Result ids are random and stand as zeros.

#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "support/XmlSchema.h"

namespace kyclash {
namespace {

using testing::ReadAll;
using testing::RunCommand;
using testing::SourcePath;
using testing::TemporaryFolder;
using testing::WhyNoConversion;
using testing::WithoutIds;

std::string Golden(const std::string& name) {
    return ReadAll(SourcePath("samples/golden/" + name));
}

class GoldenRun : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (!WhyNoConversion().empty()) return;
        folder_ = std::make_unique<TemporaryFolder>();
        outcome_ = RunCommand({"check", SourcePath("samples/building.ifc"), "--quiet", "--out",
                               folder_->Path().string()});
    }
    static void TearDownTestSuite() { folder_.reset(); }

    void SetUp() override {
        if (!folder_) GTEST_SKIP() << WhyNoConversion();
        ASSERT_EQ(outcome_.exitCode, 0) << outcome_.errors;
    }

    static std::string Written(const std::string& name) {
        return WithoutIds(ReadAll(folder_->Path() / name));
    }

    static std::unique_ptr<TemporaryFolder> folder_;
    static testing::CommandOutcome outcome_;
};

std::unique_ptr<TemporaryFolder> GoldenRun::folder_;
testing::CommandOutcome GoldenRun::outcome_;

TEST_F(GoldenRun, WritesTheReviewedResults) {
    EXPECT_EQ(Written("results.xml"), Golden("results.xml"));
}

TEST_F(GoldenRun, WritesTheReviewedResultTable) {
    EXPECT_EQ(Written("results.csv"), Golden("results.csv"));
}

TEST_F(GoldenRun, WritesTheReviewedOpenings) {
    EXPECT_EQ(Written("openings.csv"), Golden("openings.csv"));
}

TEST_F(GoldenRun, WritesFilesThatFitThePublishedSchemas) {
    if (!kycbtest::HasXmlLint()) GTEST_SKIP() << kycbtest::kNoXmlLint;
    const std::string schema = SourcePath("schemas/result.xsd");
    const std::string results = (folder_->Path() / "results.xml").string();
    EXPECT_EQ(kycbtest::SchemaErrors(schema, results), "");

    // Rules without a single item find nothing, so all that was found before is gone.
    const TemporaryFolder later;
    const std::string rules = later.Write("rules.xml", "<CollisionRule/>").string();
    const auto outcome =
        RunCommand({"check", SourcePath("samples/building.ifc"), "--quiet", "--rules", rules,
                    "--previous", results, "--out", later.Path().string()});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_EQ(kycbtest::SchemaErrors(schema, later.Path() / "results.xml"), "");
    EXPECT_EQ(kycbtest::SchemaErrors(schema, later.Path() / "results-gone.xml"), "");
    EXPECT_EQ(WithoutIds(ReadAll(later.Path() / "results-gone.xml")), Golden("results.xml"));
}

TEST(Golden, RulesAreShownAsReviewed) {
    const auto outcome = RunCommand({"rules", "show", SourcePath("data/rules/default.xml")});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.errors;
    EXPECT_EQ(outcome.out, Golden("rules.txt"));
}

}  // namespace
}  // namespace kyclash
