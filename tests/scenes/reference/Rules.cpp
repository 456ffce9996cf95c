// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Rules.h"

#include <cmath>
#include <cstdint>
#include <stdexcept>

#include "scenes/reference/Texts.h"

namespace kycb::scenes::reference {

namespace {

bool IsRulePath(const std::wstring& path) {
    const std::vector<std::wstring> parts = Split(path, L"/");
    if (parts.size() == 3) return true;
    if (parts.size() != 2) return false;
    const std::wstring specialty = LowerCase(parts[0]);
    return specialty == L"revit" || specialty == L"tekla";
}

struct Condition {
    std::wstring comparison = L"=";
    std::uint32_t value = 0;
};

std::wstring LastComparison(const std::wstring& text) {
    const std::size_t at = text.find_last_of(L"<=>");
    if (at == std::wstring::npos) return L"";
    const bool isTwoCharacters =
        text[at] == L'=' && at > 0 && (text[at - 1] == L'<' || text[at - 1] == L'>');
    return isTwoCharacters ? text.substr(at - 1, 2) : text.substr(at, 1);
}

// Reads what decides of "DN(mm)>=100": the comparison and the number.
Condition ReadCondition(const std::wstring& text) {
    Condition condition;
    const std::wstring comparison = LastComparison(text);
    if (comparison.empty()) return condition;
    condition.comparison = comparison;
    const std::vector<std::wstring> parts = Split(text, comparison);
    if (parts.size() != 2) return condition;
    int number = 0;
    try {
        number = std::stoi(parts[1]);
    } catch (const std::invalid_argument&) {
        number = 0;
    }
    condition.value = static_cast<std::uint32_t>(number);
    return condition;
}

// What a mode shrinks its body by.
int Shrink(const SceneRule& rule) {
    return rule.modeType == 2 ? -rule.tolerance : 0;
}

int SingleClearance(int runKind) {
    if (runKind == 1) return 200;
    return runKind >= 2 && runKind <= 5 ? 50 : 0;
}

int Spacing(int runKindA, int runKindB) {
    static const int table[6][6] = {
        {150, 150, 150, 150, 150, 200}, {150, 150, 150, 150, 150, 50},
        {150, 150, 150, 400, 400, 50},  {150, 150, 400, 150, 150, 50},
        {150, 150, 400, 150, 150, 50},  {200, 50, 50, 50, 50, 0},
    };
    return table[runKindA - 1][runKindB - 1];
}

// One of the two asks for a clearance: the kinds decide.
Offsets OffsetsByKinds(const SceneRule& ruleA, const AttCategory& kindA, const SceneRule& ruleB,
                       const AttCategory& kindB) {
    const bool isMemberA = ValueOf(StructuralMembers(), kindA, 0) == 1;
    const bool isMemberB = ValueOf(StructuralMembers(), kindB, 0) == 1;
    const int runA = ValueOf(ServicesRuns(), kindA, 0);
    const int runB = ValueOf(ServicesRuns(), kindB, 0);
    const bool isSpacingPair = (isMemberA || runA > 0) && (isMemberB || runB > 0);
    if (!isSpacingPair) return {Shrink(ruleA), Shrink(ruleB)};
    if (runA < 1) return {0, SingleClearance(runB)};
    if (runB > 0) return {Spacing(runA, runB) / 2, Spacing(runA, runB) / 2};
    return {SingleClearance(runA), 0};
}

}  // namespace

std::vector<SceneRule> UsableRules(const SceneRun& run) {
    std::vector<SceneRule> usable;
    for (const SceneRule& rule : run.rules) {
        if (IsRulePath(rule.path)) {
            usable.push_back(rule);
        } else if (run.route == RuleRoute::kXmlText) {
            return {};
        }
    }
    return usable;
}

const SceneRule* FindRule(const std::vector<SceneRule>& rules, const std::wstring& path) {
    for (const SceneRule& rule : rules) {
        if (rule.valid && rule.path == path) return &rule;
    }
    return nullptr;
}

bool Admits(const SceneRule& rule, const std::wstring& otherPath) {
    const std::vector<std::wstring> parts = Split(otherPath, L"/");
    if (parts.size() < 2) return false;
    for (const SceneExclude& exclude : rule.excludes) {
        if (exclude.key != parts[0]) continue;
        const auto& item = exclude.item;
        const bool isMajor = item.dalei == parts[1];
        const bool isMinor = isMajor && parts.size() > 2 && item.xiaolei == parts[2];
        if (item.level == 0 || (item.level == 1 && isMajor) || (item.level == 2 && isMinor)) {
            return false;
        }
    }
    return true;
}

bool MeetsFilter(const std::wstring& filter, double value) {
    const Condition condition = ReadCondition(filter);
    const double threshold = condition.value;
    if (condition.comparison == L">") return value > threshold;
    if (condition.comparison == L">=") return value >= threshold;
    if (condition.comparison == L"<=") return value <= threshold;
    if (condition.comparison == L"<") return value < threshold;
    return std::abs(threshold - value) < 1e-5;
}

Offsets OffsetsOf(const SceneRule& ruleA, const AttCategory& kindA, const SceneRule& ruleB,
                  const AttCategory& kindB) {
    const int a = ruleA.modeType;
    const int b = ruleB.modeType;
    if (a == 0 && b == 2) return {0, Shrink(ruleB)};
    if (a == 2 && (b == 0 || b == 2)) return {Shrink(ruleA), Shrink(ruleB)};
    const bool isByKinds = (a == 0 && b == 1) || (a == 2 && b == 1) || (a == 1 && b <= 2);
    return isByKinds ? OffsetsByKinds(ruleA, kindA, ruleB, kindB) : Offsets{};
}

}  // namespace kycb::scenes::reference
