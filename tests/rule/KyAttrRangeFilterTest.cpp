// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"

#include <cmath>
#include <limits>
#include <memory>
#include <random>

#include <gtest/gtest.h>

#include "support/LocaleScope.h"

namespace KYCOLLISION::Rule {
namespace {

void ExpectFields(const KyAttrRangeFilter& filter, const wchar_t* field, const wchar_t* unit,
                  const wchar_t* operatorType, unsigned int value) {
    EXPECT_EQ(filter.GetFieldName(), field);
    EXPECT_EQ(filter.GetUnit(), unit);
    EXPECT_EQ(filter.GetOperatorType(), operatorType);
    EXPECT_EQ(filter.GetValue(), value);
}

TEST(KyAttrRangeFilter, ReadsEachOperator) {
    ExpectFields(KyAttrRangeFilter(L"DN>=100"), L"DN", L"", L">=", 100);
    ExpectFields(KyAttrRangeFilter(L"DN<=100"), L"DN", L"", L"<=", 100);
    ExpectFields(KyAttrRangeFilter(L"DN>100"), L"DN", L"", L">", 100);
    ExpectFields(KyAttrRangeFilter(L"DN<100"), L"DN", L"", L"<", 100);
    ExpectFields(KyAttrRangeFilter(L"DN=100"), L"DN", L"", L"=", 100);
}

TEST(KyAttrRangeFilter, ReadsAUnitInParentheses) {
    ExpectFields(KyAttrRangeFilter(L"管径(mm)<50"), L"管径", L"mm", L"<", 50);
    ExpectFields(KyAttrRangeFilter(L"a(b)(c)=1"), L"a(b)", L"c", L"=", 1);
    ExpectFields(KyAttrRangeFilter(L"(mm)=1"), L"", L"mm", L"=", 1);
    ExpectFields(KyAttrRangeFilter(L"a()=1"), L"a", L"", L"=", 1);
}

TEST(KyAttrRangeFilter, TakesAFieldThatOnlyClosesAParenthesisWhole) {
    ExpectFields(KyAttrRangeFilter(L"a)=1"), L"a)", L"", L"=", 1);
    ExpectFields(KyAttrRangeFilter(L"a(b=1"), L"a(b", L"", L"=", 1);
}

TEST(KyAttrRangeFilter, TrimsBlanksAroundTheFieldOnly) {
    ExpectFields(KyAttrRangeFilter(L"  D N  >= 100"), L"D N", L"", L">=", 100);
    ExpectFields(KyAttrRangeFilter(L" D ( mm ) = 1"), L"D ", L" mm ", L"=", 1);
    ExpectFields(KyAttrRangeFilter(L"\tD=1"), L"\tD", L"", L"=", 1);
}

TEST(KyAttrRangeFilter, StaysAtItsDefaultsWithoutAnOperator) {
    for (const wchar_t* text : {L"", L"DN100", L"  "}) {
        const KyAttrRangeFilter filter(text);
        ExpectFields(filter, L"", L"", L"=", 0);
        EXPECT_TRUE(filter.IsMeetCondition(0.0));
        EXPECT_FALSE(filter.IsMeetCondition(1.0));
    }
}

TEST(KyAttrRangeFilter, TakesOnlyTheOperatorOfATextWithoutTwoParts) {
    ExpectFields(KyAttrRangeFilter(L"DN>="), L"", L"", L">=", 0);
    ExpectFields(KyAttrRangeFilter(L"a<b<5"), L"", L"", L"<", 0);
    ExpectFields(KyAttrRangeFilter(L">"), L"", L"", L">", 0);
}

TEST(KyAttrRangeFilter, CountsTheLastOperatorOfSeveral) {
    ExpectFields(KyAttrRangeFilter(L"a<b>=5"), L"a<b", L"", L">=", 5);
    ExpectFields(KyAttrRangeFilter(L"DN>=100="), L"DN>", L"", L"=", 100);
    ExpectFields(KyAttrRangeFilter(L"a=<5"), L"a=", L"", L"<", 5);
    ExpectFields(KyAttrRangeFilter(L"a>=>5"), L"", L"", L">", 0);
}

TEST(KyAttrRangeFilter, ReadsTheLeadingDigitsAsTheNumber) {
    EXPECT_EQ(KyAttrRangeFilter(L"DN=  12mm").GetValue(), 12u);
    EXPECT_EQ(KyAttrRangeFilter(L"DN=1.9").GetValue(), 1u);
    EXPECT_EQ(KyAttrRangeFilter(L"DN=x").GetValue(), 0u);
    EXPECT_EQ(KyAttrRangeFilter(L"DN=99999999999").GetValue(), 2147483647u);
}

TEST(KyAttrRangeFilter, WrapsANegativeNumber) {
    const KyAttrRangeFilter filter(L"DN=-1");
    EXPECT_EQ(filter.GetValue(), 4294967295u);
    EXPECT_EQ(filter.ToString(), L"DN=4294967295");
    EXPECT_TRUE(filter.IsMeetCondition(4294967295.0));
    EXPECT_FALSE(filter.IsMeetCondition(-1.0));
}

TEST(KyAttrRangeFilter, WritesItsTextForm) {
    EXPECT_EQ(KyAttrRangeFilter(L" DN (mm) >= 100 ").ToString(), L"DN (mm)>=100");
    EXPECT_EQ(KyAttrRangeFilter(L"DN>=100").ToString(), L"DN>=100");
    KyAttrRangeFilter filter(L"");
    filter.SetFieldName(L"DN");
    filter.SetUnit(L"mm");
    filter.SetOperatorType(L">=");
    filter.SetValue(100);
    EXPECT_EQ(filter.ToString(), L"DN(mm)>=100");
}

TEST(KyAttrRangeFilter, ComparesAsItsOperatorSays) {
    const double below = 99.5;
    const double above = 100.5;
    const auto meets = [](const wchar_t* text, double value) {
        return KyAttrRangeFilter(text).IsMeetCondition(value);
    };
    EXPECT_FALSE(meets(L"a>100", below));
    EXPECT_FALSE(meets(L"a>100", 100));
    EXPECT_TRUE(meets(L"a>100", above));
    EXPECT_FALSE(meets(L"a>=100", below));
    EXPECT_TRUE(meets(L"a>=100", 100));
    EXPECT_TRUE(meets(L"a>=100", above));
    EXPECT_TRUE(meets(L"a<=100", below));
    EXPECT_TRUE(meets(L"a<=100", 100));
    EXPECT_FALSE(meets(L"a<=100", above));
    EXPECT_TRUE(meets(L"a<100", below));
    EXPECT_FALSE(meets(L"a<100", 100));
    EXPECT_FALSE(meets(L"a<100", above));
}

TEST(KyAttrRangeFilter, MeetsEqualityBelowATinyDifference) {
    const KyAttrRangeFilter filter(L"a=100");
    EXPECT_TRUE(filter.IsMeetCondition(100.000009));
    EXPECT_TRUE(filter.IsMeetCondition(99.999991));
    EXPECT_FALSE(filter.IsMeetCondition(100.000011));
    EXPECT_FALSE(filter.IsMeetCondition(99.999989));
    const KyAttrRangeFilter zero(L"a=0");
    EXPECT_FALSE(zero.IsMeetCondition(1e-5)) << "the bound itself is outside";
    EXPECT_TRUE(zero.IsMeetCondition(std::nextafter(1e-5, 0.0)));
}

TEST(KyAttrRangeFilter, IsMetByNothingWithAnUnknownOperator) {
    KyAttrRangeFilter filter(L"a=100");
    for (const wchar_t* operatorType : {L"", L"==", L"=>", L"!="}) {
        filter.SetOperatorType(operatorType);
        EXPECT_FALSE(filter.IsMeetCondition(100));
    }
}

TEST(KyAttrRangeFilter, IsMetByNoNanUnderAnyOperator) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const wchar_t* text : {L"a<1", L"a<=1", L"a=1", L"a>=1", L"a>1"}) {
        EXPECT_FALSE(KyAttrRangeFilter(text).IsMeetCondition(nan));
    }
}

