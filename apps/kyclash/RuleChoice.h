// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <filesystem>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

#include "ifchost/IfcWorkset.h"
#include "kyclash/CheckReport.h"

namespace kyclash {

/// What stands in place of a file for the rules that need none.
inline constexpr const char* kBuiltinRulesName = "built-in";

/// The rules of a run, with what the report says about them.
struct ChosenRules {
    std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> rules;
    ReportedRules report;
};

/// Reads `file`, by default the rule file that ships with the command; `kBuiltinRulesName` stands
/// for the built-in rules, which are made by CompleteRules. Nothing, with an `error` that names the
/// file, when it cannot be used.
std::optional<ChosenRules> ChooseRules(const std::optional<std::filesystem::path>& file,
                                       std::string& error);

/// The same for a command: the error goes to `errors`.
std::optional<ChosenRules> ChooseRules(const std::optional<std::filesystem::path>& file,
                                       std::ostream& errors);

/// Makes the built-in rules if these were chosen, and compares the rules with the kinds of the work
/// set.
void CompleteRules(ChosenRules& chosen, const ifchost::IfcWorkset& workset);

}  // namespace kyclash
