// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <memory>

#include <gmock/gmock.h>

#include "rule/CountedFilter.h"

namespace KYCOLLISION::Rule {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const wchar_t* kSupply = L"给排水/管道/给水管";
constexpr const wchar_t* kSewage = L"给排水/管道/污水管";
constexpr const wchar_t* kRain = L"给排水/管道/雨水管";
constexpr const wchar_t* kWater = L"给排水";

std::vector<std::wstring> Paths(const std::vector<KyCollisionRuleItem*>* items) {
    std::vector<std::wstring> paths;
    if (!items) return {L"no entry"};
    for (const KyCollisionRuleItem* item : *items)
        paths.push_back(item->GetAttName());
    return paths;
}

std::vector<std::wstring> ValidPaths(const KyCollisionRule& rule) {
    return Paths(rule.GetRuleItemArray(kWater));
}

std::vector<std::wstring> InvalidPaths(const KyCollisionRule& rule) {
    return Paths(rule.GetInValidRuleItemArray(kWater));
}

std::unique_ptr<KyCollisionRuleItem> NewItem(const wchar_t* spec, const wchar_t* path) {
    auto item = std::make_unique<KyCollisionRuleItem>();
    item->SetSpecName(spec);
    item->SetAttName(path);
    return item;
}

/// The items are changed through the arrays, as hosts do.
KyCollisionRuleItem* Item(const KyCollisionRule& rule, const wchar_t* path) {
    return const_cast<KyCollisionRuleItem*>(rule.QueryRuleItem(path));
}

TEST(KyCollisionRule, StartsEmptyWithTypeOne) {
    const KyCollisionRule rule;
    EXPECT_EQ(rule.GetGUID(), L"");
    EXPECT_EQ(rule.GetRuleName(), L"");
    EXPECT_EQ(rule.GetRuleType(), 1);
    EXPECT_THAT(rule.GetSpecArray(), IsEmpty());
    EXPECT_EQ(rule.GetRuleItemArray(kWater), nullptr);
    EXPECT_EQ(rule.GetInValidRuleItemArray(kWater), nullptr);
}

TEST(AddRuleItem, AcceptsPathsOfThreeParts) {
    KyCollisionRule rule;
    EXPECT_TRUE(rule.AddRuleItem(kSupply, true));
    const KyCollisionRuleItem* item = rule.QueryRuleItem(kSupply);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->GetSpecName(), kWater);
    EXPECT_EQ(item->GetAttName(), kSupply);
    EXPECT_EQ(item->GetOwnerRule(), &rule);
    EXPECT_TRUE(rule.AddRuleItem(L"Tekla/钢结构/钢柱", true));
    EXPECT_TRUE(rule.AddRuleItem(L"a//c", true)) << "an empty part in between counts";
}

TEST(AddRuleItem, AcceptsPathsOfTwoPartsFromRevitAndTeklaInAnyCase) {
    KyCollisionRule rule;
    for (const wchar_t* path : {L"Revit/墙", L"REVIT/墙", L"rEvIt/墙", L"tekla/板", L"Tekla/板"}) {
        EXPECT_TRUE(rule.AddRuleItem(path, true));
        EXPECT_NE(rule.QueryRuleItem(path), nullptr);
    }
}

TEST(AddRuleItem, RefusesOtherPaths) {
    KyCollisionRule rule;
    for (const wchar_t* path : {L"", L"给排水", L"给排水/管道", L"给排水/管道/", L"Revit",
                                L"Revit/", L"a/b/c/d", L"Revit/a/b/c", L"/", L"Revits/墙"}) {
        EXPECT_FALSE(rule.AddRuleItem(path, true));
        EXPECT_FALSE(rule.AddRuleItem(path, false));
        const auto item = NewItem(L"给排水", path);
        EXPECT_FALSE(rule.AddRuleItem(item.get(), true));
    }
    EXPECT_FALSE(rule.AddRuleItem(nullptr, true));
    EXPECT_THAT(rule.GetSpecArray(), IsEmpty());
}