TEST(KyAttrRangeFilter, IsEqualToAFilterOfTheSameText) {
    const KyAttrRangeFilter filter(L"DN>=100");
    const KyAttrRangeFilter spaced(L"  DN  >=  100  ");
    const KyAttrRangeFilter other(L"DN>=101");
    EXPECT_TRUE(filter.Equal(&spaced));
    EXPECT_TRUE(filter.Equal(&filter));
    EXPECT_FALSE(filter.Equal(&other));
    EXPECT_FALSE(filter.Equal(nullptr));
}

TEST(KyAttrRangeFilter, IsUnequalToAFilterOfAnotherType) {
    class OtherFilter : public KyAttrRangeFilter {
      public:
        using KyAttrRangeFilter::KyAttrRangeFilter;
        EnumFilterType GetFilterType() const override { return static_cast<EnumFilterType>(2); }
    };
    const OtherFilter other(L"DN>=100");
    EXPECT_FALSE(KyAttrRangeFilter(L"DN>=100").Equal(&other));
}

TEST(KyAttrRangeFilter, ClonesThroughItsText) {
    KyAttrRangeFilter filter(L"DN(mm)>=100");
    const std::unique_ptr<IKyCollisionFilter> copy(filter.Clone());
    EXPECT_TRUE(copy->Equal(&filter));
    EXPECT_EQ(copy->GetFilterType(), 1);

    filter.SetFieldName(L"a=b");
    filter.SetOperatorType(L"=");
    const std::unique_ptr<IKyCollisionFilter> odd(filter.Clone());
    EXPECT_EQ(odd->ToString(), L"=0") << "a=b(mm)=100 splits into three parts";
}

