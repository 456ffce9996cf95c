// SPDX-License-Identifier: Apache-2.0
// The category knowledge and the rules, as the shared object offers them.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <KYCollisionBase/KYCollisionBase.h>
#include <gtest/gtest.h>

#include "exports/ExpectOperation.h"

namespace {

using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::Rule;
using kycb::test::ExpectOperation;
using std::wstring;
using Names = std::vector<wstring>;
using Items = std::vector<KyCollisionRuleItem*>;

TEST(CategoryExports, OfferTheCategoryTriple) {
    using T = AttCategory;
    ExpectOperation<wstring (T::*)()>(&T::categoryIndex);
    ExpectOperation<bool (T::*)() const>(&T::IsSgFgQj_RP);
    ExpectOperation<bool (T::*)() const>(&T::IsQzlb_JJP);
    ExpectOperation<int (T::*)() const>(&T::IsFgQjPsLsRs_JJP);
    ExpectOperation<bool (T::*)() const>(&T::IsNeedFiter);
    ExpectOperation<int (T::*)() const>(&T::GetAttPriority);
    ExpectOperation<bool (*)()>(&T::InitTypePriorityMap);
    ExpectOperation<std::map<wstring, int>*>(&T::s_typePriorityMap);
    const T category(L"给排水", L"管道", L"给水管");
    T copy;
    EXPECT_FALSE(copy == category);
    copy = category;
    EXPECT_TRUE(copy == category);
}

TEST(CategoryExports, OfferTheCategoryTree) {
    using T = KyEntityCategoryMgr;
    using Node = const KyCategoryNode*;
    ExpectOperation<T* (*)()>(&T::GetInstance);
    ExpectOperation<int (T::*)() const>(&T::GetSpecNodeCount);
    ExpectOperation<Node (T::*)(int) const>(&T::GetSpecNode);
    ExpectOperation<Node (T::*)(const wstring&) const>(&T::GetSpecNode);
    ExpectOperation<int (T::*)(const wstring&) const>(&T::GetSpecNodeIndexByName);
    ExpectOperation<int (T::*)(int) const>(&T::GetDaLeiNodeCount);
    ExpectOperation<Node (T::*)(int, int) const>(&T::GetDaLeiNode);
    ExpectOperation<int (T::*)(int, int) const>(&T::GetXiaoLeiNodeCount);
    ExpectOperation<Node (T::*)(int, int, int) const>(&T::GetXiaoLeiNode);
    ExpectOperation<bool (T::*)(ITreeControl*, HTREEITEM, const Names*) const>(&T::InitTreeControl);
    const KyCategoryNode node{eNodeDaLei, L"墙", {}};
    EXPECT_EQ(node.type, 2);
}

TEST(RuleExports, OfferTheOperationsOfARuleSet) {
    using T = KyCollisionRule;
    ExpectOperation<const wstring& (T::*)() const>(&T::GetGUID);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetGUID);
    ExpectOperation<const wstring& (T::*)() const>(&T::GetRuleName);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetRuleName);
    ExpectOperation<EnumRuleType (T::*)() const>(&T::GetRuleType);
    ExpectOperation<void (T::*)(EnumRuleType)>(&T::SetRuleType);
    ExpectOperation<const Names& (T::*)() const>(&T::GetSpecArray);
    ExpectOperation<T* (T::*)(bool) const>(&T::Clone);
    ExpectOperation<void (T::*)(const T*, bool)>(&T::Copy);
    ExpectOperation<const KyCollisionRuleItem* (T::*)(const wstring&) const>(&T::QueryRuleItem);
    ExpectOperation<const KyCollisionRuleItem* (T::*)(const wstring&, int) const>(
        &T::QueryRuleItem);
    ExpectOperation<bool (T::*)(const wstring&, bool)>(&T::AddRuleItem);
    ExpectOperation<bool (T::*)(KyCollisionRuleItem*, bool)>(&T::AddRuleItem);
    ExpectOperation<bool (T::*)(const KyCollisionRuleItem*)>(&T::DeleteRuleItem);
    ExpectOperation<const Items* (T::*)(const wstring&) const>(&T::GetRuleItemArray);
    ExpectOperation<const Items* (T::*)(const wstring&) const>(&T::GetInValidRuleItemArray);
    ExpectOperation<void (T::*)(const wstring&)>(&T::DeleteAllItems);
    ExpectOperation<void (T::*)(const wstring&)>(&T::AddAllItems);
    ExpectOperation<bool (T::*)(const T&) const>(&T::Equal);
    EXPECT_EQ(T().GetRuleType(), 1);
}

