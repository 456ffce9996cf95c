// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace kyclash {

/// Why no kind of the category tree has this path, naming the first part that does not fit; empty
/// when one has it, and when there is no tree to compare with. One part stands for a specialty and
/// two for a major category. Below "Revit" two parts are a kind. Texts are UTF-8.
std::string WhyNoCategory(const std::vector<std::wstring>& parts);

/// A path in its parts: split at each "/", without an empty part at the end.
std::vector<std::wstring> PathParts(const std::wstring& path);

}  // namespace kyclash
