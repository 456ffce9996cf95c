// SPDX-License-Identifier: Apache-2.0
// The data that ships with the command: category tree, priorities and rules know the same kinds.
#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/model/KyCategoryNode.h"
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"

#include <set>
#include <stdexcept>
#include <string>
#include <utility>
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
#include "support/KindTables.h"
#include "support/XmlSchema.h"

namespace kyclash {
namespace {

using kycb::test::KindRow;
using kycb::test::KindTable;
using kycb::test::MinorCategoriesOf;
using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::MODEL::KyCategoryNode;
using KYCOLLISION::MODEL::KyEntityCategoryMgr;
using ::testing::IsEmpty;

// The openings, and kinds of imported models.
const KindTable kOtherKinds = {
    {1, L"土建", L"门.窗.洞", L"门，窗，飘窗，墙洞"},
    {1, L"土建", L"板.楼梯", L"板洞"},
    {1, L"钢筋", L"墙", L"洞，门洞，窗洞，飘窗，人防门楣梁"},
    {1, L"钢筋", L"板", L"板洞"},
    {1, L"Revit", L"墙", L"墙"},
    {1, L"Tekla", L"钢结构", L"钢柱，钢梁，钢板，螺栓，项"},
    {1, L"Tekla", L"混凝土", L"混凝土嵌板"},
};

// The kinds that the library itself has knowledge of.
std::vector<AttCategory> Vocabulary() {
    std::vector<AttCategory> kinds;
    for (const KindTable* table : {&kycb::test::kRuns, &kycb::test::kStructure, &kOtherKinds}) {
        for (const KindRow& row : *table) {
            for (const std::wstring& xiaolei : MinorCategoriesOf(row))
                kinds.emplace_back(row.specialty, row.dalei, xiaolei);
        }
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
    EXPECT_GT(kinds.size(), 100U);
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
    if (!file.rules) throw std::runtime_error(file.error);
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
    EXPECT_GT(AttCategory::s_typePriorityMap.size(), 100U);
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
