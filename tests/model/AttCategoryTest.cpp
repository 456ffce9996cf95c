// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/platform/HostServices.h"

#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "platform/HostileXml.h"
#include "platform/Text.h"
#include "support/KindTables.h"
#include "support/LocaleScope.h"
#include "support/TempFolder.h"

namespace KYCOLLISION::MODEL {
namespace {

using kycb::test::KindRow;
using kycb::test::KindTable;
using kycb::test::kRuns;
using kycb::test::kStructure;
using kycb::test::kWaterPipeRows;
using kycb::test::MinorCategoriesOf;

const KindTable kServiceKinds = {
    {1, L"暖通", L"风管", L"送风管，新风管，回风管，排风管，除尘排烟管，其它风管"},
    {2, L"电气", L"电缆桥架", L"桥架，托盘，组合式桥架"},
    {2, L"弱电", L"线槽桥架", L"线槽，桥架"},
    {3, L"给排水", L"管道", L"污水管，废水管，雨水管"},
    {4, L"给排水", L"管道", L"给水管，中水管，消防管，喷淋管，其它管"},
    {5, L"给排水", L"管道", L"热给水管，热回水管"},
    {4, L"暖通", L"水管", L"冷供水管，冷回水管，冷却水管，凝结水管，其它水管"},
    {5, L"暖通", L"水管", L"热供水管，热回水管"},
    {4, L"消防", L"管网", L"喷淋管，消防管，气体灭火管，泡沫灭火管，其它管"},
};

int Expected(const KindTable& rows, const AttCategory& category) {
    for (const KindRow& row : rows) {
        if (category.specialty != row.specialty || category.dalei != row.dalei) continue;
        for (const std::wstring& name : MinorCategoriesOf(row)) {
            if (name == category.xiaolei) return row.answer;
        }
    }
    return 0;
}

/// Every specialty, major and minor category of the tables, with names that none of them holds.
std::vector<AttCategory> EveryTriple() {
    std::set<std::wstring> specialties = {L"", L"Revit", L"Tekla", L"钢结构", L" 土建", L"土建 "};
    std::set<std::wstring> daleis = {L"", L"门窗", L"管", L"梁 "};
    std::set<std::wstring> xiaoleis = {L"", L"管", L"梁", L"给水管 ", L"框架梁，次梁"};
    for (const auto* rows : {&kRuns, &kStructure, &kServiceKinds}) {
        for (const KindRow& row : *rows) {
            specialties.insert(row.specialty);
            daleis.insert(row.dalei);
            for (const std::wstring& name : MinorCategoriesOf(row))
                xiaoleis.insert(name);
        }
    }
    std::vector<AttCategory> triples;
    for (const auto& s : specialties) {
        for (const auto& d : daleis) {
            for (const auto& x : xiaoleis)
                triples.emplace_back(s, d, x);
        }
    }
    return triples;
}

std::string Name(const AttCategory& category) {
    return kycb::text::ToUtf8(category.specialty + L"|" + category.dalei + L"|" + category.xiaolei);
}

std::wstring Index(const wchar_t* specialty, const wchar_t* dalei, const wchar_t* xiaolei) {
    return AttCategory(specialty, dalei, xiaolei).categoryIndex();
}

TEST(AttCategory, IsEmptyByDefault) {
    const AttCategory category;
    EXPECT_EQ(category.specialty, L"");
    EXPECT_EQ(category.dalei, L"");
    EXPECT_EQ(category.xiaolei, L"");
}

TEST(AttCategory, IsEqualInAllThreeNames) {
    const AttCategory category(L"a", L"b", L"c");
    EXPECT_EQ(category, AttCategory(L"a", L"b", L"c"));
    EXPECT_NE(category, AttCategory(L"x", L"b", L"c"));
    EXPECT_NE(category, AttCategory(L"a", L"x", L"c"));
    EXPECT_NE(category, AttCategory(L"a", L"b", L"x"));
    AttCategory copy;
    copy = category;
    EXPECT_EQ(copy, category);
}

TEST(CategoryIndex, JoinsTheThreeNames) {
    EXPECT_EQ(Index(L"给排水", L"管道", L"给水管"), L"给排水/管道/给水管");
}

TEST(CategoryIndex, EndsWithASeparatorWithoutAMinorCategory) {
    EXPECT_EQ(Index(L"给排水", L"管道", L""), L"给排水/管道/");
    EXPECT_EQ(Index(L"Tekla", L"钢结构", L""), L"Tekla/钢结构/");
}

TEST(CategoryIndex, IsEmptyWithoutSpecialtyOrMajorCategory) {
    EXPECT_EQ(Index(L"", L"管道", L"给水管"), L"");
    EXPECT_EQ(Index(L"给排水", L"", L"给水管"), L"");
    EXPECT_EQ(Index(L"Revit", L"", L"砖墙"), L"");
    EXPECT_EQ(Index(L"Tekla", L"", L"钢柱"), L"");
}

TEST(CategoryIndex, OfRevitEndsAfterTheMajorCategory) {
    EXPECT_EQ(Index(L"Revit", L"墙", L"砖墙"), L"Revit/墙");
}

TEST(CategoryIndex, OfTheFiveTeklaSteelKindsIsSteelStructure) {
    for (const wchar_t* kind : {L"钢柱", L"钢梁", L"钢板", L"螺栓", L"项"}) {
        const std::wstring expected = std::wstring(L"Tekla/钢结构/") + kind;
        EXPECT_EQ(Index(L"Tekla", L"柱", kind), expected);
        EXPECT_EQ(Index(L"Tekla", L"混凝土", kind), expected);
        EXPECT_EQ(Index(L"Tekla", L"钢结构", kind), expected);
    }
}

TEST(CategoryIndex, OfOtherTeklaKindsIsConcreteUnlessTheHostSaysSteel) {
    EXPECT_EQ(Index(L"Tekla", L"板", L"现浇板"), L"Tekla/混凝土/现浇板");
    EXPECT_EQ(Index(L"Tekla", L"混凝土", L"梁"), L"Tekla/混凝土/梁");
    EXPECT_EQ(Index(L"Tekla", L"钢结构", L"支撑"), L"Tekla/钢结构/支撑");
}

TEST(CategoryIndex, ComparesSpecialtiesWithCase) {
    EXPECT_EQ(Index(L"revit", L"墙", L"砖墙"), L"revit/墙/砖墙");
    EXPECT_EQ(Index(L"TEKLA", L"柱", L"钢柱"), L"TEKLA/柱/钢柱");
}

TEST(Families, AnswerAsTheTablesSayForEveryTriple) {
    const KindTable waterPipes(kRuns.begin(), kRuns.begin() + kWaterPipeRows);
    int runs = 0;
    int structures = 0;
    int services = 0;
    for (const AttCategory& category : EveryTriple()) {
        const bool isRun = Expected(kRuns, category) != 0;
        const bool isStructure = Expected(kStructure, category) != 0;
        const int kind = Expected(kServiceKinds, category);
        EXPECT_EQ(category.IsSgFgQj_RP(), isRun) << Name(category);
        EXPECT_EQ(category.IsQzlb_JJP(), isStructure) << Name(category);
        EXPECT_EQ(category.IsFgQjPsLsRs_JJP(), kind) << Name(category);
        EXPECT_EQ(category.IsNeedFiter(), Expected(waterPipes, category) != 0) << Name(category);
        runs += isRun;
        structures += isStructure;
        services += kind != 0;
    }
    EXPECT_EQ(runs, 11 + 8 + 5 + 4 + 7 + 4);
    EXPECT_EQ(structures, 7 + 6 + 8 + 8 + 7 + 4 + 2 + 8 + 6 + 3);
    EXPECT_EQ(services, 6 + 3 + 2 + 3 + 5 + 2 + 5 + 2 + 5);
}

TEST(IsSgFgQj, HoldsFlexibleDuctsThatHaveNoClearanceKind) {
    const AttCategory duct(L"暖通", L"风管", L"柔性风管");
    EXPECT_TRUE(duct.IsSgFgQj_RP());
    EXPECT_EQ(duct.IsFgQjPsLsRs_JJP(), 0);
}

TEST(IsSgFgQj, HoldsPipeNamesUnderLowVoltageTrunking) {
    const AttCategory pipe(L"弱电", L"线槽桥架", L"泡沫灭火管");
    EXPECT_TRUE(pipe.IsSgFgQj_RP());
    EXPECT_EQ(pipe.IsFgQjPsLsRs_JJP(), 0);
}

TEST(IsFgQjPsLsRs, TellsPipesByTheirWater) {
    EXPECT_EQ(AttCategory(L"给排水", L"管道", L"热回水管").IsFgQjPsLsRs_JJP(), 5);
    EXPECT_EQ(AttCategory(L"给排水", L"管道", L"雨水管").IsFgQjPsLsRs_JJP(), 3);
    EXPECT_EQ(AttCategory(L"暖通", L"水管", L"其它水管").IsFgQjPsLsRs_JJP(), 4);
}

TEST(IsQzlb, TellsTheSlabsOfTheTwoSpecialtiesApart) {
    EXPECT_TRUE(AttCategory(L"土建", L"梁", L"窗台").IsQzlb_JJP());
    EXPECT_FALSE(AttCategory(L"钢筋", L"板", L"预制板").IsQzlb_JJP());
    EXPECT_FALSE(AttCategory(L"土建", L"板", L"现浇板").IsQzlb_JJP());
}

/// A system root of its own, an empty priority map, and a record of the messages shown.
class PriorityTest : public testing::Test {
  protected:
    PriorityTest() {
        BASETOOLS::SetSysRoot(folder_.File(""));
        BASEUI::SetMessageBox([this](const std::wstring& text, unsigned int style) {
            messages_.push_back(text);
            styles_.push_back(style);
        });
        AttCategory::s_typePriorityMap.clear();
    }
    ~PriorityTest() override {
        BASETOOLS::SetSysRoot(L"");
        BASEUI::SetMessageBox({});
        AttCategory::s_typePriorityMap.clear();
    }

