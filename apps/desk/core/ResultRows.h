// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desk/core/ResultColumn.h"
#include "desk/core/ResultFilter.h"
#include "desk/core/ResultMerge.h"

namespace desk {

enum class SortDirection { kAscending, kDescending };

/// How the rows are ordered: by priority, or by a column (equal ones stay in priority order).
struct ResultOrder {
    std::optional<ResultColumn> column;
    SortDirection direction = SortDirection::kAscending;

    bool operator==(const ResultOrder&) const = default;
};

/// The rows of the result list: results that pass the filter, in order.
///
/// The results are borrowed and must stay alive until the next SetItems. An edited result keeps
/// its row, even when it no longer passes the filter, until the rows are made anew: a row must not
/// vanish under the user's hands.
class ResultRows {
  public:
    using Item = KYCOLLISION::RESULT::KyResultItem;

    /// How the names of kinds are called on the screen, so that they are found and sorted by what
    /// is seen.
    using Translator = std::function<std::wstring(const std::wstring& name)>;
    void SetTranslator(Translator translator) { translator_ = std::move(translator); }

    /// Takes all results, in any order. `floorOrder` ranks floor names for sorting, lowest first;
    /// others come last, by name.
    void SetItems(std::vector<Item*> items, const std::vector<std::wstring>& floorOrder);
    void SetFilter(const ResultFilter& filter);
    void SetOrder(const ResultOrder& order);

    const ResultFilter& Filter() const { return filter_; }
    const ResultOrder& Order() const { return order_; }

    std::size_t Count() const { return rows_.size(); }
    std::size_t TotalCount() const { return items_.size(); }
    Item& At(std::size_t row) const { return *entries_[rows_[row]].item; }
    /// The row of a result; nothing when it is not shown.
    std::optional<std::size_t> RowOf(const Item* item) const;
    /// The first row with this pair of components; nothing when none is shown.
    std::optional<std::size_t> RowOf(const PairKey& pair) const;

    /// How many shown rows have which state.
    std::map<int, std::size_t> CountByState() const;
    /// What occurs in all results: for the choices of a filter. Floors in their order.
    std::vector<std::wstring> Floors() const;
    /// Specialties, each with its major categories behind it.
    std::vector<KindChoice> Kinds() const;

    /// To be called after a result's state or remark was changed.
    void NoteEdit(std::size_t row);

  private:
    struct Entry {
        Item* item = nullptr;
        std::optional<std::string> searchable;  // made when a text is first looked for
    };

    template <class Matches>
    std::optional<std::size_t> FirstRow(Matches matches) const;
    void Select();
    const std::string& SearchableOf(Entry& entry) const;
    void Sort();
    std::wstring ShownText(const Item& item, ResultColumn column) const;
    std::size_t FloorRank(const std::wstring& name) const;

    std::vector<Item*> items_;
    std::vector<Entry> entries_;     // in priority order
    std::vector<std::size_t> rows_;  // indices of entries
    std::map<std::wstring, std::size_t> floorRanks_;
    ResultFilter filter_;
    ResultOrder order_;
    Translator translator_;
};

}  // namespace desk
