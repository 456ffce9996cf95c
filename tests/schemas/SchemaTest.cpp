// SPDX-License-Identifier: Apache-2.0
// What the library writes, and what it is meant to read, fits the published schemas.
#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <filesystem>
#include <memory>

#include <gtest/gtest.h>

#include "support/TempFolder.h"
#include "support/XmlSchema.h"

using kycbtest::TempFolder;
using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;
using KYCOLLISION::Rule::KyCollisionRuleMgr;

namespace {

constexpr const char* kCategories =
    "<root><zhuanye name=\"土建\"><dalei name=\"墙\"><xiaolei name=\"砼外墙\"/></dalei></zhuanye>"
    "<zhuanye name=\"给排水\"/></root>";

constexpr const char* kPriorities =
    "<TypePriorityMap><Group name=\"structure\"><Type att=\"土建/墙/砼外墙\" priority=\"10\"/>"
    "<Type att=\"Revit/墙\" priority=\"-1\"/></Group></TypePriorityMap>";

enum class Verdict { kFits, kDoesNotFit };

class SchemaTest : public testing::Test {
  protected:
    void SetUp() override {
        if (!kycbtest::HasXmlLint()) GTEST_SKIP() << kycbtest::kNoXmlLint;
    }

    Verdict Check(const std::string& schema, const std::string& fileName) {
        messages_ = kycbtest::SchemaErrors(std::filesystem::path(KYCB_SCHEMA_DIR) / schema,
                                           folder_.Path() / fileName);
        return messages_.empty() ? Verdict::kFits : Verdict::kDoesNotFit;
    }
    Verdict CheckText(const std::string& schema, const std::string& text) {
        folder_.Write("checked.xml", text);
        return Check(schema, "checked.xml");
    }
    const std::string& Messages() const { return messages_; }

    TempFolder folder_;

  private:
    std::string messages_;
};

void AddItem(KyWorksetResultData& results, int project, const std::wstring& text) {
    auto item = std::make_unique<KyResultItem>();
    item->InitResultId(L"");
    item->SetBaseInfo(project, text, text, -1, text, text, text);
    item->SetDisposeState(-2147483647 - 1);
    item->SetRemark(text);
    item->SetPicture(text, text, 9'223'372'036'854'775'807);
    item->SetObjAttInfo_Main({text, text, text, text, text});
    item->SetObjAttInfo_Second({text, text, text, text, text});
    results.AppendResultItem(item.release());
}

}  // namespace

TEST_F(SchemaTest, WrittenResultsFitTheResultSchema) {
    const auto results = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    ASSERT_TRUE(results->SerializeToXml(folder_.File("empty.xml")));
    EXPECT_EQ(Check("result.xsd", "empty.xml"), Verdict::kFits) << Messages();

    AddItem(*results, 1, L"");
    AddItem(*results, 2147483647, L"1,2");
    results->AppendNewResults({-2147483647 - 1, L"no items"}, {});
    results->AppendNewResults({3, L"gone"}, {});
    results->RemoveOldResults({3, L"gone"});
    ASSERT_TRUE(results->SerializeToXml(folder_.File("full.xml")));
    EXPECT_EQ(Check("result.xsd", "full.xml"), Verdict::kFits) << Messages();
}

TEST_F(SchemaTest, ResultsWithAnyTextFitTheResultSchema) {
    const auto results = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    std::wstring everything;
    for (int c = 0; c < 0x3000; ++c)
        everything += static_cast<wchar_t>(c);
    everything += L"\xFFFE\xFFFF\U0001F600";
    everything += static_cast<wchar_t>(0xD800);
    AddItem(*results, 1, everything);
    ASSERT_TRUE(results->SerializeToXml(folder_.File("r.xml")));
    EXPECT_EQ(Check("result.xsd", "r.xml"), Verdict::kFits) << Messages();
}

