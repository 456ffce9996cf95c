// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kyclash {

/// The IFC GlobalId that the GUID of a component stands for, when no model at hand has the
/// component. Nothing for a GUID that is none or that was made up in place of a GlobalId.
std::optional<std::string> GlobalIdOf(std::wstring_view guid);

}  // namespace kyclash
