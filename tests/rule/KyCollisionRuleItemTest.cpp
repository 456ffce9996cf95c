// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <gmock/gmock.h>

#include "rule/CountedFilter.h"

namespace KYCOLLISION::Rule {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const KyExcludeItem kWholeSpecialty{0, L"土建", L"", L""};
const KyExcludeItem kMajor{1, L"土建", L"墙", L""};
const KyExcludeItem kMinor{2, L"土建", L"墙", L"砖内墙"};

KyCollisionMode Mode(int type, int tolerance) {
    KyCollisionMode mode;
    mode.SetModeType(static_cast<EnumModeType>(type));
    mode.SetTolerance(tolerance);
    return mode;
}

TEST(KyCollisionRuleItem, StartsEmpty) {
    const KyCollisionRuleItem item;
    EXPECT_EQ(item.GetOwnerRule(), nullptr);
    EXPECT_EQ(item.GetSpecName(), L"");
    EXPECT_EQ(item.GetAttName(), L"");
    EXPECT_EQ(item.GetFilter(), nullptr);
    EXPECT_EQ(item.GetMode()->GetModeType(), 0);
    EXPECT_EQ(item.GetExcludeItemArray(L"土建"), nullptr);
}

TEST(KyCollisionRuleItem, OwnsItsFilter) {
    {
        KyCollisionRuleItem item;
        auto* first = new CountedFilter;
        item.SetFilter(first);
        EXPECT_EQ(item.GetFilter(), first);
        item.SetFilter(first);
        EXPECT_EQ(CountedFilter::alive, 1) << "the same filter again is kept";
        item.SetFilter(new CountedFilter);
        EXPECT_EQ(CountedFilter::alive, 1);
        item.SetFilter(nullptr);
        EXPECT_EQ(CountedFilter::alive, 0);
        item.SetFilter(new CountedFilter);
    }
    EXPECT_EQ(CountedFilter::alive, 0);
}

TEST(KyCollisionRuleItem, CopiesAModeIn) {
    KyCollisionRuleItem item;
    item.SetMode(Mode(2, 50));
    EXPECT_EQ(item.GetMode()->GetTolerance(), 50);
    item.GetMode()->SetTolerance(60);
    EXPECT_EQ(item.GetMode()->GetTolerance(), 60);
}

TEST(KyCollisionRuleItem, HoldsEqualExclusionsOnce) {
    KyCollisionRuleItem item;
    EXPECT_TRUE(item.AddExcludeItem(L"土建", kMajor));
    EXPECT_TRUE(item.AddExcludeItem(L"土建", kMajor));
    EXPECT_TRUE(item.AddExcludeItem(L"土建", kMinor));
    EXPECT_TRUE(item.AddExcludeItem(L"土建", KyExcludeItem{1, L"土建", L"墙", L"ignored"}));
    EXPECT_THAT(*item.GetExcludeItemArray(L"土建"), ElementsAre(kMajor, kMinor));
}

TEST(KyCollisionRuleItem, KeepsTheKeyOfRemovedExclusions) {
    KyCollisionRuleItem item;
    item.RemoveExcludeItem(L"土建");
    EXPECT_EQ(item.GetExcludeItemArray(L"土建"), nullptr);
    item.AddExcludeItem(L"土建", kWholeSpecialty);
    item.RemoveExcludeItem(L"土建");
    ASSERT_NE(item.GetExcludeItemArray(L"土建"), nullptr);
    EXPECT_THAT(*item.GetExcludeItemArray(L"土建"), IsEmpty());
    EXPECT_THAT(item.GetExcludeSpecArray(), ElementsAre(L"土建"));
}

TEST(KyCollisionRuleItem, ListsExcludedSpecialtiesInTheOrderOfTheCategoryTree) {
    KyCollisionRuleItem item;
    for (const wchar_t* spec : {L"Revit", L"给排水", L"电气", L"unknown", L""}) {
        item.AddExcludeItem(spec, kWholeSpecialty);
    }
    EXPECT_THAT(item.GetExcludeSpecArray(), ElementsAre(L"电气", L"给排水", L"Revit"));
}

TEST(IsCollisionWith, RefusesAPathOfOnePart) {
    const KyCollisionRuleItem item;
    EXPECT_FALSE(item.IsCollisionWith(L"给排水"));
    EXPECT_FALSE(item.IsCollisionWith(L"给排水/"));
    EXPECT_FALSE(item.IsCollisionWith(L""));
    EXPECT_TRUE(item.IsCollisionWith(L"给排水/管道"));
    EXPECT_TRUE(item.IsCollisionWith(L"给排水/管道/给水管"));
    EXPECT_TRUE(item.IsCollisionWith(L"给排水//")) << "an empty part between separators counts";
}

TEST(IsCollisionWith, AdmitsASpecialtyWhoseExclusionsWereRemoved) {
    KyCollisionRuleItem item;
    item.AddExcludeItem(L"土建", kWholeSpecialty);
    EXPECT_FALSE(item.IsCollisionWith(L"土建/墙/砖内墙"));
    item.RemoveExcludeItem(L"土建");
    EXPECT_TRUE(item.IsCollisionWith(L"土建/墙/砖内墙"));
}

TEST(IsCollisionWith, ExcludesByLevel) {
    KyCollisionRuleItem major;
    major.AddExcludeItem(L"土建", kMajor);
    EXPECT_FALSE(major.IsCollisionWith(L"土建/墙/砖内墙"));
    EXPECT_FALSE(major.IsCollisionWith(L"土建/墙"));
    EXPECT_TRUE(major.IsCollisionWith(L"土建/柱/砼柱"));
    EXPECT_TRUE(major.IsCollisionWith(L"钢筋/墙/剪力墙"));

    KyCollisionRuleItem minor;
    minor.AddExcludeItem(L"土建", kMinor);
    EXPECT_FALSE(minor.IsCollisionWith(L"土建/墙/砖内墙"));
    EXPECT_TRUE(minor.IsCollisionWith(L"土建/墙/砼外墙"));
    EXPECT_TRUE(minor.IsCollisionWith(L"土建/柱/砖内墙"));
    EXPECT_TRUE(minor.IsCollisionWith(L"土建/墙"));
}

TEST(IsCollisionWith, LooksAtAllExclusionsOfTheSpecialty) {
    KyCollisionRuleItem item;
    item.AddExcludeItem(L"土建", KyExcludeItem{1, L"土建", L"柱", L""});
    item.AddExcludeItem(L"土建", kMinor);
    EXPECT_FALSE(item.IsCollisionWith(L"土建/墙/砖内墙"));
    EXPECT_FALSE(item.IsCollisionWith(L"土建/柱/砼柱"));
    EXPECT_TRUE(item.IsCollisionWith(L"土建/梁/次梁"));
}

TEST(IsCollisionWith, MatchesTheSpecialtyByTheKeyOnly) {
    KyCollisionRuleItem item;
    item.AddExcludeItem(L"电气", kWholeSpecialty);
    EXPECT_FALSE(item.IsCollisionWith(L"电气/电缆桥架/桥架"));
    EXPECT_TRUE(item.IsCollisionWith(L"土建/墙/砖内墙"));
    item.AddExcludeItem(L"Tekla", kWholeSpecialty);
    EXPECT_FALSE(item.IsCollisionWith(L"Tekla/板"));
    EXPECT_TRUE(item.IsCollisionWith(L"tekla/板")) << "the key counts with its case";
}

TEST(IsCollisionWith, IgnoresExclusionsOfUnknownLevels) {
    KyCollisionRuleItem item;
    item.AddExcludeItem(L"土建", KyExcludeItem{3, L"土建", L"墙", L"砖内墙"});
    item.AddExcludeItem(L"土建", KyExcludeItem{-1, L"土建", L"墙", L"砖内墙"});
    EXPECT_TRUE(item.IsCollisionWith(L"土建/墙/砖内墙"));
}

/// Two items that are equal until a test changes one of them.
class EqualItems : public testing::Test {
  protected:
    EqualItems() {
        for (KyCollisionRuleItem* item : {&a_, &b_}) {
            item->SetSpecName(L"给排水");
            item->SetAttName(L"给排水/管道/给水管");
            item->SetFilter(new KyAttrRangeFilter(L"DN>=100"));
            item->SetMode(Mode(2, 10));
            item->AddExcludeItem(L"土建", kMajor);
            item->AddExcludeItem(L"土建", kMinor);
        }
    }

