// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace KYCOLLISION::Rule {

/// A mark that the host puts on a rule set; the library only compares it.
enum EnumRuleType : int {
    eRuleTypeNone = 0,    ///< after a reset
    eRuleTypeNormal = 1,  ///< of a new rule set
};

}  // namespace KYCOLLISION::Rule