TEST_F(SchemaTest, TheResultSchemaRefusesWhatIsNoResultFile) {
    const auto results = KyWorksetResultData::Create(KyModelTypeDefault, 1);
    AddItem(*results, 1, L"1,2");
    ASSERT_TRUE(results->SerializeToXml(folder_.File("r.xml")));
    const std::string good = folder_.Read("r.xml");
    const auto with = [&](const std::string& from, const std::string& to) {
        std::string changed = good;
        const std::size_t at = changed.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return CheckText("result.xsd", changed.replace(at, from.size(), to));
    };
    EXPECT_EQ(with("remark=", "remark="), Verdict::kFits) << Messages();
    EXPECT_EQ(with(" remark=\"1,2\"", ""), Verdict::kDoesNotFit);
    EXPECT_EQ(with("remark=", "more=\"\" remark="), Verdict::kDoesNotFit);
    EXPECT_EQ(with("projectA=\"1\"", "projectA=\"1.5\""), Verdict::kDoesNotFit);
    EXPECT_EQ(with("dispose=\"-2147483648\"", "dispose=\"-2147483649\""), Verdict::kDoesNotFit);
    EXPECT_EQ(with("picsize=\"9223372036854775807\"", "picsize=\"9223372036854775808\""),
              Verdict::kDoesNotFit);
    EXPECT_EQ(with("<楼层 floor=\"1,2\">", "<楼层>"), Verdict::kDoesNotFit);
    EXPECT_EQ(CheckText("result.xsd", "<CollisionRule/>"), Verdict::kDoesNotFit);
}

TEST_F(SchemaTest, WrittenRulesFitTheRuleSchema) {
    // Exclusions are written for the specialties of the category tree, which is loaded once.
    folder_.Write("config/system/productsort.xml", kCategories);
    BASETOOLS::SetSysRoot(folder_.File(""));
    ASSERT_EQ(KYCOLLISION::MODEL::KyEntityCategoryMgr::GetInstance()->GetSpecNodeCount(), 2);
    BASETOOLS::SetSysRoot(L"");
    KyCollisionRuleMgr manager;
    ASSERT_TRUE(manager.InitByXmlString(L"<CollisionRule/>"));
    ASSERT_TRUE(manager.SaveToXMLFile(folder_.File("empty.xml")));
    EXPECT_EQ(Check("rule.xsd", "empty.xml"), Verdict::kFits) << Messages();

    ASSERT_TRUE(manager.InitByXmlString(
        L"<CollisionRule><Specialty name=\"给排水\">"
        L"<RuleItem gjtype=\"给排水/管道/给水管\" isvalid=\"TRUE\">"
        L"<Filter type=\"1\">DN&gt;=50</Filter><Mode type=\"2\">150</Mode>"
        L"<Excludes><ExcludeGJ>土建</ExcludeGJ><ExcludeGJ>土建/墙</ExcludeGJ>"
        L"<ExcludeGJ>土建/墙/砼外墙</ExcludeGJ></Excludes></RuleItem>"
        L"<RuleItem gjtype=\"给排水/管道/污水管\" isvalid=\"no\"/></Specialty>"
        L"<Specialty name=\"Revit\"><RuleItem gjtype=\"Revit/墙\" isvalid=\"true\"/></Specialty>"
        L"<Specialty name=\"Tekla\"><RuleItem gjtype=\"Tekla/梁/主梁\" isvalid=\"true\"/>"
        L"</Specialty></CollisionRule>"));
    ASSERT_TRUE(manager.SaveToXMLFile(folder_.File("rules.xml")));
    EXPECT_EQ(Check("rule.xsd", "rules.xml"), Verdict::kFits) << Messages();
    EXPECT_NE(folder_.Read("rules.xml").find("<ExcludeGJ>土建/墙/砼外墙"), std::string::npos);
}

