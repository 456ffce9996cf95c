// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyExcludeItem.h"

#include <gtest/gtest.h>

namespace KYCOLLISION::Rule {
namespace {

TEST(KyExcludeItem, ComparesTheNamesDownToItsLevel) {
    const auto equal = [](int level, const wchar_t* dalei, const wchar_t* xiaolei) {
        const KyExcludeItem a{level, L"s", L"d", L"x"};
        const KyExcludeItem b{level, L"s", dalei, xiaolei};
        return a == b;
    };
    EXPECT_TRUE(equal(0, L"other", L"other"));
    EXPECT_TRUE(equal(1, L"d", L"other"));
    EXPECT_FALSE(equal(1, L"other", L"x"));
    EXPECT_TRUE(equal(2, L"d", L"x"));
    EXPECT_FALSE(equal(2, L"d", L"other"));
    EXPECT_FALSE(equal(2, L"other", L"x"));
}

TEST(KyExcludeItem, ComparesAllNamesAtOtherLevels) {
    for (const int level : {-1, 3, 7}) {
        const KyExcludeItem a{level, L"s", L"d", L"x"};
        EXPECT_TRUE(a == a);
        EXPECT_FALSE(a == (KyExcludeItem{level, L"s", L"d", L"other"}));
        EXPECT_FALSE(a == (KyExcludeItem{level, L"s", L"other", L"x"}));
        EXPECT_FALSE(a == (KyExcludeItem{level, L"other", L"d", L"x"}));
    }
}

TEST(KyExcludeItem, DiffersInLevelSpecialtyAndCase) {
    const KyExcludeItem a{0, L"s", L"", L""};
    EXPECT_FALSE(a == (KyExcludeItem{1, L"s", L"", L""}));
    EXPECT_FALSE(a == (KyExcludeItem{0, L"S", L"", L""}));
}

}  // namespace
}  // namespace KYCOLLISION::Rule