    KyCollisionRuleItem a_;
    KyCollisionRuleItem b_;
};

TEST_F(EqualItems, AreEqual) {
    EXPECT_TRUE(a_.Equal(b_));
    EXPECT_TRUE(a_.Equal(a_));
}

TEST_F(EqualItems, DifferInEitherName) {
    b_.SetSpecName(L"x");
    EXPECT_FALSE(a_.Equal(b_));
    b_.SetSpecName(a_.GetSpecName());
    b_.SetAttName(L"x");
    EXPECT_FALSE(a_.Equal(b_));
}

TEST_F(EqualItems, DifferInTheFilter) {
    b_.SetFilter(new KyAttrRangeFilter(L"DN>=101"));
    EXPECT_FALSE(a_.Equal(b_));
    b_.SetFilter(nullptr);
    EXPECT_FALSE(a_.Equal(b_));
    EXPECT_FALSE(b_.Equal(a_));
    a_.SetFilter(nullptr);
    EXPECT_TRUE(a_.Equal(b_));
}

TEST_F(EqualItems, AskAFilterWhetherItEqualsNone) {
    a_.SetFilter(nullptr);
    b_.SetFilter(new CountedFilter(true));
    EXPECT_TRUE(a_.Equal(b_));
    EXPECT_TRUE(b_.Equal(a_));
    b_.SetFilter(new CountedFilter(false));
    EXPECT_FALSE(a_.Equal(b_));
}

TEST_F(EqualItems, DifferInModeAndEffectiveTolerance) {
    b_.SetMode(Mode(2, 11));
    EXPECT_FALSE(a_.Equal(b_));
    b_.SetMode(Mode(1, 10));
    EXPECT_FALSE(a_.Equal(b_));
    a_.SetMode(Mode(1, 99));
    EXPECT_TRUE(a_.Equal(b_)) << "a tolerance that does not count is not compared";
}

TEST_F(EqualItems, CompareExclusionsInAnyOrder) {
    b_.RemoveExcludeItem(L"土建");
    EXPECT_FALSE(a_.Equal(b_));
    b_.AddExcludeItem(L"土建", kMinor);
    EXPECT_FALSE(a_.Equal(b_));
    b_.AddExcludeItem(L"土建", kMajor);
    EXPECT_TRUE(a_.Equal(b_));
    b_.AddExcludeItem(L"电气", kWholeSpecialty);
    EXPECT_FALSE(a_.Equal(b_));
}

TEST_F(EqualItems, PassOverExclusionsThatTheCategoryTreeDoesNotKnow) {
    b_.AddExcludeItem(L"unknown", kWholeSpecialty);
    EXPECT_TRUE(a_.Equal(b_));
    EXPECT_TRUE(b_.Equal(a_));
}

TEST_F(EqualItems, AreWhatCloneMakes) {
    KyCollisionRule owner;
    a_.SetOwnerRule(&owner);
    const std::unique_ptr<KyCollisionRuleItem> copy(a_.Clone());
    EXPECT_TRUE(copy->Equal(a_));
    EXPECT_EQ(copy->GetOwnerRule(), &owner);
    EXPECT_NE(copy->GetFilter(), a_.GetFilter());
    EXPECT_THAT(*copy->GetExcludeItemArray(L"土建"), ElementsAre(kMajor, kMinor));
    a_.RemoveExcludeItem(L"土建");
    EXPECT_EQ(copy->GetExcludeItemArray(L"土建")->size(), 2u) << "the copy stands alone";
}

TEST(KyCollisionRuleItem, ClonesWithoutAFilterWhenItHasNone) {
    const KyCollisionRuleItem item;
    const std::unique_ptr<KyCollisionRuleItem> copy(item.Clone());
    EXPECT_EQ(copy->GetFilter(), nullptr);
}

}  // namespace
}  // namespace KYCOLLISION::Rule
