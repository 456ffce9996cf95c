// SPDX-License-Identifier: Apache-2.0
// The rules that hold until a rule file is given.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <memory>
#include <vector>

namespace ifchost {

/// How far two bodies of different specialties may overlap before it counts (mm).
inline constexpr int kBuiltinTolerance = 2;

/// A rule manager with one rule item for each of `kinds` (IfcWorkset::CheckedKinds()).
///
/// Every kind is checked against every kind of the other specialties, and excludes its own one as
/// a whole. Structural members are in clearance mode, everything else in tolerance mode with 2 mm;
/// so a run meets a structural member with the run's own clearance, and all other pairs are tested
/// with each body that is no structural member shrunk by 2 mm.
std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> MakeBuiltinRules(
    const std::vector<KYCOLLISION::MODEL::AttCategory>& kinds);

}  // namespace ifchost
