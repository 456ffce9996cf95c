// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/rule/KyCollisionMode.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"

#include <iosfwd>
#include <string>

namespace kyclash {

/// The mode of an item in words, as "tolerance 5 mm".
std::string ModeText(const KYCOLLISION::Rule::KyCollisionMode& mode);

/// Prints the kinds of a rule set with their settings, then what comes of each pair of major
/// categories. UTF-8.
void WriteRuleMatrix(const KYCOLLISION::Rule::KyCollisionRule& rule, std::ostream& out);

/// The same for programs: every kind, and every pair of kinds that is tested with its offsets.
void WriteRuleJson(const KYCOLLISION::Rule::KyCollisionRule& rule, std::ostream& out);

}  // namespace kyclash
