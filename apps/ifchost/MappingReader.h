// SPDX-License-Identifier: Apache-2.0
// Reads the JSON of a mapping into compiled rules.
#pragma once

#include <optional>
#include <string_view>

#include "Classification.h"
#include "MappingRules.h"

namespace ifchost::mapping {

/// Nothing, and `error` filled with place and reason, when `text` is not a valid mapping.
std::optional<RuleSet> ReadRules(std::string_view text, std::string_view file, MappingError& error);

}  // namespace ifchost::mapping