    void WriteFile(const std::string& bytes) const {
        folder_.Write("CollisionData/TypePriorityMap.xml", bytes);
    }

    static int PriorityOfSupplyPipe() {
        return AttCategory(L"给排水", L"管道", L"给水管").GetAttPriority();
    }

    kycbtest::TempFolder folder_;
    std::vector<std::wstring> messages_;
    std::vector<unsigned int> styles_;
};

using PriorityMap = std::map<std::wstring, int>;

TEST_F(PriorityTest, ComesFromTheFileWhateverItsElementsAreCalled) {
    WriteFile(
        "<any><g1><e att=\"给排水/管道/给水管\" priority=\"7\"/></g1>"
        "<g2><x att=\"Revit/墙\" priority=\"-3\"/></g2></any>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 7);
    EXPECT_EQ(AttCategory(L"Revit", L"墙", L"砖墙").GetAttPriority(), -3);
    EXPECT_TRUE(messages_.empty());
}

TEST_F(PriorityTest, IsTheSameForAllUnlistedKinds) {
    WriteFile("<r><g><e att=\"a/b/c\" priority=\"1\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 1000);
    EXPECT_EQ(AttCategory().GetAttPriority(), 1000);
}

TEST_F(PriorityTest, OfALaterEntryReplacesAnEarlierOne) {
    WriteFile(
        "<r><g><e att=\"给排水/管道/给水管\" priority=\"1\"/></g>"
        "<g><e att=\"给排水/管道/给水管\" priority=\"2\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 2);
}

TEST_F(PriorityTest, ReadsItsNumberAsTheLeadingDigits) {
    WriteFile(
        "<r><g><e att=\"a\" priority=\"abc\"/><e att=\"b\" priority=\" 12x\"/>"
        "<e att=\"c\" priority=\"99999999999\"/></g></r>");
    ASSERT_TRUE(AttCategory::InitTypePriorityMap());
    const PriorityMap expected = {{L"a", 0}, {L"b", 12}, {L"c", 2147483647}};
    EXPECT_EQ(AttCategory::s_typePriorityMap, expected);
}

TEST_F(PriorityTest, StaysLoadedForTheLifeOfTheProcess) {
    WriteFile("<r><g><e att=\"给排水/管道/给水管\" priority=\"1\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 1);
    WriteFile("<r><g><e att=\"给排水/管道/给水管\" priority=\"2\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 1);
    EXPECT_TRUE(AttCategory::InitTypePriorityMap());
    EXPECT_EQ(PriorityOfSupplyPipe(), 2);
}

TEST_F(PriorityTest, IsUnlistedWithAMessageOnEveryQueryWithoutAFile) {
    EXPECT_FALSE(AttCategory::InitTypePriorityMap());
    EXPECT_EQ(PriorityOfSupplyPipe(), 1000);
    EXPECT_EQ(PriorityOfSupplyPipe(), 1000);
    EXPECT_EQ(messages_, std::vector<std::wstring>(2, L"属性优先级文件错误"));
    EXPECT_EQ(styles_, std::vector<unsigned int>(2, 0));
}

TEST_F(PriorityTest, IsUnlistedWithAMessageWhenTheFileIsNoXml) {
    for (const char* bytes : {"", "<r>", "text", "<r><g></r>"}) {
        WriteFile(bytes);
        messages_.clear();
        EXPECT_EQ(PriorityOfSupplyPipe(), 1000) << bytes;
        EXPECT_EQ(messages_.size(), 1u) << bytes;
    }
}

TEST_F(PriorityTest, IsUnlistedWithAMessageWhenTheFileIsHostile) {
    for (const kycbtest::HostileXml& hostile : kycbtest::HostileXmlCorpus()) {
        WriteFile(hostile.bytes);
        messages_.clear();
        EXPECT_EQ(PriorityOfSupplyPipe(), 1000) << hostile.name;
        EXPECT_EQ(messages_.size(), 1u) << hostile.name;
        EXPECT_TRUE(AttCategory::s_typePriorityMap.empty()) << hostile.name;
    }
}

TEST_F(PriorityTest, TakesTheSecondLevelBelowTheRootOfAFileNestedWithoutEnd) {
    // Its elements have no attributes, so the first one on that level is a broken entry.
    WriteFile(kycbtest::NestedXml(100000));
    EXPECT_FALSE(AttCategory::InitTypePriorityMap());
    EXPECT_TRUE(AttCategory::s_typePriorityMap.empty());
}

TEST_F(PriorityTest, IsReadFromAFileWithAnAttributeOf100Megabytes) {
    WriteFile("<r><g><e att=\"给排水/管道/给水管\" priority=\"3\" note=\"" +
              std::string(std::size_t{100} << 20, 'x') + "\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 3);
}

TEST_F(PriorityTest, KeepsWhatStandsBeforeABrokenEntry) {
    for (const char* broken : {"<e att=\"\" priority=\"1\"/>", "<e att=\"x\" priority=\"\"/>",
                               "<e priority=\"1\"/>", "<e att=\"x\"/>"}) {
        AttCategory::s_typePriorityMap.clear();
        messages_.clear();
        WriteFile(std::string("<r><g><e att=\"给排水/管道/给水管\" priority=\"1\"/>") + broken +
                  "<e att=\"after\" priority=\"2\"/></g>"
                  "<g><e att=\"later\" priority=\"3\"/></g></r>");
        EXPECT_EQ(PriorityOfSupplyPipe(), 1);
        EXPECT_EQ(PriorityOfSupplyPipe(), 1);
        EXPECT_EQ(AttCategory::s_typePriorityMap, PriorityMap({{L"给排水/管道/给水管", 1}}));
        EXPECT_EQ(messages_.size(), 1u) << "no reload once the map holds something";
        EXPECT_FALSE(AttCategory::InitTypePriorityMap());
    }
}

TEST_F(PriorityTest, LoadsAnEmptyFileAgainOnEveryQuerySilently) {
    WriteFile("<r/>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 1000);
    EXPECT_TRUE(messages_.empty());
    WriteFile("<r><g><e att=\"给排水/管道/给水管\" priority=\"4\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 4);
}

TEST_F(PriorityTest, EndsALevelAtAComment) {
    WriteFile(
        "<r><g><e att=\"a\" priority=\"1\"/><!-- c --><e att=\"b\" priority=\"2\"/></g>"
        "<g><e att=\"c\" priority=\"3\"/></g><!-- c --><g><e att=\"d\" priority=\"4\"/></g></r>");
    EXPECT_TRUE(AttCategory::InitTypePriorityMap());
    EXPECT_EQ(AttCategory::s_typePriorityMap, PriorityMap({{L"a", 1}, {L"c", 3}}));
}

TEST_F(PriorityTest, ClearsTheMapBeforeLoading) {
    AttCategory::s_typePriorityMap = {{L"old", 1}};
    EXPECT_FALSE(AttCategory::InitTypePriorityMap());
    EXPECT_TRUE(AttCategory::s_typePriorityMap.empty());
}

TEST_F(PriorityTest, DoesNotDependOnTheProcessLocale) {
    const kycbtest::LocaleScope locale("zh_CN");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    WriteFile("<r><g><e att=\"给排水/管道/给水管\" priority=\"1000000\"/></g></r>");
    EXPECT_EQ(PriorityOfSupplyPipe(), 1000000);
}

}  // namespace
}  // namespace KYCOLLISION::MODEL
