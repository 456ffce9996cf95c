// SPDX-License-Identifier: Apache-2.0
// The sample building, checked under three rule sets, against the list of clashes that its
// generator works out from exact solids.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "ConvertedModels.h"
#include "ifchost/BuiltinRules.h"
#include "ifchost/HostText.h"
#include "ifchost/IfcDataSource.h"

namespace ifchost {
namespace {

using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::RESULT::KyResultItem;
using namespace KYCOLLISION::Rule;
using nlohmann::json;
using Pair = std::set<std::string>;
using Rules = std::unique_ptr<KyCollisionRuleMgr>;
namespace fs = std::filesystem;

fs::path SampleFile(const char* name) {
    return fs::path(IFCHOST_SOURCE_DIR) / "samples" / name;
}

// One item for each kind; each either excludes its own specialty or nothing.
Rules MakeRules(const std::vector<AttCategory>& kinds, bool excludeOwn,
                const std::function<bool(const AttCategory&)>& hasClearance) {
    auto rule = std::make_unique<KyCollisionRule>();
    for (AttCategory kind : kinds) {
        auto item = std::make_unique<KyCollisionRuleItem>();
        item->SetSpecName(kind.specialty);
        item->SetAttName(kind.categoryIndex());
        KyCollisionMode mode;
        mode.SetModeType(hasClearance(kind) ? eModeClearance : eModeTolerance);
        mode.SetTolerance(2);
        item->SetMode(mode);
        KyExcludeItem own;
        own.specialty = kind.specialty;
        if (excludeOwn) item->AddExcludeItem(kind.specialty, own);
        if (rule->AddRuleItem(item.get(), true)) item.release();
    }
    auto manager = std::make_unique<KyCollisionRuleMgr>();
    manager->SetRule(rule.release(), true);
    return manager;
}

struct Clash {
    std::array<double, 3> point{};
    std::wstring offsets;
};

class SampleBuilding : public ::testing::Test {
  protected:
    void SetUp() override {
        if (const std::string why = testing::WhyNoConversion(); !why.empty()) GTEST_SKIP() << why;
        workset_ = testing::ConvertToWorkset({SampleFile("building.ifc")}, folder_);
        expected_ = json::parse(testing::ReadAll(SampleFile("expected-clashes.json")));
    }

    std::map<Pair, Clash> Check(Rules rules) {
        CCollisionCheck check;
        check.SetDataSource(new IfcDataSource(workset_));
        check.SetCollisionRule(rules.release());
        EXPECT_TRUE(check.InitCollisionModel());
        const auto floors = workset_->CollisionFloors();
        EXPECT_EQ(check.CollisionCheck(floors), KYCOLLISION::LOGIC::CHECK_SUCCESS);
        std::map<std::pair<int, std::wstring>, std::vector<KyResultItem*>> results;
        check.GetCollisionResult(floors, results);
        std::map<Pair, Clash> clashes;
        for (const auto& [key, items] : results) {
            for (KyResultItem* owned : items) {
                const std::unique_ptr<KyResultItem> item(owned);
                const auto [x, y, z] = item->GetClashPoint();
                clashes[{GlobalId(item->GetObjGuidA()), GlobalId(item->GetObjGuidB())}] = {
                    {x, y, z}, item->GetClashModel()};
            }
        }
        return clashes;
    }

    std::string GlobalId(const std::wstring& guid) const {
        return workset_->GlobalId(*workset_->FindComponent(1, guid));
    }

    // The pairs, and where each has its clash point, are those that the list gives for the rules.
    void ExpectListed(const std::map<Pair, Clash>& found, const char* ruleSet) const {
        std::size_t listed = 0;
        for (const json& clash : expected_["clashes"]) {
            if (!clash["rules"].contains(ruleSet)) continue;
            ++listed;
            const auto match = found.find({clash["a"]["guid"], clash["b"]["guid"]});
            if (match == found.end()) {
                ADD_FAILURE() << "not found: " << clash["name"];
                continue;
            }
            const auto region = clash["rules"][ruleSet]["region"].get<std::array<double, 6>>();
            constexpr double kSlack =
                1.0;  // points are written to two decimals, circles are chords
            for (std::size_t axis = 0; axis < 3; ++axis) {
                EXPECT_GE(match->second.point[axis], region[axis] - kSlack) << clash["name"];
                EXPECT_LE(match->second.point[axis], region[axis + 3] + kSlack) << clash["name"];
            }
        }
        EXPECT_GT(listed, 5U);
        EXPECT_EQ(found.size(), listed);
    }

    testing::TemporaryFolder folder_;
    testing::SilentMessages silence_;
    std::shared_ptr<const IfcWorkset> workset_;
    json expected_;
};

TEST_F(SampleBuilding, HasItsListedClashesUnderTheBuiltInRules) {
    ExpectListed(Check(MakeBuiltinRules(workset_->CheckedKinds())), "builtin");
}

TEST_F(SampleBuilding, HasItsListedClashesWithSpacingBetweenRuns) {
    const auto isRun = [](const AttCategory& kind) { return kind.IsFgQjPsLsRs_JJP() > 0; };
    ExpectListed(Check(MakeRules(workset_->CheckedKinds(), true, isRun)), "spacing");
}

TEST_F(SampleBuilding, HasItsListedClashesWithToleranceThroughout) {
    const auto never = [](const AttCategory&) { return false; };
    ExpectListed(Check(MakeRules(workset_->CheckedKinds(), false, never)), "tolerance");
}

TEST_F(SampleBuilding, ChecksExactlyTheListedComponentsOnTheirFloors) {
    std::map<std::string, std::string> listed;
    for (const json& component : expected_["components"]) {
        listed[component["guid"]] = component["floor"];
    }
    std::map<std::string, std::string> checked;
    for (const WorksetComponent& component : workset_->Components()) {
        if (component.role != ComponentRole::Body) continue;
        checked[workset_->GlobalId(component)] = ToUtf8(workset_->Floor(component).name);
    }
    EXPECT_EQ(checked, listed);
    EXPECT_TRUE(workset_->Unmapped().empty());
}

TEST_F(SampleBuilding, PutsEveryComponentIntoItsListedSpecialty) {
    for (const json& component : expected_["components"]) {
        const auto hex = component["uuid"].get<std::string>();
        std::wstring guid;
        std::copy_if(hex.begin(), hex.end(), std::back_inserter(guid),
                     [](char c) { return c != '-'; });
        const auto* found = workset_->FindComponent(1, guid);
        ASSERT_NE(found, nullptr) << component["name"];
        const auto category = component["category"].get<std::string>();
        EXPECT_EQ(ToUtf8(found->category.specialty), category.substr(0, category.find('/')))
            << component["name"];
    }
}

}  // namespace
}  // namespace ifchost
