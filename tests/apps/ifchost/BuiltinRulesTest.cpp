// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <gtest/gtest.h>

#include "ifchost/BuiltinRules.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;
using namespace KYCOLLISION::Rule;

const std::vector<AttCategory> kKinds = {
    AttCategory(L"土建", L"墙", L"砼外墙"), AttCategory(L"土建", L"家具", L"家具"),
    AttCategory(L"暖通", L"风管", L"送风管"), AttCategory(L"给排水", L"管道", L"污水管")};

TEST(BuiltinRules, HaveOneItemForEachKind) {
    const auto rules = MakeBuiltinRules(kKinds);
    for (AttCategory kind : kKinds) {
        const auto* item = rules->GetRuleItem(kind.categoryIndex());
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->GetAttName(), kind.categoryIndex());
        EXPECT_EQ(item->GetFilter(), nullptr);
    }
    EXPECT_EQ(rules->GetRuleItem(L"土建/门.窗.洞/墙洞"), nullptr);
}

TEST(BuiltinRules, CheckStructureByClearanceAndTheRestByTolerance) {
    const auto rules = MakeBuiltinRules(kKinds);
    const auto mode = [&rules](const wchar_t* path) {
        return *rules->GetRuleItem(path)->GetMode();
    };
    EXPECT_EQ(mode(L"土建/墙/砼外墙").GetModeType(), eModeClearance);
    EXPECT_EQ(mode(L"土建/家具/家具").GetModeType(), eModeTolerance);
    EXPECT_EQ(mode(L"土建/家具/家具").GetTolerance(), 2);
    EXPECT_EQ(mode(L"暖通/风管/送风管").GetModeType(), eModeTolerance);
    EXPECT_EQ(mode(L"暖通/风管/送风管").GetTolerance(), 2);
}

TEST(BuiltinRules, ExcludeTheOwnSpecialtyOnly) {
    const auto rules = MakeBuiltinRules(kKinds);
    const auto* wall = rules->GetRuleItem(L"土建/墙/砼外墙");
    EXPECT_FALSE(wall->IsCollisionWith(L"土建/家具/家具"));
    EXPECT_FALSE(wall->IsCollisionWith(L"土建/墙/砼外墙"));
    EXPECT_TRUE(wall->IsCollisionWith(L"暖通/风管/送风管"));
    const auto* duct = rules->GetRuleItem(L"暖通/风管/送风管");
    EXPECT_TRUE(duct->IsCollisionWith(L"给排水/管道/污水管"));
    EXPECT_FALSE(duct->IsCollisionWith(L"暖通/水管/热供水管"));
}

TEST(BuiltinRules, AreEmptyForAnEmptyModel) {
    EXPECT_EQ(MakeBuiltinRules({})->GetRuleItem(L"土建/墙/砼外墙"), nullptr);
}

}  // namespace
}  // namespace ifchost
