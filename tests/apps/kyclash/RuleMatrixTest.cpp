// SPDX-License-Identifier: Apache-2.0
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandRunner.h"
#include "kyclash/RuleFile.h"
#include "kyclash/RuleMatrix.h"

namespace kyclash {
namespace {

using ::testing::HasSubstr;
using testing::TemporaryFolder;

// A wall with a tolerance, a duct with clearances, a plain door not against walls, a slab that is
// off, and two pipes of which one does not go with ducts.
constexpr const char* kRules = R"(<CollisionRule>
<Specialty name="土建">
  <RuleItem gjtype="土建/墙/砖内墙" isvalid="true"><Mode type="2">7</Mode></RuleItem>
  <RuleItem gjtype="土建/门.窗.洞/门" isvalid="true"><Mode type="0"/>
    <Excludes><ExcludeGJ>土建/墙</ExcludeGJ></Excludes></RuleItem>
  <RuleItem gjtype="土建/楼梯楼板/现浇板" isvalid="false"/>
</Specialty>
<Specialty name="暖通">
  <RuleItem gjtype="暖通/风管/送风管" isvalid="true"><Filter type="1">DN&gt;=50</Filter>
    <Mode type="1"/></RuleItem>
</Specialty>
<Specialty name="给排水">
  <RuleItem gjtype="给排水/管道/污水管" isvalid="true"><Mode type="1"/></RuleItem>
  <RuleItem gjtype="给排水/管道/给水管" isvalid="true"><Mode type="1"/>
    <Excludes><ExcludeGJ>暖通</ExcludeGJ></Excludes></RuleItem>
</Specialty></CollisionRule>)";

RuleFile ReadRules() {
    const TemporaryFolder folder;
    return ReadRuleFile(folder.Write("rules.xml", kRules));
}

TEST(RuleMatrix, PrintsKindsWithTheirSettings) {
    std::ostringstream out;
    WriteRuleMatrix(*ReadRules().rules->GetRule(), out);
    EXPECT_THAT(out.str(), HasSubstr("6 kinds, 5 of them on\n"));
    EXPECT_THAT(out.str(), HasSubstr("on   土建/墙/砖内墙  tolerance 7 mm\n"));
    EXPECT_THAT(out.str(), HasSubstr("on   土建/门.窗.洞/门  hard; not against 土建/墙\n"));
    EXPECT_THAT(out.str(), HasSubstr("off  土建/楼梯楼板/现浇板  hard\n"));
    EXPECT_THAT(out.str(), HasSubstr("on   暖通/风管/送风管  clearance; DN>=50\n"));
}

TEST(RuleMatrix, PrintsWhatComesOfEachPairOfMajorCategories) {
    std::ostringstream out;
    WriteRuleMatrix(*ReadRules().rules->GetRule(), out);
    EXPECT_THAT(out.str(), HasSubstr("     1  2  3  4\n"
                                     "  1  t  .  c  c  土建/墙\n"
                                     "  2  .  h  h  h  土建/门.窗.洞\n"
                                     "  3  c  h  c  *  暖通/风管\n"
                                     "  4  c  h  *  c  给排水/管道\n"));
}

TEST(RuleMatrix, GivesProgramsTheOffsetsOfEveryTestedPair) {
    std::ostringstream out;
    WriteRuleJson(*ReadRules().rules->GetRule(), out);
    const auto document = nlohmann::json::parse(out.str());
    EXPECT_EQ(document["kinds"].size(), 6U);
    std::map<std::pair<std::string, std::string>, std::vector<int>> offsets;
    for (const auto& pair : document["pairs"])
        offsets[{pair["a"], pair["b"]}] = pair["offsets"].get<std::vector<int>>();
    EXPECT_EQ((offsets[{"土建/墙/砖内墙", "土建/墙/砖内墙"}]), (std::vector<int>{-7, -7}));
    EXPECT_EQ((offsets[{"土建/墙/砖内墙", "暖通/风管/送风管"}]), (std::vector<int>{0, 200}));
    EXPECT_EQ((offsets[{"给排水/管道/污水管", "给排水/管道/给水管"}]),
              (std::vector<int>{200, 200}));
    EXPECT_EQ((offsets.count({"土建/墙/砖内墙", "土建/门.窗.洞/门"})), 0U);
    EXPECT_EQ((offsets.count({"土建/楼梯楼板/现浇板", "土建/楼梯楼板/现浇板"})), 0U);
}

TEST(RuleMatrix, NamesModesItDoesNotKnow) {
    KYCOLLISION::Rule::KyCollisionMode mode;
    mode.SetModeType(static_cast<KYCOLLISION::Rule::EnumModeType>(9));
    EXPECT_EQ(ModeText(mode), "unknown mode 9");
}

}  // namespace
}  // namespace kyclash
