// SPDX-License-Identifier: Apache-2.0
// What the reference reads out of rules: which one binds a kind, what it filters and excludes, and
// the body offsets that two of them call for.
#pragma once

#include <string>
#include <vector>

#include "scenes/Scene.h"
#include "scenes/reference/Kinds.h"

namespace kycb::scenes::reference {

/// The rule set that the library is left with: the rules with a path that a rule can have. A rule
/// file that holds any other path is refused as a whole.
std::vector<SceneRule> UsableRules(const SceneRun& run);

/// The first valid rule of a category path, or null.
const SceneRule* FindRule(const std::vector<SceneRule>& rules, const std::wstring& path);

/// Whether a rule lets its kind be reported against the kind of `otherPath`.
bool Admits(const SceneRule& rule, const std::wstring& otherPath);

/// Whether a value meets the condition in a filter's text.
bool MeetsFilter(const std::wstring& filter, double value);

/// Body offsets (mm, positive grows).
struct Offsets {
    int a = 0;
    int b = 0;
};

/// The offsets with which a component of kind A is tested against one of kind B.
Offsets OffsetsOf(const SceneRule& ruleA, const AttCategory& kindA, const SceneRule& ruleB,
                  const AttCategory& kindB);

}  // namespace kycb::scenes::reference