TEST(AddRuleItem, ListsSpecialtiesInTheOrderInWhichTheyAreMet) {
    KyCollisionRule rule;
    for (const wchar_t* path : {L"暖通/风管/送风管", kSupply, L"暖通/风管/回风管", L"Revit/墙"}) {
        rule.AddRuleItem(path, false);
    }
    EXPECT_THAT(rule.GetSpecArray(), ElementsAre(L"暖通", L"给排水", L"Revit"));
    EXPECT_NE(rule.GetRuleItemArray(L"Revit"), nullptr) << "both arrays exist, if empty";
    EXPECT_NE(rule.GetInValidRuleItemArray(L"Revit"), nullptr);
}

TEST(AddRuleItem, MovesASwitchedOffItemWithItsSettings) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, false);
    KyCollisionRuleItem* item = rule.GetInValidRuleItemArray(kWater)->front();
    item->SetFilter(new KyAttrRangeFilter(L"DN>=100"));
    EXPECT_TRUE(rule.AddRuleItem(kSupply, true));
    EXPECT_EQ(rule.QueryRuleItem(kSupply), item);
    EXPECT_NE(item->GetFilter(), nullptr);
    EXPECT_THAT(InvalidPaths(rule), IsEmpty());
}

TEST(AddRuleItem, AddsASecondItemForAPathThatIsThere) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, false);
    EXPECT_TRUE(rule.AddRuleItem(kSupply, true));
    EXPECT_TRUE(rule.AddRuleItem(kSupply, true));
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSupply, kSupply));
    EXPECT_NE(rule.QueryRuleItem(kWater, 0), rule.QueryRuleItem(kWater, 1));
}

TEST(AddRuleItem, OfAnItemThatIsSwitchedTheOtherWayMovesIt) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, true);
    rule.AddRuleItem(kSewage, true);
    KyCollisionRuleItem* item = Item(rule, kSupply);
    EXPECT_TRUE(rule.AddRuleItem(item, false));
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSewage));
    EXPECT_THAT(*rule.GetInValidRuleItemArray(kWater), ElementsAre(item));
    EXPECT_TRUE(rule.AddRuleItem(item, true));
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSewage, kSupply));
    EXPECT_THAT(InvalidPaths(rule), IsEmpty());
}

TEST(AddRuleItem, TakesAPathWithALastSeparatorAsItStands) {
    KyCollisionRule rule;
    EXPECT_TRUE(rule.AddRuleItem(L"给排水/管道/给水管/", true));
    EXPECT_TRUE(rule.AddRuleItem(L"Tekla/板/", true));
    EXPECT_NE(rule.QueryRuleItem(L"给排水/管道/给水管/"), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(L"给排水/管道/给水管"), nullptr) << "paths compare whole";
    EXPECT_NE(rule.QueryRuleItem(L"Tekla/板/"), nullptr);
}

TEST(AddRuleItem, FilesAnItemUnderTheFirstPartOfItsPath) {
    KyCollisionRule rule;
    KyCollisionRuleItem* item = NewItem(L"电气", kSupply).release();
    ASSERT_TRUE(rule.AddRuleItem(item, true));
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSupply));
    EXPECT_EQ(rule.GetRuleItemArray(L"电气"), nullptr);
    EXPECT_FALSE(rule.DeleteRuleItem(item)) << "a move looks under the item's specialty";
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSupply));
}

TEST(AddRuleItem, OfAnItemThatIsThereKeepsItTwiceAndFreesItOnce) {
    {
        KyCollisionRule rule;
        KyCollisionRuleItem* item = NewItem(kWater, kSupply).release();
        item->SetFilter(new CountedFilter);
        EXPECT_TRUE(rule.AddRuleItem(item, true));
        EXPECT_TRUE(rule.AddRuleItem(item, true));
        EXPECT_THAT(ValidPaths(rule), ElementsAre(kSupply, kSupply));
        EXPECT_EQ(CountedFilter::alive, 1);
    }
    EXPECT_EQ(CountedFilter::alive, 0);
}

TEST(QueryRuleItem, FindsValidItemsByTheirWholePath) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, true);
    rule.AddRuleItem(kSewage, false);
    EXPECT_NE(rule.QueryRuleItem(kSupply), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(kSewage), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(L"给排水/管道"), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(L"给排水/管道/给水管/"), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(L"给排水"), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(L""), nullptr);
}

TEST(QueryRuleItem, FindsValidItemsByIndex) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, true);
    rule.AddRuleItem(kSewage, true);
    EXPECT_EQ(rule.QueryRuleItem(kWater, 1)->GetAttName(), kSewage);
    EXPECT_EQ(rule.QueryRuleItem(kWater, 2), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(kWater, -1), nullptr);
    EXPECT_EQ(rule.QueryRuleItem(L"电气", 0), nullptr);
}