TEST(RuleExports, OfferTheOperationsOfARuleItem) {
    using T = KyCollisionRuleItem;
    ExpectOperation<const wstring& (T::*)() const>(&T::GetSpecName);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetSpecName);
    ExpectOperation<const wstring& (T::*)() const>(&T::GetAttName);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetAttName);
    ExpectOperation<IKyCollisionFilter* (T::*)() const>(&T::GetFilter);
    ExpectOperation<void (T::*)(IKyCollisionFilter*)>(&T::SetFilter);
    ExpectOperation<KyCollisionMode* (T::*)()>(&T::GetMode);
    ExpectOperation<void (T::*)(const KyCollisionMode&)>(&T::SetMode);
    ExpectOperation<bool (T::*)(const wstring&, const KyExcludeItem&)>(&T::AddExcludeItem);
    ExpectOperation<void (T::*)(const wstring&)>(&T::RemoveExcludeItem);
    ExpectOperation<Names (T::*)() const>(&T::GetExcludeSpecArray);
    ExpectOperation<const std::vector<KyExcludeItem>* (T::*)(const wstring&) const>(
        &T::GetExcludeItemArray);
    ExpectOperation<bool (T::*)(const wstring&) const>(&T::IsCollisionWith);
    ExpectOperation<bool (T::*)(const T&) const>(&T::Equal);
    ExpectOperation<T* (T::*)() const>(&T::Clone);
    EXPECT_TRUE(T().Equal(T()));
}

TEST(RuleExports, OfferModesAndExclusions) {
    using T = KyCollisionMode;
    ExpectOperation<void (T::*)(EnumModeType, const wstring&)>(&T::InitParams);
    ExpectOperation<int (T::*)() const>(&T::GetTolerance);
    ExpectOperation<EnumModeType (T::*)() const>(&T::GetModeType);
    ExpectOperation<void (T::*)(EnumModeType)>(&T::SetModeType);
    ExpectOperation<void (T::*)(int)>(&T::SetTolerance);
    EXPECT_TRUE(KyExcludeItem() == KyExcludeItem());
}

TEST(RuleExports, OfferTheOperationsOfTheRuleManager) {
    using T = KyCollisionRuleMgr;
    ExpectOperation<bool (T::*)(const wstring&)>(&T::InitByXmlPath);
    ExpectOperation<bool (T::*)(const wstring&)>(&T::InitByXmlString);
    ExpectOperation<bool (T::*)(const wstring&) const>(&T::SaveToXMLFile);
    ExpectOperation<const KyCollisionRule* (T::*)() const>(&T::GetRule);
    ExpectOperation<void (T::*)(KyCollisionRule*, bool)>(&T::SetRule);
    ExpectOperation<const KyCollisionRuleItem* (T::*)(wstring)>(&T::GetRuleItem);
    ExpectOperation<IXMLTree* (*)()>(&CXMLTreeCreator::Allocate);
    const T manager;
    T copy(manager);
    copy = manager;
    EXPECT_EQ(copy.GetRule(), nullptr);
}

TEST(RuleExports, OfferTheRangeFilter) {
    using T = KyAttrRangeFilter;
    ExpectOperation<const wstring& (T::*)() const>(&T::GetFieldName);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetFieldName);
    ExpectOperation<const wstring& (T::*)() const>(&T::GetUnit);
    ExpectOperation<void (T::*)(const wstring&)>(&T::SetUnit);
    ExpectOperation<wstring (T::*)() const>(&T::GetOperatorType);
    ExpectOperation<void (T::*)(wstring)>(&T::SetOperatorType);
    ExpectOperation<unsigned int (T::*)() const>(&T::GetValue);
    ExpectOperation<void (T::*)(unsigned int)>(&T::SetValue);
    ExpectOperation<wstring (T::*)() const>(&T::GetShortName);
    const std::unique_ptr<IKyCollisionFilter> filter = std::make_unique<T>(L"DN>=100");
    const std::unique_ptr<IKyCollisionFilter> copy(filter->Clone());
    EXPECT_TRUE(copy->Equal(filter.get()));
    EXPECT_EQ(copy->ToString(), L"DN>=100");
    EXPECT_EQ(copy->GetFilterType(), 1);
    EXPECT_TRUE(copy->IsMeetCondition(100.0));
}

}  // namespace
