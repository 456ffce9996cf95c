// SPDX-License-Identifier: Apache-2.0
#include "support/RuleBuilder.h"

#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

namespace kycb::test {

using namespace KYCOLLISION::Rule;

RuleSpec& RuleSpec::Mode(EnumModeType type, int toleranceMm) {
    modeType = type;
    tolerance = toleranceMm;
    return *this;
}

RuleSpec& RuleSpec::Mode(int type, int toleranceMm) {
    return Mode(static_cast<EnumModeType>(type), toleranceMm);
}

RuleSpec& RuleSpec::Filter(const std::wstring& text) {
    filter = text;
    return *this;
}

RuleSpec& RuleSpec::Exclude(const KyExcludeItem& item) {
    excludes.push_back(item);
    return *this;
}

RuleSpec& RuleBuilder::Item(const AttCategory& kind) {
    RuleSpec& spec = items_.emplace_back();
    spec.kind = kind;
    return spec;
}

std::unique_ptr<KyCollisionRuleMgr> RuleBuilder::Build() const {
    auto rule = std::make_unique<KyCollisionRule>();
    for (const RuleSpec& spec : items_) {
        auto item = std::make_unique<KyCollisionRuleItem>();
        item->SetSpecName(spec.kind.specialty);
        item->SetAttName(PathOf(spec.kind));
        KyCollisionMode mode;
        mode.SetModeType(spec.modeType);
        mode.SetTolerance(spec.tolerance);
        item->SetMode(mode);
        if (spec.filter) item->SetFilter(new KyAttrRangeFilter(*spec.filter));
        for (const KyExcludeItem& exclude : spec.excludes) {
            item->AddExcludeItem(exclude.specialty, exclude);
        }
        if (rule->AddRuleItem(item.get(), true)) item.release();
    }
    auto manager = std::make_unique<KyCollisionRuleMgr>();
    manager->SetRule(rule.release(), true);
    return manager;
}

std::unique_ptr<KyCollisionRuleMgr> HardRulesFor(const std::vector<AttCategory>& kinds) {
    RuleBuilder rules;
    for (const AttCategory& kind : kinds) {
        rules.Item(kind);
    }
    return rules.Build();
}

}  // namespace kycb::test