TEST(KyAttrRangeFilter, ClonesANumberBeyondASignedOneAsTheLargestOfThese) {
    KyAttrRangeFilter filter(L"DN=-1");
    ASSERT_EQ(filter.ToString(), L"DN=4294967295");
    const std::unique_ptr<IKyCollisionFilter> copy(filter.Clone());
    EXPECT_EQ(copy->ToString(), L"DN=2147483647");
    EXPECT_EQ(KyAttrRangeFilter(L"DN=-9999999999").GetValue(), 2147483648u);
}

TEST(KyAttrRangeFilter, CopiesAllFields) {
    KyAttrRangeFilter filter(L"a(b)<7");
    const KyAttrRangeFilter copy(filter);
    ExpectFields(copy, L"a", L"b", L"<", 7);
    KyAttrRangeFilter assigned(L"");
    assigned = filter;
    ExpectFields(assigned, L"a", L"b", L"<", 7);
}

TEST(KyAttrRangeFilter, IsShownAsDn) {
    EXPECT_EQ(KyAttrRangeFilter(L"管径<5").GetShortName(), L"DN");
    EXPECT_EQ(KyAttrRangeFilter(L"").GetFilterType(), eFilterAttrRange);
    EXPECT_EQ(eFilterAttrRange, 1);
}

TEST(KyAttrRangeFilter, ReadsBackWhatItWroteForRandomFields) {
    std::mt19937 random(11);
    const std::wstring operators[] = {L"<", L"<=", L"=", L">=", L">"};
    const std::wstring names[] = {L"DN", L"管径", L"", L"a b"};
    const std::wstring units[] = {L"", L"mm", L"英寸"};
    for (int round = 0; round < 1000; ++round) {
        KyAttrRangeFilter filter(L"");
        filter.SetFieldName(names[random() % 4]);
        filter.SetUnit(units[random() % 3]);
        filter.SetOperatorType(operators[random() % 5]);
        filter.SetValue(static_cast<unsigned int>(random() & 0x7FFFFFFF));
        const KyAttrRangeFilter again(filter.ToString());
        ASSERT_TRUE(again.Equal(&filter));
        ASSERT_EQ(again.GetFieldName(), filter.GetFieldName());
        ASSERT_EQ(again.GetUnit(), filter.GetUnit());
    }
}

TEST(KyAttrRangeFilter, DoesNotDependOnTheProcessLocale) {
    const kycbtest::LocaleScope locale("de_DE");
    if (!locale.IsActive()) GTEST_SKIP() << locale.WhyInactive();
    EXPECT_EQ(KyAttrRangeFilter(L"DN>=1000000").ToString(), L"DN>=1000000");
}

}  // namespace
}  // namespace KYCOLLISION::Rule
