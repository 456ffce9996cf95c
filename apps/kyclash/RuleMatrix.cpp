// SPDX-License-Identifier: Apache-2.0
#include "kyclash/RuleMatrix.h"

#include "KYCollisionBase/rule/IKyCollisionFilter.h"
#include "KYCollisionBase/rule/KyExcludeItem.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <vector>

#include <nlohmann/json.hpp>

#include "ifchost/HostText.h"
#include "kyclash/RuleOutcome.h"

namespace kyclash {
namespace {

using ifchost::ToUtf8;
using Json = nlohmann::ordered_json;
using KYCOLLISION::Rule::KyCollisionMode;
using KYCOLLISION::Rule::KyCollisionRule;
using KYCOLLISION::Rule::KyCollisionRuleItem;
using KYCOLLISION::Rule::KyExcludeItem;

std::string ExcludePath(const KyExcludeItem& exclude) {
    std::wstring path = exclude.specialty;
    if (exclude.level >= 1) path += L"/" + exclude.dalei;
    if (exclude.level >= 2) path += L"/" + exclude.xiaolei;
    return ToUtf8(path);
}

std::vector<std::string> ExcludesOf(const KyCollisionRuleItem& item) {
    std::vector<std::string> paths;
    for (const std::wstring& specialty : item.GetExcludeSpecArray()) {
        for (const KyExcludeItem& exclude : *item.GetExcludeItemArray(specialty))
            paths.push_back(ExcludePath(exclude));
    }
    return paths;
}

std::string FilterText(const KyCollisionRuleItem& item) {
    return item.GetFilter() == nullptr ? std::string() : ToUtf8(item.GetFilter()->ToString());
}

// One cell; the same letters as in the legend.
char Symbol(const PairOutcome& outcome) {
    if (!outcome.isTested) return '.';
    if (outcome.offsetA > 0 || outcome.offsetB > 0) return 'c';
    return outcome.offsetA < 0 || outcome.offsetB < 0 ? 't' : 'h';
}

// The kinds that are switched on, by major category, in the order of the rule set.
struct Majors {
    explicit Majors(const std::vector<RuledKind>& kinds) {
        std::map<std::wstring, std::size_t> known;
        for (std::size_t i = 0; i < kinds.size(); ++i) {
            if (!kinds[i].isOn) continue;
            const std::wstring name = kinds[i].kind.specialty + L"/" + kinds[i].kind.dalei;
            const auto [place, isNew] = known.emplace(name, names.size());
            if (isNew) {
                names.push_back(ToUtf8(name));
                members.emplace_back();
            }
            members[place->second].push_back(i);
        }
    }

    std::vector<std::string> names;
    std::vector<std::vector<std::size_t>> members;
};

char Cell(const RuleOutcomes& outcomes, const std::vector<std::size_t>& row,
          const std::vector<std::size_t>& column) {
    char symbol = '\0';
    for (const std::size_t a : row) {
        for (const std::size_t b : column) {
            const char one = Symbol(outcomes.Of(a, b));
            if (symbol == '\0') symbol = one;
            if (symbol != one) return '*';
        }
    }
    return symbol;
}

std::string Padded(const std::string& text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

void WriteKinds(const std::vector<RuledKind>& kinds, std::ostream& out) {
    for (const RuledKind& kind : kinds) {
        out << (kind.isOn ? "on   " : "off  ") << ToUtf8(kind.path) << "  "
            << ModeText(*kind.item->GetMode());
        const std::string filter = FilterText(*kind.item);
        if (!filter.empty()) out << "; " << filter;
        const char* separator = "; not against ";
        for (const std::string& path : ExcludesOf(*kind.item)) {
            out << separator << path;
            separator = ", ";
        }
        out << '\n';
    }
}

Json KindJson(const RuledKind& kind) {
    return {{"path", ToUtf8(kind.path)},
            {"on", kind.isOn},
            {"mode", static_cast<int>(kind.item->GetMode()->GetModeType())},
            {"tolerance", kind.item->GetMode()->GetTolerance()},
            {"filter", FilterText(*kind.item)},
            {"excludes", ExcludesOf(*kind.item)}};
}

}  // namespace

std::string ModeText(const KyCollisionMode& mode) {
    switch (mode.GetModeType()) {
        case KYCOLLISION::Rule::eModeHard:
            return "hard";
        case KYCOLLISION::Rule::eModeClearance:
            return "clearance";
        case KYCOLLISION::Rule::eModeTolerance:
            return "tolerance " + std::to_string(mode.GetTolerance()) + " mm";
        default:
            return "unknown mode " + std::to_string(static_cast<int>(mode.GetModeType()));
    }
}

void WriteRuleMatrix(const KyCollisionRule& rule, std::ostream& out) {
    const std::vector<RuledKind> kinds = KindsOf(rule);
    const auto on =
        std::count_if(kinds.begin(), kinds.end(), [](const RuledKind& kind) { return kind.isOn; });
    out << kinds.size() << " kinds, " << on << " of them on\n\n";
    WriteKinds(kinds, out);
    const Majors majors(kinds);
    const RuleOutcomes outcomes(kinds);
    constexpr std::size_t kWidth = 3;
    out << "\nPairs of major categories: c clearance, t tolerance, h plain bodies, . not tested,\n"
           "* differs between their kinds\n\n"
        << std::string(kWidth, ' ');
    for (std::size_t i = 0; i < majors.names.size(); ++i)
        out << Padded(std::to_string(i + 1), kWidth);
    out << '\n';
    for (std::size_t row = 0; row < majors.names.size(); ++row) {
        out << Padded(std::to_string(row + 1), kWidth);
        for (const auto& column : majors.members)
            out << Padded({Cell(outcomes, majors.members[row], column)}, kWidth);
        out << "  " << majors.names[row] << '\n';
    }
}

void WriteRuleJson(const KyCollisionRule& rule, std::ostream& out) {
    const std::vector<RuledKind> kinds = KindsOf(rule);
    const RuleOutcomes outcomes(kinds);
    Json items = Json::array();
    Json pairs = Json::array();
    for (std::size_t a = 0; a < kinds.size(); ++a) {
        items.push_back(KindJson(kinds[a]));
        for (std::size_t b = a; b < kinds.size(); ++b) {
            const PairOutcome outcome = outcomes.Of(a, b);
            if (!outcome.isTested) continue;
            pairs.push_back({{"a", ToUtf8(kinds[a].path)},
                             {"b", ToUtf8(kinds[b].path)},
                             {"offsets", {outcome.offsetA, outcome.offsetB}}});
        }
    }
    const Json document = {{"kinds", std::move(items)}, {"pairs", std::move(pairs)}};
    out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace kyclash
