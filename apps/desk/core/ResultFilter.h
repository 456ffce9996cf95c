// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/result/KyResultItem.h"

#include <compare>
#include <functional>
#include <optional>
#include <string>

namespace desk {

/// A specialty, or one major category of it.
struct KindChoice {
    std::wstring specialty;
    std::wstring category;  ///< empty: all of the specialty

    auto operator<=>(const KindChoice&) const = default;
    bool Admits(const SObjAttInfo& info) const {
        return info.Specialty == specialty && (category.empty() || info.Category == category);
    }
};

/// Which results are shown. An empty member lets everything through; all of them must agree.
struct ResultFilter {
    std::optional<std::wstring> floor;  ///< of the main component
    std::optional<double> above;        ///< mm; the clash point lies higher than this
    std::optional<double> upTo;         ///< mm; ... and not higher than this
    std::optional<KindChoice> kind;     ///< of either component
    std::optional<int> state;
    std::wstring text;  ///< words that must all occur, in any case and order

    bool operator==(const ResultFilter&) const = default;
};

/// All texts of a result in which a filter's words are looked for, case folded (UTF-8). Names of
/// kinds are there as they are and, when `translate` is not empty, as it calls them.
std::string SearchableText(const KYCOLLISION::RESULT::KyResultItem& item,
                           const std::function<std::wstring(const std::wstring&)>& translate = {});

/// The elevation of a result's clash point; nothing when its position is no point.
std::optional<double> ClashElevation(const KYCOLLISION::RESULT::KyResultItem& item);

/// Whether all members of `filter` but its text agree with the result.
bool MatchesFields(const ResultFilter& filter, const KYCOLLISION::RESULT::KyResultItem& item);

/// Whether every word of `words` (case folded, separated by blanks) occurs in `searchable`.
bool MatchesWords(const std::string& words, const std::string& searchable);

}  // namespace desk
