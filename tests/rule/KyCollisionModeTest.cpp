// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionMode.h"

#include <gtest/gtest.h>

namespace KYCOLLISION::Rule {
namespace {

TEST(KyCollisionMode, IsHardWithoutToleranceByDefault) {
    const KyCollisionMode mode;
    EXPECT_EQ(mode.GetModeType(), 0);
    EXPECT_EQ(mode.GetTolerance(), 0);
}

TEST(KyCollisionMode, StoresAToleranceThatCountsInModeTwoOnly) {
    KyCollisionMode mode;
    mode.InitParams(static_cast<EnumModeType>(1), L"300");
    EXPECT_EQ(mode.GetTolerance(), 0);
    for (const int type : {-1, 0, 1, 3, 100}) {
        mode.SetModeType(static_cast<EnumModeType>(type));
        EXPECT_EQ(mode.GetTolerance(), 0) << type;
        EXPECT_EQ(mode.GetModeType(), type);
    }
    mode.SetModeType(static_cast<EnumModeType>(2));
    EXPECT_EQ(mode.GetTolerance(), 300) << "it was stored all the time";
    mode.SetTolerance(-7);
    EXPECT_EQ(mode.GetTolerance(), -7);
}

TEST(KyCollisionMode, ReadsTheLeadingWholeNumber) {
    KyCollisionMode mode;
    mode.InitParams(eModeTolerance, L" 150mm");
    EXPECT_EQ(mode.GetTolerance(), 150);
    mode.InitParams(eModeTolerance, L"abc");
    EXPECT_EQ(mode.GetTolerance(), 0);
    mode.InitParams(eModeTolerance, L"-20.9");
    EXPECT_EQ(mode.GetTolerance(), -20);
    mode.InitParams(eModeTolerance, L"99999999999");
    EXPECT_EQ(mode.GetTolerance(), 2147483647);
}

}  // namespace
}  // namespace KYCOLLISION::Rule
