// SPDX-License-Identifier: Apache-2.0
#include "BuiltinRules.h"

#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

namespace ifchost {
namespace {

using KYCOLLISION::MODEL::AttCategory;
using namespace KYCOLLISION::Rule;

KyCollisionMode ModeFor(const AttCategory& kind) {
    KyCollisionMode mode;
    if (kind.IsQzlb_JJP()) {
        mode.SetModeType(eModeClearance);
    } else {
        mode.SetModeType(eModeTolerance);
        mode.SetTolerance(kBuiltinTolerance);
    }
    return mode;
}

std::unique_ptr<KyCollisionRuleItem> ItemFor(AttCategory kind) {
    auto item = std::make_unique<KyCollisionRuleItem>();
    item->SetSpecName(kind.specialty);
    item->SetAttName(kind.categoryIndex());
    item->SetMode(ModeFor(kind));
    KyExcludeItem ownSpecialty;
    ownSpecialty.level = 0;
    ownSpecialty.specialty = kind.specialty;
    item->AddExcludeItem(kind.specialty, ownSpecialty);
    return item;
}

}  // namespace

std::unique_ptr<KyCollisionRuleMgr> MakeBuiltinRules(const std::vector<AttCategory>& kinds) {
    auto rule = std::make_unique<KyCollisionRule>();
    rule->SetRuleName(L"built-in");
    for (const AttCategory& kind : kinds) {
        auto item = ItemFor(kind);
        if (rule->AddRuleItem(item.get(), true)) item.release();
    }
    auto manager = std::make_unique<KyCollisionRuleMgr>();
    manager->SetRule(rule.release(), true);
    return manager;
}

}  // namespace ifchost
