// SPDX-License-Identifier: Apache-2.0
// Files that nobody wrote in good faith, given to every option that reads XML: each ends with a
// message that names the file, and exit code 1.
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"

namespace kyclash {
namespace {

using ::testing::HasSubstr;
using testing::RunCommand;
using testing::TemporaryFolder;

struct HostileFile {
    const char* name;
    std::string bytes;
};

std::string RandomBytes() {
    std::mt19937 random(11);
    std::string bytes(4096, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random() & 0xFF);
    return bytes;
}

// Entities that stand for ten times the one before.
std::string EntityBomb() {
    std::string text = "<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 10; ++i) {
        text += "<!ENTITY a" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k)
            text += "&a" + std::to_string(i - 1) + ";";
        text += "\">";
    }
    return text + "]><CollisionRule>&a9;</CollisionRule>";
}

std::string Nested(std::size_t depth) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i)
        text += "<a>";
    return text;
}

// Each is unreadable both as a rule file and as a result file.
std::vector<HostileFile> Corpus() {
    return {{"empty", ""},
            {"truncated", "<CollisionRule><Specialty name=\"a\"><RuleItem gjt"},
            {"text", "not XML at all"},
            {"zeros", std::string(1000, '\0')},
            {"random", RandomBytes()},
            {"bomb", EntityBomb()},
            {"deep", Nested(1000000)},
            {"encoding", "<?xml version=\"1.0\" encoding=\"EBCDIC-XX\"?><CollisionRule/>"},
            {"badutf8", "<CollisionRule a=\"\xC3\x28\"/>"},
            {"tworoots", "<CollisionRule/><CollisionRule/>"},
            {"bomonly", "\xEF\xBB\xBF"},
            {"utf16cut", std::string("\xFF\xFE<\0C\0o", 7)},
            {"control", "<CollisionRule a=\"\x01\"/>"}};
}

class HostileFiles : public ::testing::TestWithParam<HostileFile> {
  protected:
    void ExpectRefusal(std::vector<std::string> arguments) const {
        const auto outcome = RunCommand(arguments);
        EXPECT_EQ(outcome.exitCode, 1) << arguments[0];
        EXPECT_THAT(outcome.errors, HasSubstr("hostile.xml")) << arguments[0];
        EXPECT_LT(outcome.errors.size(), 2000U) << arguments[0];
    }
    std::string File() const { return folder_.Write("hostile.xml", GetParam().bytes).string(); }

    TemporaryFolder folder_;
};

TEST_P(HostileFiles, AreRefusedAsRules) {
    ExpectRefusal({"check", "any.ifc", "--rules", File()});
    ExpectRefusal({"rules", "show", File()});
    ExpectRefusal({"rules", "validate", File()});
}

TEST_P(HostileFiles, AreRefusedAsResults) {
    const std::string good = folder_.Write("good.xml", "<r/>").string();
    ExpectRefusal({"check", "any.ifc", "--previous", File()});
    ExpectRefusal({"diff", File(), good});
    ExpectRefusal({"diff", good, File()});
}

TEST_P(HostileFiles, AreWarnedOfAsCategoriesAndPriorities) {
    folder_.Write("config/system/productsort.xml", GetParam().bytes);
    folder_.Write("CollisionData/TypePriorityMap.xml", GetParam().bytes);
    const auto outcome = RunCommand({"rules", "show", testing::SourcePath("data/rules/default.xml"),
                                     "--system-root", folder_.Path().string()});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.errors, HasSubstr("productsort.xml: no categories could be read"));
    EXPECT_THAT(outcome.errors, HasSubstr("TypePriorityMap.xml: no complete list"));
    EXPECT_LT(outcome.errors.size(), 2000U);
}

INSTANTIATE_TEST_SUITE_P(Corpus, HostileFiles, ::testing::ValuesIn(Corpus()),
                         [](const auto& hostile) { return std::string(hostile.param.name); });

TEST(HostileRules, OfAnotherRootAreRefused) {
    const TemporaryFolder folder;
    const auto file = folder.Write("hostile.xml", "<碰撞检查结果/>");
    const auto outcome = RunCommand({"check", "any.ifc", "--rules", file.string()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("hostile.xml"));
    EXPECT_THAT(outcome.errors, HasSubstr("CollisionRule"));
}

TEST(HostileResults, WithAHugeAttributeAreReadAsTheyAre) {
    const TemporaryFolder folder;
    const std::string remark(std::size_t{100} << 20, 'x');
    const auto file =
        folder.Write("huge.xml",
                     "<r><p><f><i projectA=\"1\" projectB=\"1\" dispose=\"0\" picsize=\"0\" "
                     "remark=\"" +
                         remark + "\"/></f></p></r>");
    const auto outcome = RunCommand({"diff", file.string(), file.string()});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "0 new, 0 gone, 0 changed, 1 the same\n");
}

TEST(HostileRules, WithAHugeAttributeAreRefusedInAFewWords) {
    const TemporaryFolder folder;
    const auto file =
        folder.Write("hostile.xml", "<CollisionRule><Specialty name=\"a\"><RuleItem gjtype=\"" +
                                        std::string(std::size_t{100} << 20, 'x') +
                                        "\"/></Specialty></CollisionRule>");
    const auto outcome = RunCommand({"rules", "validate", file.string()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("hostile.xml"));
    EXPECT_LT(outcome.errors.size(), 2000U);
}

}  // namespace
}  // namespace kyclash
