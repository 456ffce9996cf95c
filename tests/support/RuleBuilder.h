// SPDX-License-Identifier: Apache-2.0
// Rule sets for tests in a few words.
//
//     RuleBuilder rules;
//     rules.Item(kWall).Mode(eModeTolerance, 30);
//     rules.Item(kDrain).Filter(L"DN>=100").Exclude({.level = 0, .specialty = L"暖通"});
//     driver.SetCollisionRule(rules.Build().release());
#pragma once

#include "KYCollisionBase/rule/KyCollisionMode.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"
#include "KYCollisionBase/rule/KyExcludeItem.h"

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "support/Kinds.h"

namespace kycb::test {

/// One kind that takes part; hard mode, no filter and no exclusions unless told otherwise.
struct RuleSpec {
    AttCategory kind;
    KYCOLLISION::Rule::EnumModeType modeType = KYCOLLISION::Rule::eModeHard;
    int tolerance = 0;
    std::optional<std::wstring> filter;
    std::vector<KYCOLLISION::Rule::KyExcludeItem> excludes;

    RuleSpec& Mode(KYCOLLISION::Rule::EnumModeType type, int toleranceMm = 0);
    RuleSpec& Mode(int type, int toleranceMm = 0);
    RuleSpec& Filter(const std::wstring& text);
    RuleSpec& Exclude(const KYCOLLISION::Rule::KyExcludeItem& item);
};

class RuleBuilder {
  public:
    /// Adds a kind; the reference stays valid.
    RuleSpec& Item(const AttCategory& kind);

    std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> Build() const;

  private:
    std::deque<RuleSpec> items_;
};

/// A rule set in which the given kinds take part in hard mode.
std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> HardRulesFor(
    const std::vector<AttCategory>& kinds);

}  // namespace kycb::test