TEST(DeleteRuleItem, SwitchesAnItemOffWithoutDestroyingIt) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, true);
    rule.AddRuleItem(kSewage, true);
    rule.AddRuleItem(kRain, true);
    const KyCollisionRuleItem* item = rule.QueryRuleItem(kSewage);
    EXPECT_TRUE(rule.DeleteRuleItem(item));
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSupply, kRain));
    EXPECT_THAT(*rule.GetInValidRuleItemArray(kWater), ElementsAre(item));
    EXPECT_FALSE(rule.DeleteRuleItem(item)) << "it is off already";
    EXPECT_FALSE(rule.DeleteRuleItem(nullptr));
}

TEST(DeleteRuleItem, RefusesAnItemWhoseSpecialtyHasNoEntry) {
    KyCollisionRule rule;
    rule.AddRuleItem(kSupply, true);
    KyCollisionRuleItem* item = Item(rule, kSupply);
    item->SetSpecName(L"电气");
    EXPECT_FALSE(rule.DeleteRuleItem(item));
    EXPECT_EQ(rule.QueryRuleItem(kSupply), item);
}

TEST(DeleteAllItems, ThenAddAllItemsRestoresTheOrder) {
    KyCollisionRule rule;
    for (const wchar_t* path : {kSupply, kSewage, kRain})
        rule.AddRuleItem(path, true);
    rule.AddRuleItem(L"暖通/风管/送风管", true);
    rule.DeleteAllItems(kWater);
    EXPECT_THAT(ValidPaths(rule), IsEmpty());
    EXPECT_THAT(InvalidPaths(rule), ElementsAre(kRain, kSewage, kSupply));
    EXPECT_EQ(rule.GetRuleItemArray(L"暖通")->size(), 1u) << "other specialties stay";
    rule.AddAllItems(kWater);
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSupply, kSewage, kRain));
    EXPECT_THAT(InvalidPaths(rule), IsEmpty());
}

TEST(DeleteAllItems, DoesNothingForAnUnknownSpecialty) {
    KyCollisionRule rule;
    rule.DeleteAllItems(L"电气");
    rule.AddAllItems(L"电气");
    EXPECT_EQ(rule.GetRuleItemArray(L"电气"), nullptr);
}

TEST(DeleteAllItems, LeavesItemsOfAnotherSpecialtyName) {
    KyCollisionRule rule;
    for (const wchar_t* path : {kSupply, kSewage, kRain})
        rule.AddRuleItem(path, true);
    Item(rule, kSewage)->SetSpecName(L"电气");
    rule.DeleteAllItems(kWater);
    EXPECT_THAT(ValidPaths(rule), ElementsAre(kSewage));
    EXPECT_THAT(InvalidPaths(rule), ElementsAre(kRain, kSupply));
}

/// A rule set with valid and invalid items of two specialties.
class FilledRule : public testing::Test {
  protected:
    FilledRule() {
        rule_.SetGUID(L"guid");
        rule_.SetRuleName(L"name");
        rule_.SetRuleType(static_cast<EnumRuleType>(5));
        rule_.AddRuleItem(L"暖通/风管/送风管", true);
        rule_.AddRuleItem(kSupply, true);
        rule_.AddRuleItem(kRain, true);
        rule_.AddRuleItem(kSewage, false);
        Item(rule_, kSupply)->SetFilter(new KyAttrRangeFilter(L"DN>=100"));
        Item(rule_, kSupply)->AddExcludeItem(L"土建", KyExcludeItem{0, L"土建", L"", L""});
    }

    std::unique_ptr<KyCollisionRule> Clone(bool withGuid) const {
        return std::unique_ptr<KyCollisionRule>(rule_.Clone(withGuid));
    }

    KyCollisionRule rule_;
};

