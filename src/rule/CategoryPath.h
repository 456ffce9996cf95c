// SPDX-License-Identifier: Apache-2.0
// The parts of a category path, as rule items read them.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kycb::rule {

/// The parts of a path between "/" signs, as views into it; an empty last part is dropped.
struct CategoryPath {
    static constexpr std::size_t kMaxParts = 3;

    /// `path` must outlive the result.
    explicit CategoryPath(std::wstring_view path);

    /// How many parts the path has; those beyond kMaxParts are counted only.
    std::size_t count = 0;
    std::array<std::wstring_view, kMaxParts> parts;
};

/// True for a path that a rule item can have: three parts, or two that begin with "Revit" or
/// "Tekla" in any case.
bool IsRuleItemPath(const CategoryPath& path);

}  // namespace kycb::rule