TEST_F(SchemaTest, TheRuleSchemaRefusesWhatTheReaderRefusesOrPassesOver) {
    const auto check = [this](const std::string& item) {
        return CheckText("rule.xsd", "<CollisionRule><Specialty name=\"s\">" + item +
                                         "</Specialty></CollisionRule>");
    };
    EXPECT_EQ(check("<RuleItem gjtype=\"a/b/c\" isvalid=\"false\"/>"), Verdict::kFits)
        << Messages();
    EXPECT_EQ(check("<RuleItem gjtype=\"a/b\" isvalid=\"false\"/>"), Verdict::kDoesNotFit);
    EXPECT_EQ(check("<RuleItem gjtype=\"tekla/b\" isvalid=\"false\"/>"), Verdict::kFits);
    EXPECT_EQ(check("<RuleItem gjtype=\"a/b/c/d\" isvalid=\"false\"/>"), Verdict::kDoesNotFit);
    EXPECT_EQ(check("<RuleItem gjtype=\"a/b/c\" isvalid=\"yes\"/>"), Verdict::kDoesNotFit);
    EXPECT_EQ(check("<RuleItem gjtype=\"a/b/c\" isvalid=\"true\"><Mode type=\"2\">far</Mode>"
                    "</RuleItem>"),
              Verdict::kDoesNotFit);
    EXPECT_EQ(check("<RuleItem gjtype=\"a/b/c\" isvalid=\"true\"><Excludes><ExcludeGJ>a/b/c/d"
                    "</ExcludeGJ></Excludes></RuleItem>"),
              Verdict::kDoesNotFit);
}

TEST_F(SchemaTest, APriorityFileThatIsReadFitsThePrioritySchema) {
    using KYCOLLISION::MODEL::AttCategory;
    folder_.Write("CollisionData/TypePriorityMap.xml", kPriorities);
    BASETOOLS::SetSysRoot(folder_.File(""));
    EXPECT_TRUE(AttCategory::InitTypePriorityMap());
    BASETOOLS::SetSysRoot(L"");
    EXPECT_EQ(AttCategory::s_typePriorityMap.at(L"土建/墙/砼外墙"), 10);
    AttCategory::s_typePriorityMap.clear();
    EXPECT_EQ(CheckText("priority.xsd", kPriorities), Verdict::kFits) << Messages();
}

TEST_F(SchemaTest, ThePrioritySchemaRefusesEntriesWithoutKindOrNumber) {
    const auto check = [this](const std::string& entry) {
        return CheckText("priority.xsd",
                         "<TypePriorityMap><Group>" + entry + "</Group></TypePriorityMap>");
    };
    EXPECT_EQ(check("<Type att=\"a/b/c\" priority=\"1\"/>"), Verdict::kFits) << Messages();
    EXPECT_EQ(check("<Type att=\"\" priority=\"1\"/>"), Verdict::kDoesNotFit);
    EXPECT_EQ(check("<Type att=\"a/b/c\" priority=\"\"/>"), Verdict::kDoesNotFit);
    EXPECT_EQ(check("<Type att=\"a/b/c\" priority=\"high\"/>"), Verdict::kDoesNotFit);
    EXPECT_EQ(check("<Type att=\"a/b/c\"/>"), Verdict::kDoesNotFit);
}

TEST_F(SchemaTest, TheCategorySchemaTakesThreeLevelsOfNames) {
    EXPECT_EQ(CheckText("category.xsd", kCategories), Verdict::kFits) << Messages();
    EXPECT_EQ(CheckText("category.xsd", "<root/>"), Verdict::kFits) << Messages();
    EXPECT_EQ(CheckText("category.xsd", "<root><zhuanye/></root>"), Verdict::kDoesNotFit);
    EXPECT_EQ(CheckText("category.xsd", "<root><zhuanye name=\"a/b\"/></root>"),
              Verdict::kDoesNotFit);
    EXPECT_EQ(CheckText("category.xsd", "<root><zhuanye name=\"a\"/><zhuanye name=\"a\"/></root>"),
              Verdict::kDoesNotFit);
    EXPECT_EQ(CheckText("category.xsd", "<root><dalei name=\"a\"/></root>"), Verdict::kDoesNotFit);
}
