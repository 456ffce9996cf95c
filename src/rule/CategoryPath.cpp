// SPDX-License-Identifier: Apache-2.0
#include "rule/CategoryPath.h"

#include "platform/Text.h"

namespace kycb::rule {

CategoryPath::CategoryPath(std::wstring_view path) {
    while (!path.empty()) {
        const std::size_t end = path.find(L'/');
        if (count < kMaxParts) parts[count] = path.substr(0, end);
        ++count;
        path = end == std::wstring_view::npos ? std::wstring_view() : path.substr(end + 1);
    }
}

bool IsRuleItemPath(const CategoryPath& path) {
    if (path.count == 3) return true;
    return path.count == 2 && (text::EqualIgnoringAsciiCase(path.parts[0], L"Revit") ||
                               text::EqualIgnoringAsciiCase(path.parts[0], L"Tekla"));
}

}  // namespace kycb::rule
