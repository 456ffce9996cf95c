// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/CXMLTreeCreator.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <filesystem>
#include <memory>

#include <gmock/gmock.h>

#include "platform/HostileXml.h"
#include "platform/Text.h"
#include "rule/CountedFilter.h"
#include "support/ChildProcess.h"
#include "support/LocaleScope.h"
#include "support/TempFolder.h"

namespace KYCOLLISION::Rule {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* kSupply = L"给排水/管道/给水管";

/// A rule set of one valid supply pipe item with the given content.
std::wstring WithItem(const std::wstring& content) {
    return L"<CollisionRule><Specialty name=\"给排水\"><RuleItem gjtype=\"给排水/管道/给水管\" "
           L"isvalid=\"true\">" +
           content + L"</RuleItem></Specialty></CollisionRule>";
}

/// Reads such a rule set and gives its item; the manager keeps it alive.
const KyCollisionRuleItem* ReadItem(KyCollisionRuleMgr& manager, const std::wstring& content) {
    EXPECT_TRUE(manager.InitByXmlString(WithItem(content)));
    const KyCollisionRuleItem* item = manager.GetRuleItem(kSupply);
    EXPECT_NE(item, nullptr);
    return item;
}

bool IsValidWith(const std::wstring& attributes) {
    KyCollisionRuleMgr manager;
    EXPECT_TRUE(manager.InitByXmlString(
        L"<CollisionRule><Specialty name=\"给排水\"><RuleItem gjtype=\"给排水/管道/给水管\" " +
        attributes + L"/></Specialty></CollisionRule>"));
    return manager.GetRuleItem(kSupply) != nullptr;
}

TEST(KyCollisionRuleMgr, HoldsNoRuleSetAtFirst) {
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr manager;
    EXPECT_EQ(manager.GetRule(), nullptr);
    EXPECT_EQ(manager.GetRuleItem(kSupply), nullptr);
    EXPECT_FALSE(manager.SaveToXMLFile(folder.File("rules.xml")));
    EXPECT_EQ(folder.CountFiles(), 0u);
}

TEST(KyCollisionRuleMgr, ReadsItemsOfEachSpecialty) {
    KyCollisionRuleMgr manager;
    ASSERT_TRUE(manager.InitByXmlString(
        L"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CollisionRule>\n"
        L" <Specialty name=\"给排水\">\n"
        L"  <RuleItem gjtype=\"给排水/管道/给水管\" isvalid=\"true\"/>\n"
        L"  <AnyTag gjtype=\"给排水/管道/污水管\" isvalid=\"false\"/>\n"
        L" </Specialty>\n"
        L" <!-- a comment -->\n"
        L" <Specialty name=\"Revit\"><RuleItem gjtype=\"Revit/墙\" isvalid=\"true\"/></Specialty>\n"
        L"</CollisionRule>"));
    const KyCollisionRule& rule = *manager.GetRule();
    EXPECT_THAT(rule.GetSpecArray(), ElementsAre(L"给排水", L"Revit"));
    EXPECT_EQ(manager.GetRuleItem(kSupply)->GetSpecName(), L"给排水");
    EXPECT_EQ(manager.GetRuleItem(kSupply)->GetOwnerRule(), &rule);
    EXPECT_NE(manager.GetRuleItem(L"Revit/墙"), nullptr);
    EXPECT_EQ(manager.GetRuleItem(L"给排水/管道/污水管"), nullptr);
    EXPECT_EQ(rule.GetInValidRuleItemArray(L"给排水")->size(), 1u);
    EXPECT_EQ(rule.GetGUID(), L"");
    EXPECT_EQ(rule.GetRuleName(), L"");
    EXPECT_EQ(rule.GetRuleType(), 1);
}

TEST(KyCollisionRuleMgr, TakesTheSpecialtyNameAsItStands) {
    KyCollisionRuleMgr manager;
    ASSERT_TRUE(manager.InitByXmlString(
        L"<CollisionRule><Specialty name=\"x\"><RuleItem gjtype=\"给排水/管道/给水管\" "
        L"isvalid=\"true\"/></Specialty></CollisionRule>"));
    EXPECT_EQ(manager.GetRuleItem(kSupply)->GetSpecName(), L"x");
    EXPECT_THAT(manager.GetRule()->GetSpecArray(), ElementsAre(L"给排水"));
}

TEST(KyCollisionRuleMgr, ReadsValidityWithoutRegardToCase) {
    EXPECT_TRUE(IsValidWith(L"isvalid=\"true\""));
    EXPECT_TRUE(IsValidWith(L"isvalid=\"TRUE\""));
    EXPECT_FALSE(IsValidWith(L"isvalid=\"false\""));
    EXPECT_FALSE(IsValidWith(L"isvalid=\"1\""));
    EXPECT_FALSE(IsValidWith(L"isvalid=\" true\""));
    EXPECT_FALSE(IsValidWith(L""));
}

TEST(KyCollisionRuleMgr, LeavesAnItemWithoutChildrenAtItsDefaults) {
    KyCollisionRuleMgr manager;
    const KyCollisionRuleItem* item = ReadItem(manager, L"");
    EXPECT_EQ(item->GetFilter(), nullptr);
    EXPECT_EQ(item->GetMode()->GetModeType(), 0);
    EXPECT_EQ(item->GetMode()->GetTolerance(), 0);
    EXPECT_THAT(item->GetExcludeSpecArray(), IsEmpty());
}

TEST(KyCollisionRuleMgr, ReadsTheFilterOfTypeOneOnly) {
    KyCollisionRuleMgr manager;
    EXPECT_EQ(ReadItem(manager, L"<Filter type=\"1\">DN&gt;=100</Filter>")->GetFilter()->ToString(),
              L"DN>=100");
    for (const wchar_t* type : {L"0", L"2", L"-1", L"abc", L""}) {
        const std::wstring filter = std::wstring(L"<Filter type=\"") + type + L"\">DN=1</Filter>";
        EXPECT_EQ(ReadItem(manager, filter)->GetFilter(), nullptr) << type;
    }
    EXPECT_EQ(ReadItem(manager, L"<Filter>DN=1</Filter>")->GetFilter(), nullptr);
}

TEST(KyCollisionRuleMgr, ReadsTheToleranceOfModeTwoOnly) {
    KyCollisionRuleMgr manager;
    const KyCollisionMode* mode = ReadItem(manager, L"<Mode type=\"2\">150</Mode>")->GetMode();
    EXPECT_EQ(mode->GetModeType(), 2);
    EXPECT_EQ(mode->GetTolerance(), 150);
    KyCollisionMode other = *ReadItem(manager, L"<Mode type=\"1\">150</Mode>")->GetMode();
    EXPECT_EQ(other.GetModeType(), 1);
    EXPECT_EQ(other.GetTolerance(), 0);
    other.SetModeType(eModeTolerance);
    EXPECT_EQ(other.GetTolerance(), 0) << "it was not even stored";
    EXPECT_EQ(ReadItem(manager, L"<Mode type=\"2\">x</Mode>")->GetMode()->GetTolerance(), 0);
    EXPECT_EQ(ReadItem(manager, L"<Mode type=\"-5\"/>")->GetMode()->GetModeType(), -5);
    EXPECT_EQ(ReadItem(manager, L"<Mode type=\"x\"/>")->GetMode()->GetModeType(), 0);
}

TEST(KyCollisionRuleMgr, ReadsExclusionsOfOneToThreeParts) {
    KyCollisionRuleMgr manager;
    const KyCollisionRuleItem* item =
        ReadItem(manager,
                 L"<Excludes><ExcludeGJ>电气</ExcludeGJ><AnyTag>土建/墙</AnyTag>"
                 L"<ExcludeGJ>土建/墙/砖内墙</ExcludeGJ><ExcludeGJ>a/b/c/d</ExcludeGJ><ExcludeGJ/>"
                 L"<ExcludeGJ>给排水/管道/</ExcludeGJ></Excludes>");
    EXPECT_THAT(item->GetExcludeSpecArray(), ElementsAre(L"电气", L"土建", L"给排水"));
    EXPECT_THAT(*item->GetExcludeItemArray(L"电气"),
                ElementsAre(KyExcludeItem{0, L"电气", {}, {}}));
    EXPECT_THAT(*item->GetExcludeItemArray(L"土建"),
                ElementsAre(KyExcludeItem{1, L"土建", L"墙", {}},
                            KyExcludeItem{2, L"土建", L"墙", L"砖内墙"}));
    EXPECT_EQ(item->GetExcludeItemArray(L"给排水")->front().level, 1) << "an empty last part";
    EXPECT_EQ(item->GetExcludeItemArray(L"a"), nullptr);
    EXPECT_FALSE(item->IsCollisionWith(L"电气/电缆桥架/桥架"));
}

TEST(KyCollisionRuleMgr, ReadsThePartsOfAnItemInAnyOrderAndTheLastOfEachKind) {
    KyCollisionRuleMgr manager;
    const KyCollisionRuleItem* item = ReadItem(
        manager,
        L"<Excludes><E>电气</E></Excludes><Mode type=\"2\">1</Mode><filter type=\"1\">a=1</filter>"
        L"<Filter type=\"1\">b=1</Filter><Mode type=\"2\">2</Mode><Filter type=\"1\">c=1</Filter>"
        L"<Unknown><Filter type=\"1\">d=1</Filter></Unknown><Excludes><E>土建</E></Excludes>");
    EXPECT_EQ(item->GetFilter()->ToString(), L"c=1");
    EXPECT_EQ(item->GetMode()->GetTolerance(), 2);
    EXPECT_THAT(item->GetExcludeSpecArray(), ElementsAre(L"电气", L"土建"));
}

TEST(KyCollisionRuleMgr, LetsALaterFilterOfTypeZeroReplaceAnEarlierOne) {
    KyCollisionRuleMgr manager;
    const wchar_t* filters = L"<Filter type=\"1\">a=1</Filter><Filter type=\"0\"/>";
    EXPECT_EQ(ReadItem(manager, filters)->GetFilter(), nullptr);
    const wchar_t* modes = L"<Mode type=\"2\">7</Mode><Mode type=\"1\">8</Mode>";
    EXPECT_EQ(ReadItem(manager, modes)->GetMode()->GetModeType(), 1);
}

TEST(KyCollisionRuleMgr, DoesNotListASpecialtyWithoutItems) {
    KyCollisionRuleMgr manager;
    ASSERT_TRUE(manager.InitByXmlString(
        L"<CollisionRule><Specialty name=\"给排水\"/><Specialty/></CollisionRule>"));
    EXPECT_THAT(manager.GetRule()->GetSpecArray(), IsEmpty());
}

TEST(KyCollisionRuleMgr, ReadsTheRootsChildrenByPosition) {
    KyCollisionRuleMgr manager;
    const std::wstring specialty =
        L"<Specialty name=\"给排水\"><RuleItem gjtype=\"给排水/管道/给水管\" isvalid=\"true\"/>"
        L"</Specialty>";
    ASSERT_TRUE(
        manager.InitByXmlString(L"<CollisionRule><Other/>" + specialty + L"</CollisionRule>"));
    EXPECT_EQ(manager.GetRuleItem(kSupply), nullptr) << "the one child read is the other one";
    ASSERT_TRUE(
        manager.InitByXmlString(L"<CollisionRule>" + specialty + L"<Other/></CollisionRule>"));
    EXPECT_NE(manager.GetRuleItem(kSupply), nullptr);
}

TEST(KyCollisionRuleMgr, KeepsTheOldRuleSetWhenAnItemIsMalformed) {
    KyCollisionRuleMgr manager;
    ReadItem(manager, L"");
    const KyCollisionRule* before = manager.GetRule();
    for (const wchar_t* path : {L"", L"给排水", L"给排水/管道", L"a/b/c/d"}) {
        EXPECT_FALSE(manager.InitByXmlString(
            std::wstring(L"<CollisionRule><Specialty name=\"电气\">"
                         L"<RuleItem gjtype=\"电气/电缆桥架/桥架\" isvalid=\"true\"/>"
                         L"<RuleItem gjtype=\"") +
            path +
            L"\"/><RuleItem gjtype=\"电气/电缆桥架/托盘\" isvalid=\"true\"/>"
            L"</Specialty></CollisionRule>"));
        EXPECT_EQ(manager.GetRule(), before);
    }
    EXPECT_FALSE(manager.InitByXmlString(
        L"<CollisionRule><Specialty name=\"a\"><RuleItem/></Specialty></CollisionRule>"));
    EXPECT_NE(manager.GetRuleItem(kSupply), nullptr);
}

TEST(KyCollisionRuleMgr, KeepsTheOldRuleSetWhenTheDocumentCannotBeRead) {
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr manager;
    ReadItem(manager, L"");
    const KyCollisionRule* before = manager.GetRule();
    EXPECT_FALSE(manager.InitByXmlString(L""));
    EXPECT_FALSE(manager.InitByXmlString(L"<CollisionRule>"));
    EXPECT_FALSE(manager.InitByXmlString(L"<collisionrule/>"));
    EXPECT_FALSE(manager.InitByXmlPath(folder.File("none.xml")));
    for (const kycbtest::HostileXml& hostile : kycbtest::HostileXmlCorpus()) {
        EXPECT_FALSE(manager.InitByXmlPath(folder.Write("in.xml", hostile.bytes))) << hostile.name;
    }
    EXPECT_EQ(manager.GetRule(), before);
}

TEST(KyCollisionRuleMgr, ReadsDeepNestingWithoutRecursion) {
    const kycbtest::TempFolder folder;
    const std::string nested = kycbtest::NestedXml(100000);
    KyCollisionRuleMgr manager;
    EXPECT_FALSE(manager.InitByXmlPath(folder.Write("in.xml", nested))) << "another root";
    EXPECT_TRUE(manager.InitByXmlPath(
        folder.Write("in.xml", "<CollisionRule>" + nested + "</CollisionRule>")));
    EXPECT_THAT(manager.GetRule()->GetSpecArray(), IsEmpty());
}

TEST(KyCollisionRuleMgr, FailsToReadButNotToSaveWithoutAnXmlTree) {
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr manager;
    ReadItem(manager, L"");
    CXMLTreeCreator::SetAllocator([]() -> IXMLTree* { return nullptr; });
    EXPECT_FALSE(manager.InitByXmlString(WithItem(L"")));
    EXPECT_FALSE(manager.InitByXmlPath(folder.Write("in.xml", "<CollisionRule/>")));
    EXPECT_TRUE(manager.SaveToXMLFile(folder.File("out.xml"))) << "although nothing is written";
    CXMLTreeCreator::SetAllocator({});
    EXPECT_FALSE(std::filesystem::exists(folder.Path() / "out.xml"));
}

TEST(KyCollisionRuleMgr, WritesEveryPartOfARuleSet) {
    const kycbtest::TempFolder folder;
    auto* rule = new KyCollisionRule;
    rule->AddRuleItem(L"给排水/管道/污水管", false);
    rule->AddRuleItem(kSupply, true);
    KyCollisionRuleMgr manager;
    manager.SetRule(rule, true);
    auto* item = const_cast<KyCollisionRuleItem*>(manager.GetRuleItem(kSupply));
    item->GetMode()->InitParams(eModeTolerance, L"150");
    KyCollisionRuleMgr filters;
    item->SetFilter(
        ReadItem(filters, L"<Filter type=\"1\">DN(mm)&lt;50</Filter>")->GetFilter()->Clone());
    item->AddExcludeItem(L"土建", KyExcludeItem{2, L"土建", L"墙", L"砖内墙"});
    item->AddExcludeItem(L"土建", KyExcludeItem{1, L"土建", L"柱", {}});
    item->AddExcludeItem(L"电气", KyExcludeItem{0, L"电气", {}, {}});
    item->AddExcludeItem(L"电气", KyExcludeItem{3, L"电气", L"a", L"b"});
    item->AddExcludeItem(L"unknown", KyExcludeItem{0, L"unknown", {}, {}});

    ASSERT_TRUE(manager.SaveToXMLFile(folder.File("rules.xml")));
    EXPECT_EQ(folder.Read("rules.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<CollisionRule>\n"
              "<Specialty name=\"给排水\">\n"
              "<RuleItem gjtype=\"给排水/管道/给水管\" isvalid=\"true\">\n"
              "<Filter type=\"1\">DN(mm)&lt;50</Filter>\n"
              "<Mode type=\"2\">150</Mode>\n"
              "<Excludes>\n"
              "<ExcludeGJ>电气</ExcludeGJ>\n"
              "<ExcludeGJ>土建/墙/砖内墙</ExcludeGJ>\n"
              "<ExcludeGJ>土建/柱</ExcludeGJ>\n"
              "</Excludes>\n"
              "</RuleItem>\n"
              "<RuleItem gjtype=\"给排水/管道/污水管\" isvalid=\"false\">\n"
              "<Filter type=\"0\" />\n"
              "<Mode type=\"0\">0</Mode>\n"
              "<Excludes />\n"
              "</RuleItem>\n"
              "</Specialty>\n"
              "</CollisionRule>\n");
}

TEST(KyCollisionRuleMgr, WritesTheToleranceOfOtherModesAsZero) {
    const kycbtest::TempFolder folder;
    auto* rule = new KyCollisionRule;
    rule->AddRuleItem(kSupply, true);
    KyCollisionRuleMgr manager;
    manager.SetRule(rule, true);
    const_cast<KyCollisionRuleItem*>(manager.GetRuleItem(kSupply))
        ->GetMode()
        ->InitParams(eModeClearance, L"300");
    ASSERT_TRUE(manager.SaveToXMLFile(folder.File("rules.xml")));
    EXPECT_THAT(folder.Read("rules.xml"), testing::HasSubstr("<Mode type=\"1\">0</Mode>"));
}

TEST(KyCollisionRuleMgr, ReadsBackAnEqualRuleSet) {
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr written;
    ASSERT_TRUE(written.InitByXmlString(
        L"<CollisionRule><Specialty name=\"暖通\">"
        L"<RuleItem gjtype=\"暖通/风管/&lt;&quot;&amp;&#10;&#x1F600;\" isvalid=\"true\">"
        L"<Filter type=\"1\">a&amp;b&#13;&#10;c&#13;&lt;=5</Filter><Mode type=\"2\">-3</Mode>"
        L"<Excludes><E>土建/&lt;x&gt;/y&#13;</E><E>Revit/墙</E></Excludes></RuleItem>"
        L"<RuleItem gjtype=\"暖通/风管/b\"><Mode type=\"77\"/></RuleItem></Specialty>"
        L"<Specialty name=\"tekla\"><RuleItem gjtype=\"tekla/板\" isvalid=\"true\"/></Specialty>"
        L"</CollisionRule>"));
    ASSERT_TRUE(written.SaveToXMLFile(folder.File("rules.xml")));
    KyCollisionRuleMgr read;
    ASSERT_TRUE(read.InitByXmlPath(folder.File("rules.xml")));
    EXPECT_TRUE(read.GetRule()->Equal(*written.GetRule()));
    EXPECT_EQ(read.GetRuleItem(L"暖通/风管/<\"&\n\U0001F600")->GetFilter()->ToString(),
              L"a&b\r\nc\r<=5");
    const auto* before = written.GetRule()->GetInValidRuleItemArray(L"暖通");
    const auto* after = read.GetRule()->GetInValidRuleItemArray(L"暖通");
    ASSERT_EQ(after->size(), 1u);
    EXPECT_TRUE(after->front()->Equal(*before->front()));
    EXPECT_EQ(read.GetRule()->GetSpecArray(), written.GetRule()->GetSpecArray());
}

TEST(KyCollisionRuleMgr, WritesAnEmptyRuleSetThatReplacesTheOneHeld) {
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr manager;
    manager.SetRule(new KyCollisionRule, true);
    ASSERT_TRUE(manager.SaveToXMLFile(folder.File("rules.xml")));
    EXPECT_EQ(folder.Read("rules.xml"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CollisionRule />\n");
    ReadItem(manager, L"");
    ASSERT_TRUE(manager.InitByXmlPath(folder.File("rules.xml")));
    EXPECT_EQ(manager.GetRuleItem(kSupply), nullptr);
    EXPECT_THAT(manager.GetRule()->GetSpecArray(), IsEmpty());
}

/// Gives the manager a rule set of that many items.
void Fill(KyCollisionRuleMgr& manager, int items) {
    auto rules = std::make_unique<KyCollisionRule>();
    for (int i = 0; i < items; ++i)
        rules->AddRuleItem(L"给排水/管道/" + std::to_wstring(i), true);
    manager.SetRule(rules.release(), true);
}

TEST(KyCollisionRuleMgr, TellsThatItCannotSave) {
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr manager;
    Fill(manager, 1);
    EXPECT_FALSE(manager.SaveToXMLFile(folder.File("none/rules.xml")));
    EXPECT_FALSE(manager.SaveToXMLFile(L""));
}

TEST(KyCollisionRuleMgr, LeavesTheOldFileWhenTheDiskIsFull) {
    const kycbtest::TempFolder folder;
    const std::wstring path = folder.Write("rules.xml", "old");
    KyCollisionRuleMgr manager;
    Fill(manager, 300);
    const int saved =
        kycbtest::InChildOnFullDisk(1000, [&] { return manager.SaveToXMLFile(path) ? 1 : 0; });
    EXPECT_EQ(saved, 0);
    EXPECT_EQ(folder.Read("rules.xml"), "old");
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(KyCollisionRuleMgr, LeavesAWholeFileWheneverASavingProcessIsKilled) {
    using kycbtest::Saved;
    const kycbtest::TempFolder folder;
    const std::wstring path = folder.File("rules.xml");
    KyCollisionRuleMgr small;
    KyCollisionRuleMgr large;
    Fill(small, 20);
    Fill(large, 300);
    ASSERT_TRUE(small.SaveToXMLFile(path));
    const std::string smallBytes = folder.Read("rules.xml");
    ASSERT_TRUE(large.SaveToXMLFile(path));
    const std::string largeBytes = folder.Read("rules.xml");
    const auto save = [&](Saved content) {
        return (content == Saved::kSmall ? small : large).SaveToXMLFile(path);
    };
    const auto found = [&] {
        return kycbtest::WhichOf(folder.Read("rules.xml"), smallBytes, largeBytes);
    };
    kycbtest::ExpectWholeWheneverKilled(save, found);
    EXPECT_EQ(folder.CountFiles(), 1u);
}

TEST(KyCollisionRuleMgr, ReadsPathsWithBackslashes) {
    const kycbtest::TempFolder folder;
    folder.Write("sub/rules.xml", "<CollisionRule/>");
    KyCollisionRuleMgr manager;
    EXPECT_TRUE(manager.InitByXmlPath(folder.File("sub") + L"\\rules.xml"));
}

TEST(SetRule, DestroysTheOldOneWhenToldTo) {
    KyCollisionRuleMgr manager;
    auto* item = new KyCollisionRuleItem;
    item->SetSpecName(L"给排水");
    item->SetAttName(kSupply);
    item->SetFilter(new CountedFilter);
    auto* first = new KyCollisionRule;
    EXPECT_TRUE(first->AddRuleItem(item, true));
    manager.SetRule(first, true);
    EXPECT_EQ(CountedFilter::alive, 1);
    auto* second = new KyCollisionRule;
    manager.SetRule(second, true);
    EXPECT_EQ(CountedFilter::alive, 0);
    EXPECT_EQ(manager.GetRule(), second);
    manager.SetRule(nullptr, true);
    EXPECT_EQ(manager.GetRule(), nullptr);
}

TEST(SetRule, HandsTheOldOneBackOtherwise) {
    const auto rule = std::make_unique<KyCollisionRule>();
    rule->AddRuleItem(kSupply, true);
    {
        KyCollisionRuleMgr manager;
        manager.SetRule(rule.get(), true);
        manager.SetRule(new KyCollisionRule, false);
    }
    EXPECT_NE(rule->QueryRuleItem(kSupply), nullptr);
}

TEST(SetRule, DoesNothingForTheOneThatIsHeld) {
    auto* rule = new KyCollisionRule;
    rule->AddRuleItem(kSupply, true);
    KyCollisionRuleMgr manager;
    manager.SetRule(rule, true);
    manager.SetRule(rule, true);
    manager.SetRule(rule, false);
    EXPECT_NE(manager.GetRuleItem(kSupply), nullptr);
}

TEST(KyCollisionRuleMgr, SharesItsRuleSetWithCopies) {
    KyCollisionRuleMgr assigned;
    {
        KyCollisionRuleMgr manager;
        ReadItem(manager, L"");
        const KyCollisionRuleMgr copy(manager);
        EXPECT_EQ(copy.GetRule(), manager.GetRule());
        assigned = manager;
    }
    EXPECT_NE(assigned.GetRuleItem(kSupply), nullptr) << "the last one destroys it";
}

TEST(KyCollisionRuleMgr, DoesNotDependOnTheProcessLocale) {
    const kycbtest::LocaleScope locale("de_DE");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    const kycbtest::TempFolder folder;
    KyCollisionRuleMgr manager;
    ReadItem(manager, L"<Mode type=\"2\">1000000</Mode>");
    ASSERT_TRUE(manager.SaveToXMLFile(folder.File("rules.xml")));
    EXPECT_THAT(folder.Read("rules.xml"), testing::HasSubstr(">1000000<"));
}

}  // namespace
}  // namespace KYCOLLISION::Rule
