// SPDX-License-Identifier: Apache-2.0
// The data that ships with the command: category tree, priorities and rules know the same kinds.
#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/model/KyCategoryNode.h"
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CommandRunner.h"
#include "ifchost/Classification.h"
#include "ifchost/HostText.h"
#include "kyclash/CategoryCheck.h"
#include "kyclash/RuleFile.h"
#include "kyclash/RuleOutcome.h"
#include "kyclash/SystemRoot.h"
#include "support/XmlSchema.h"

namespace kyclash {
namespace {

using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::MODEL::KyCategoryNode;
using KYCOLLISION::MODEL::KyEntityCategoryMgr;
using ::testing::IsEmpty;

struct VocabularyRow {
    const wchar_t* specialty;
    const wchar_t* dalei;
    std::vector<const wchar_t*> xiaolei;
};

// The kinds that the library itself has knowledge of.
const std::vector<VocabularyRow> kVocabulary = {
    {L"给排水",
     L"管道",
     {L"给水管", L"热给水管", L"热回水管", L"污水管", L"废水管", L"雨水管", L"中水管", L"消防管",
      L"喷淋管", L"其它管", L"软管"}},
    {L"暖通",
     L"水管",
     {L"热供水管", L"热回水管", L"冷供水管", L"冷回水管", L"冷却水管", L"凝结水管", L"软管",
      L"其它水管"}},
    {L"消防", L"管网", {L"喷淋管", L"消防管", L"气体灭火管", L"泡沫灭火管", L"其它管"}},
    {L"电气", L"电缆桥架", {L"母线馈线", L"桥架", L"托盘", L"组合式桥架"}},
    {L"暖通",
     L"风管",
     {L"送风管", L"新风管", L"回风管", L"排风管", L"除尘排烟管", L"其它风管", L"柔性风管"}},
    {L"弱电", L"线槽桥架", {L"泡沫灭火管", L"其它管", L"线槽", L"桥架"}},
    {L"土建", L"梁", {L"框架梁", L"次梁", L"连梁", L"独立梁", L"圈梁", L"过梁", L"窗台"}},
    {L"土建", L"楼梯楼板", {L"现浇板", L"预制板", L"拱形板", L"楼梯", L"梯段", L"螺旋板"}},
    {L"土建",
     L"墙",
     {L"砼外墙", L"砼内墙", L"砖外墙", L"砖内墙", L"填充墙", L"间壁墙", L"电梯井墙", L"玻璃幕墙"}},
    {L"土建",
     L"柱",
     {L"砼柱", L"砖柱", L"构造柱", L"暗柱", L"自适应暗柱", L"门垛", L"柱帽", L"柱墩"}},
    {L"土建",
     L"几何构件",
     {L"几何梁", L"钢梁", L"几何板", L"几何楼梯", L"钢板", L"几何墙", L"钢柱"}},
    {L"钢筋", L"梁", {L"框架梁", L"次梁", L"圈梁", L"吊筋"}},
    {L"钢筋", L"板", {L"现浇板", L"梯段"}},
    {L"钢筋",
     L"墙",
     {L"剪力墙", L"人防墙", L"砖墙", L"飘窗", L"暗梁", L"连梁", L"人防门槛梁", L"过梁"}},
    {L"钢筋", L"柱", {L"框架柱暗柱", L"自适应暗柱", L"人防柱", L"构造柱", L"门垛", L"柱帽"}},
    {L"钢筋", L"几何构件", {L"钢梁", L"钢板", L"钢柱"}},
    {L"土建", L"门.窗.洞", {L"门", L"窗", L"飘窗", L"墙洞"}},
    {L"土建", L"板.楼梯", {L"板洞"}},
    {L"钢筋", L"墙", {L"洞", L"门洞", L"窗洞", L"飘窗", L"人防门楣梁"}},
    {L"钢筋", L"板", {L"板洞"}},
    {L"Revit", L"墙", {L"墙"}},
    {L"Tekla", L"钢结构", {L"钢柱", L"钢梁", L"钢板", L"螺栓", L"项"}},
    {L"Tekla", L"混凝土", {L"混凝土嵌板"}}};

std::vector<AttCategory> Vocabulary() {
    std::vector<AttCategory> kinds;
    for (const VocabularyRow& row : kVocabulary) {
        for (const wchar_t* xiaolei : row.xiaolei)
            kinds.emplace_back(row.specialty, row.dalei, xiaolei);
    }
    return kinds;
}

std::vector<AttCategory> TreeKinds() {
    std::vector<AttCategory> kinds;
    const auto* tree = KyEntityCategoryMgr::GetInstance();
    for (int i = 0; i < tree->GetSpecNodeCount(); ++i) {
        for (const KyCategoryNode& dalei : tree->GetSpecNode(i)->children) {
            for (const KyCategoryNode& xiaolei : dalei.children)
                kinds.emplace_back(tree->GetSpecNode(i)->name, dalei.name, xiaolei.name);
        }
    }
    return kinds;
}

std::vector<std::wstring> PartsOf(const AttCategory& kind) {
    return {kind.specialty, kind.dalei, kind.xiaolei};
}

std::string PathOf(AttCategory kind) {
    return ifchost::ToUtf8(kind.categoryIndex());
}

std::set<std::wstring> RuledPaths() {
    std::set<std::wstring> paths;
    const RuleFile file = ReadRuleFile(DefaultRulesFile());
    for (const RuledKind& kind : KindsOf(*file.rules->GetRule()))
        paths.insert(kind.path);
    return paths;
}

TEST(ShippedData, FitsThePublishedSchemas) {
    if (!kycbtest::HasXmlLint()) GTEST_SKIP() << kycbtest::kNoXmlLint;
    const std::pair<const char*, const char*> files[] = {
        {"rule.xsd", "data/rules/default.xml"},
        {"priority.xsd", "data/system-root/CollisionData/TypePriorityMap.xml"},
        {"category.xsd", "data/system-root/config/system/productsort.xml"},
        {"result.xsd", "samples/golden/results.xml"}};
    for (const auto& [schema, file] : files) {
        EXPECT_EQ(kycbtest::SchemaErrors(testing::SourcePath(std::string("schemas/") + schema),
                                         testing::SourcePath(file)),
                  "");
    }
}

TEST(ShippedData, TreeHasEveryKindOfTheVocabulary) {
    for (const AttCategory& kind : Vocabulary())
        EXPECT_EQ(WhyNoCategory(PartsOf(kind)), "") << PathOf(kind);
}

TEST(ShippedData, TreeHasEveryKindOfTheDefaultMapping) {
    const auto kinds = ifchost::Classification::Default().Categories();
    EXPECT_GT(kinds.size(), 100U);
    for (const AttCategory& kind : kinds)
        EXPECT_EQ(WhyNoCategory(PartsOf(kind)), "") << PathOf(kind);
}

TEST(ShippedData, PrioritiesListEveryKindOfTheTree) {
    ASSERT_TRUE(AttCategory::InitTypePriorityMap());
    for (AttCategory kind : TreeKinds())
        EXPECT_EQ(AttCategory::s_typePriorityMap.count(kind.categoryIndex()), 1U) << PathOf(kind);
}

TEST(ShippedData, PrioritiesListOnlyKindsOfTheTree) {
    ASSERT_TRUE(AttCategory::InitTypePriorityMap());
    for (const auto& [path, priority] : AttCategory::s_typePriorityMap)
        EXPECT_EQ(WhyNoCategory(PathParts(path)), "") << ifchost::ToUtf8(path);
}

TEST(ShippedData, RulesHaveAnItemForEveryKindOfTheTree) {
    const auto paths = RuledPaths();
    for (AttCategory kind : TreeKinds())
        EXPECT_EQ(paths.count(kind.categoryIndex()), 1U) << PathOf(kind);
}

TEST(ShippedData, RulesGiveNoCauseForRemarks) {
    const RuleFile file = ReadRuleFile(DefaultRulesFile());
    EXPECT_EQ(file.error, "");
    EXPECT_THAT(file.remarks, IsEmpty());
}

}  // namespace
}  // namespace kyclash
