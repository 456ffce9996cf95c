// SPDX-License-Identifier: Apache-2.0
// What the shipped rules do with pairs of kinds. The expected offsets follow from the clearances:
// 200 mm between a duct and structure, 50 mm between other runs and structure, half of 150 mm (of
// 400 mm between drains and pressure or hot-water pipes) on each of two runs; 5 mm tolerance else.
#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

#include <gtest/gtest.h>

#include "ifchost/HostText.h"
#include "kyclash/RuleFile.h"
#include "kyclash/RuleOutcome.h"
#include "kyclash/SystemRoot.h"

namespace kyclash {
namespace {

class DefaultRules : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        file_ = ReadRuleFile(DefaultRulesFile());
        ASSERT_TRUE(file_.rules) << file_.error;
        kinds_ = KindsOf(*file_.rules->GetRule());
        outcomes_ = std::make_unique<RuleOutcomes>(kinds_);
    }
    static void TearDownTestSuite() {
        outcomes_.reset();
        file_ = {};
    }

    static std::size_t Find(const std::wstring& path) {
        const auto found = std::find_if(kinds_.begin(), kinds_.end(),
                                        [&](const RuledKind& kind) { return kind.path == path; });
        if (found == kinds_.end()) throw std::out_of_range(ifchost::ToUtf8(path) + " has no rule");
        return static_cast<std::size_t>(found - kinds_.begin());
    }

    // The offsets of the pair, in the order of the arguments; nothing when it is not tested.
    static std::optional<std::pair<int, int>> Offsets(const std::wstring& a,
                                                      const std::wstring& b) {
        const PairOutcome outcome = outcomes_->Of(Find(a), Find(b));
        const PairOutcome swapped = outcomes_->Of(Find(b), Find(a));
        EXPECT_EQ(outcome.isTested, swapped.isTested);
        EXPECT_EQ(outcome.offsetA, swapped.offsetB);
        EXPECT_EQ(outcome.offsetB, swapped.offsetA);
        if (!outcome.isTested) return std::nullopt;
        return std::make_pair(outcome.offsetA, outcome.offsetB);
    }

    static RuleFile file_;
    static std::vector<RuledKind> kinds_;
    static std::unique_ptr<RuleOutcomes> outcomes_;
};

RuleFile DefaultRules::file_;
std::vector<RuledKind> DefaultRules::kinds_;
std::unique_ptr<RuleOutcomes> DefaultRules::outcomes_;

using Pair = std::pair<int, int>;

TEST_F(DefaultRules, KeepServicesClearOfStructure) {
    EXPECT_EQ(Offsets(L"土建/墙/砖内墙", L"暖通/风管/送风管"), Pair(0, 200));
    EXPECT_EQ(Offsets(L"土建/楼梯楼板/现浇板", L"给排水/管道/给水管"), Pair(0, 50));
    EXPECT_EQ(Offsets(L"土建/几何构件/钢梁", L"电气/电缆桥架/桥架"), Pair(0, 50));
    EXPECT_EQ(Offsets(L"钢筋/柱/框架柱暗柱", L"消防/管网/喷淋管"), Pair(0, 50));
}

TEST_F(DefaultRules, KeepServicesClearOfEachOther) {
    EXPECT_EQ(Offsets(L"暖通/风管/送风管", L"电气/电缆桥架/桥架"), Pair(75, 75));
    EXPECT_EQ(Offsets(L"给排水/管道/污水管", L"给排水/管道/给水管"), Pair(200, 200));
    EXPECT_EQ(Offsets(L"给排水/管道/污水管", L"消防/管网/喷淋管"), Pair(200, 200));
    EXPECT_EQ(Offsets(L"给排水/管道/给水管", L"给排水/管道/热给水管"), Pair(75, 75));
    EXPECT_EQ(Offsets(L"暖通/风管/送风管", L"暖通/风管/回风管"), Pair(75, 75));
}

TEST_F(DefaultRules, LeaveTheOwnNetworkOfARunOut) {
    EXPECT_EQ(Offsets(L"暖通/风管/送风管", L"暖通/风管/送风管"), std::nullopt);
    EXPECT_EQ(Offsets(L"给排水/管道/给水管", L"给排水/管道/其它管"), std::nullopt);
    EXPECT_EQ(Offsets(L"电气/电缆桥架/桥架", L"电气/电缆桥架/托盘"), std::nullopt);
    EXPECT_EQ(Offsets(L"暖通/风管/柔性风管", L"暖通/风口/风口"), std::nullopt);
}

TEST_F(DefaultRules, TolerateFiveMillimetresASideWithinStructure) {
    EXPECT_EQ(Offsets(L"土建/墙/砖内墙", L"土建/墙/砖内墙"), Pair(-5, -5));
    EXPECT_EQ(Offsets(L"土建/柱/砼柱", L"土建/梁/框架梁"), Pair(-5, -5));
    EXPECT_EQ(Offsets(L"土建/基础/独立基础", L"土建/柱/砼柱"), Pair(-5, -5));
}

