// SPDX-License-Identifier: Apache-2.0
#include "kyclash/RuleChoice.h"

#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <ostream>
#include <set>
#include <utility>

#include "ifchost/BuiltinRules.h"
#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"
#include "kyclash/RuleFile.h"
#include "kyclash/RuleMatrix.h"
#include "kyclash/RuleOutcome.h"
#include "kyclash/SystemRoot.h"

namespace kyclash {
namespace {

using ifchost::ToUtf8;

std::optional<ChosenRules> ReadRules(const std::filesystem::path& file, std::string& error) {
    RuleFile read = ReadRuleFile(file);
    if (!read.rules) {
        error = read.error;
        return std::nullopt;
    }
    ChosenRules chosen;
    chosen.rules = std::move(read.rules);
    chosen.report.file = ifchost::PathText(file);
    chosen.report.contentHash = ifchost::HashFile(file).value_or("");
    for (const RuleRemark& remark : read.remarks)
        chosen.report.remarks.push_back(remark.place + ": " + remark.text);
    return chosen;
}

// Components by the path of their kind.
std::map<std::wstring, std::size_t> CountKinds(const ifchost::IfcWorkset& workset) {
    std::map<std::wstring, std::size_t> counts;
    for (const auto& component : workset.Components()) {
        if (component.role != ifchost::ComponentRole::Body) continue;
        auto kind = component.category;
        ++counts[kind.categoryIndex()];
    }
    return counts;
}

void DescribeItems(const std::vector<RuledKind>& kinds, ReportedRules& report) {
    for (const RuledKind& kind : kinds) {
        if (!kind.isOn) continue;
        ++report.modes[ModeText(*kind.item->GetMode())];
        const auto* filter = kind.item->GetFilter();
        if (filter != nullptr) ++report.filters[ToUtf8(filter->ToString())];
    }
}

void CompareWithModels(const std::vector<RuledKind>& kinds, const ifchost::IfcWorkset& workset,
                       ReportedRules& report) {
    const auto counts = CountKinds(workset);
    std::set<std::wstring> on;
    std::set<std::wstring> off;
    for (const RuledKind& kind : kinds) {
        (kind.isOn ? on : off).insert(kind.path);
        if (kind.isOn && counts.count(kind.path) == 0) {
            report.withoutComponent.push_back(ToUtf8(kind.path));
        }
    }
    for (const auto& [path, count] : counts) {
        if (on.count(path) != 0) continue;
        auto& list = off.count(path) != 0 ? report.switchedOff : report.withoutRule;
        list.push_back({ToUtf8(path), count});
    }
}

}  // namespace

std::optional<ChosenRules> ChooseRules(const std::optional<std::filesystem::path>& file,
                                       std::string& error) {
    if (!file || *file != kBuiltinRulesName) {
        return ReadRules(file.value_or(DefaultRulesFile()), error);
    }
    ChosenRules builtin;
    builtin.report.file = kBuiltinRulesName;
    return builtin;
}

std::optional<ChosenRules> ChooseRules(const std::optional<std::filesystem::path>& file,
                                       std::ostream& errors) {
    std::string error;
    auto chosen = ChooseRules(file, error);
    if (!chosen) errors << "kyclash: " << error << '\n';
    return chosen;
}

void CompleteRules(ChosenRules& chosen, const ifchost::IfcWorkset& workset) {
    if (!chosen.rules) chosen.rules = ifchost::MakeBuiltinRules(workset.CheckedKinds());
    const auto kinds = KindsOf(*chosen.rules->GetRule());
    DescribeItems(kinds, chosen.report);
    CompareWithModels(kinds, workset, chosen.report);
}

}  // namespace kyclash
