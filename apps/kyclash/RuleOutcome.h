// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace kyclash {

/// A kind with the item that a rule set has for it. The item stays the rule set's.
struct RuledKind {
    KYCOLLISION::MODEL::AttCategory kind;
    std::wstring path;
    const KYCOLLISION::Rule::KyCollisionRuleItem* item = nullptr;
    bool isOn = false;  ///< whether the kind takes part
};

/// All items of a rule set: by specialty in its order, those that are switched on first. Of several
/// items that are on for one path only the first counts and is listed.
std::vector<RuledKind> KindsOf(const KYCOLLISION::Rule::KyCollisionRule& rule);

/// What a rule set does with a pair of kinds.
struct PairOutcome {
    bool isTested = false;
    int offsetA = 0;  ///< by which the body of the first is grown (mm); negative: shrunk
    int offsetB = 0;
};

/// Asks the library itself what it would do with pairs of kinds. Borrows the items.
class RuleOutcomes {
  public:
    explicit RuleOutcomes(const std::vector<RuledKind>& kinds);
    ~RuleOutcomes();
    RuleOutcomes(const RuleOutcomes&) = delete;
    RuleOutcomes& operator=(const RuleOutcomes&) = delete;

    /// By positions in the list of kinds. A kind that is switched off is never tested.
    PairOutcome Of(std::size_t a, std::size_t b) const;

  private:
    class NoBodies;
    struct Probe;
    std::unique_ptr<NoBodies> source_;
    std::vector<std::unique_ptr<Probe>> probes_;
};

}  // namespace kyclash