TEST_F(DefaultRules, TestDoorsAndWindowsAgainstServicesOnly) {
    for (const wchar_t* filling : {L"土建/门.窗.洞/门", L"土建/门.窗.洞/窗"}) {
        EXPECT_EQ(Offsets(filling, L"土建/墙/砖内墙"), std::nullopt);
        EXPECT_EQ(Offsets(filling, L"土建/楼梯楼板/现浇板"), std::nullopt);
        EXPECT_EQ(Offsets(filling, L"土建/门.窗.洞/门"), std::nullopt);
        EXPECT_EQ(Offsets(filling, L"暖通/风管/送风管"), Pair(-5, 0));
        EXPECT_EQ(Offsets(filling, L"给排水/管道/给水管"), Pair(-5, 0));
    }
}

TEST_F(DefaultRules, LeaveOpeningsBarsFastenersFormworkAndTheGroundOut) {
    for (const wchar_t* path :
         {L"土建/门.窗.洞/墙洞", L"土建/板.楼梯/板洞", L"土建/钢筋构件/钢筋", L"土建/连接件/紧固件",
          L"土建/临时构件/模板", L"土建/临时构件/脚手架", L"土建/场地/场地构件", L"钢筋/墙/门洞",
          L"Tekla/钢结构/螺栓"}) {
        EXPECT_FALSE(kinds_[Find(path)].isOn) << ifchost::ToUtf8(path);
    }
}

TEST_F(DefaultRules, TestConnectionsAgainstServicesOnly) {
    for (const wchar_t* part :
         {L"土建/连接件/预埋件", L"土建/连接件/连接板", L"土建/连接件/支座", L"土建/装饰/保温板"}) {
        EXPECT_EQ(Offsets(part, L"土建/梁/框架梁"), std::nullopt);
        EXPECT_EQ(Offsets(part, L"土建/几何构件/钢梁"), std::nullopt);
        EXPECT_EQ(Offsets(part, part), std::nullopt);
        EXPECT_EQ(Offsets(part, L"暖通/风管/送风管"), Pair(-5, 0));
    }
}

TEST_F(DefaultRules, TestTerminalsAgainstOtherServicesOnly) {
    EXPECT_EQ(Offsets(L"暖通/风口/风口", L"土建/装饰/吊顶"), std::nullopt);
    EXPECT_EQ(Offsets(L"给排水/卫生器具/卫生器具", L"土建/墙/砖内墙"), std::nullopt);
    EXPECT_EQ(Offsets(L"消防/消防设备/喷头", L"消防/管网/喷淋管"), std::nullopt);
    EXPECT_EQ(Offsets(L"电气/灯具/灯具", L"暖通/风管/送风管"), Pair(-5, 0));
}

TEST_F(DefaultRules, TestEquipmentAgainstStructureAndOtherServices) {
    EXPECT_EQ(Offsets(L"暖通/设备/空调设备", L"土建/柱/砼柱"), Pair(-5, -5));
    EXPECT_EQ(Offsets(L"暖通/设备/空调设备", L"暖通/风管/送风管"), std::nullopt);
    EXPECT_EQ(Offsets(L"暖通/设备/空调设备", L"给排水/管道/给水管"), Pair(-5, 0));
    EXPECT_EQ(Offsets(L"电气/电气设备/配电箱", L"土建/墙/砖内墙"), std::nullopt);
    EXPECT_EQ(Offsets(L"电气/电气设备/配电箱", L"土建/柱/砼柱"), Pair(-5, -5));
}

TEST_F(DefaultRules, TestFurnitureAgainstServicesOnly) {
    EXPECT_EQ(Offsets(L"土建/家具/家具", L"土建/墙/砖内墙"), std::nullopt);
    EXPECT_EQ(Offsets(L"土建/家具/家具", L"给排水/卫生器具/卫生器具"), std::nullopt);
    EXPECT_EQ(Offsets(L"土建/家具/家具", L"给排水/管道/污水管"), Pair(-5, 0));
}

TEST_F(DefaultRules, MeasurePipesByTheSameFilterOnEveryItem) {
    ASSERT_FALSE(kinds_.empty());
    for (const RuledKind& kind : kinds_) {
        ASSERT_TRUE(kind.item->GetFilter());
        EXPECT_EQ(kind.item->GetFilter()->ToString(), L"DN(mm)>=32");
        EXPECT_TRUE(kind.item->GetFilter()->IsMeetCondition(32.0));
        EXPECT_FALSE(kind.item->GetFilter()->IsMeetCondition(25.0));
    }
}

}  // namespace
}  // namespace kyclash