TEST_F(FilledRule, ClonesToAnEqualOne) {
    const auto copy = Clone(false);
    EXPECT_TRUE(copy->Equal(rule_));
    EXPECT_TRUE(rule_.Equal(*copy));
    EXPECT_EQ(copy->GetGUID(), L"");
    EXPECT_EQ(copy->GetRuleName(), L"name");
    EXPECT_EQ(copy->GetRuleType(), 5);
    EXPECT_EQ(copy->GetSpecArray(), rule_.GetSpecArray());
    EXPECT_THAT(ValidPaths(*copy), ElementsAre(kSupply, kRain));
    EXPECT_THAT(InvalidPaths(*copy), ElementsAre(kSewage));
    EXPECT_EQ(Clone(true)->GetGUID(), L"guid");
}

TEST_F(FilledRule, ClonesItemsOfItsOwn) {
    const auto copy = Clone(false);
    const KyCollisionRuleItem* item = copy->QueryRuleItem(kSupply);
    EXPECT_NE(item, rule_.QueryRuleItem(kSupply));
    EXPECT_EQ(item->GetOwnerRule(), copy.get());
    EXPECT_EQ(copy->GetInValidRuleItemArray(kWater)->front()->GetOwnerRule(), copy.get());
}

TEST_F(FilledRule, IsEmptiedBeforeACopyButKeepsItsGuid) {
    KyCollisionRule source;
    source.SetGUID(L"other");
    source.AddRuleItem(L"Revit/墙", true);
    rule_.Copy(&source, false);
    EXPECT_TRUE(rule_.Equal(source));
    EXPECT_EQ(rule_.GetGUID(), L"guid");
    EXPECT_EQ(rule_.GetRuleItemArray(kWater), nullptr);
    EXPECT_THAT(rule_.GetSpecArray(), ElementsAre(L"Revit"));
    rule_.Copy(&source, true);
    EXPECT_EQ(rule_.GetGUID(), L"other");
    EXPECT_EQ(rule_.GetRuleItemArray(L"Revit")->size(), 1u) << "any number of times";
}

TEST_F(FilledRule, StaysAsItIsWhenCopiedFromNothingOrItself) {
    const auto before = Clone(true);
    rule_.Copy(nullptr, true);
    rule_.Copy(&rule_, true);
    EXPECT_TRUE(rule_.Equal(*before));
    EXPECT_EQ(rule_.GetGUID(), L"guid");
}

TEST_F(FilledRule, IsEqualWhateverItsGuid) {
    const auto other = Clone(true);
    other->SetGUID(L"x");
    EXPECT_TRUE(rule_.Equal(*other));
}

TEST_F(FilledRule, DiffersInNameAndType) {
    const auto other = Clone(true);
    other->SetRuleName(L"x");
    EXPECT_FALSE(rule_.Equal(*other));
    other->SetRuleName(rule_.GetRuleName());
    other->SetRuleType(eRuleTypeNone);
    EXPECT_FALSE(rule_.Equal(*other));
}

TEST_F(FilledRule, IsEqualWhateverItsInvalidItems) {
    const auto other = Clone(true);
    other->AddRuleItem(L"给排水/管道/中水管", false);
    EXPECT_TRUE(rule_.Equal(*other));
    EXPECT_TRUE(other->Equal(rule_));
}

TEST_F(FilledRule, DiffersInItsSpecialties) {
    const auto other = Clone(true);
    other->AddRuleItem(L"电气/电缆桥架/桥架", false);
    EXPECT_FALSE(rule_.Equal(*other));
    EXPECT_FALSE(other->Equal(rule_));
}

TEST_F(FilledRule, DiffersInAValidItem) {
    const auto other = Clone(true);
    Item(*other, kSupply)->GetMode()->SetModeType(eModeClearance);
    EXPECT_FALSE(rule_.Equal(*other));
    const auto fewer = Clone(true);
    fewer->DeleteRuleItem(fewer->QueryRuleItem(kRain));
    EXPECT_FALSE(rule_.Equal(*fewer));
    fewer->AddRuleItem(L"给排水/管道/中水管", true);
    EXPECT_FALSE(rule_.Equal(*fewer)) << "as many items, but other ones";
}

TEST_F(FilledRule, IsEqualInAnyOrderOfItems) {
    const auto other = Clone(true);
    other->DeleteRuleItem(other->QueryRuleItem(kSupply));
    other->AddRuleItem(kSupply, true);
    EXPECT_THAT(ValidPaths(*other), ElementsAre(kRain, kSupply));
    EXPECT_TRUE(rule_.Equal(*other));
}

}  // namespace
}  // namespace KYCOLLISION::Rule
