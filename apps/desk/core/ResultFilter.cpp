// SPDX-License-Identifier: Apache-2.0
#include "desk/core/ResultFilter.h"

#include <stdexcept>
#include <string_view>
#include <vector>

#include "ifchost/HostText.h"

namespace desk {

using KYCOLLISION::RESULT::KyResultItem;

namespace {

std::vector<std::wstring> KindsOf(const KyResultItem& item) {
    return {item.GetSpecialtyA(), item.GetCategoryA(), item.GetSubcategoryA(),
            item.GetSpecialtyB(), item.GetCategoryB(), item.GetSubcategoryB()};
}

std::vector<std::wstring> OtherTextsOf(const KyResultItem& item) {
    return {item.GetFloorA(),   item.GetNameA(),    item.GetSysCodeA(), item.GetNameB(),
            item.GetSysCodeB(), item.GetHeightA(),  item.GetHeightB(),  item.GetAxisPos(),
            item.GetRemark(),   item.GetObjGuidA(), item.GetObjGuidB()};
}

}  // namespace

std::string SearchableText(const KyResultItem& item,
                           const std::function<std::wstring(const std::wstring&)>& translate) {
    std::wstring text;
    for (const std::wstring& part : OtherTextsOf(item))
        text += part + L'\n';
    for (const std::wstring& kind : KindsOf(item)) {
        text += kind + L'\n';
        if (translate) text += translate(kind) + L'\n';
    }
    return ifchost::FoldCase(ifchost::ToUtf8(text));
}

std::optional<double> ClashElevation(const KyResultItem& item) {
    try {
        return std::get<2>(item.GetClashPoint());
    } catch (const std::logic_error&) {
        // A position of a foreign file that holds no numbers.
        return std::nullopt;
    }
}

bool MatchesFields(const ResultFilter& filter, const KyResultItem& item) {
    if (filter.state && item.GetDisposeState() != *filter.state) return false;
    if (filter.floor && item.GetFloorA() != *filter.floor) return false;
    if (filter.kind && !filter.kind->Admits(item.GetAttInfoA()) &&
        !filter.kind->Admits(item.GetAttInfoB())) {
        return false;
    }
    if (!filter.above && !filter.upTo) return true;
    const std::optional<double> elevation = ClashElevation(item);
    return elevation && (!filter.above || *elevation > *filter.above) &&
           (!filter.upTo || *elevation <= *filter.upTo);
}

bool MatchesWords(const std::string& words, const std::string& searchable) {
    std::string_view rest = words;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        const std::string_view word = rest.substr(0, end);
        if (!word.empty() && searchable.find(word) == std::string::npos) return false;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return true;
}

}  // namespace desk
