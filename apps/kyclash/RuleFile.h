// SPDX-License-Identifier: Apache-2.0
// Reads a rule file and says what in it cannot mean what its author meant.
#pragma once

#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace kyclash {

/// One remark on a rule file.
struct RuleRemark {
    std::string place;  ///< path of the element, as "/CollisionRule/Specialty[2]/RuleItem[5]/Mode"
    std::string text;   ///< what is wrong there
};

/// What came of reading a rule file.
struct RuleFile {
    /// Null when the file cannot be used.
    std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> rules;
    /// Why not: names the file, and the place where it has one. Empty with rules.
    std::string error;
    /// What the library passes over or reads otherwise than it looks, in document order.
    std::vector<RuleRemark> remarks;
};

/// Reads a rule file. Kinds are compared with the category tree of the system root, unless that is
/// empty. Positions in the places count elements of all tags, from 1.
RuleFile ReadRuleFile(const std::filesystem::path& file);

}  // namespace kyclash
