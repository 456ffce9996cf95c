// SPDX-License-Identifier: Apache-2.0
#include "desk/core/ResultRows.h"

#include <algorithm>
#include <set>
#include <tuple>
#include <utility>

#include "desk/core/PriorityOrder.h"
#include "ifchost/HostText.h"

namespace desk {
namespace {

// Sorting compares these: a number first, for what is ordered by one, then the text.
using SortKey = std::tuple<std::size_t, std::wstring>;

}  // namespace

void ResultRows::SetItems(std::vector<Item*> items, const std::vector<std::wstring>& floorOrder) {
    items_ = std::move(items);
    floorRanks_.clear();
    for (const std::wstring& name : floorOrder)
        floorRanks_.try_emplace(name, floorRanks_.size());
    SortByPriority(items_);
    entries_.clear();
    entries_.reserve(items_.size());
    for (Item* item : items_)
        entries_.push_back({item, std::nullopt});
    Select();
}

void ResultRows::SetFilter(const ResultFilter& filter) {
    filter_ = filter;
    Select();
}

void ResultRows::SetOrder(const ResultOrder& order) {
    order_ = order;
    Select();
}

void ResultRows::Select() {
    const std::string words = ifchost::FoldCase(ifchost::ToUtf8(filter_.text));
    rows_.clear();
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        Entry& entry = entries_[i];
        if (!MatchesFields(filter_, *entry.item)) continue;
        if (!words.empty()) {
            if (!MatchesWords(words, SearchableOf(entry))) continue;
        }
        rows_.push_back(i);
    }
    Sort();
}

const std::string& ResultRows::SearchableOf(Entry& entry) const {
    if (!entry.searchable) entry.searchable = SearchableText(*entry.item, translator_);
    return *entry.searchable;
}

std::size_t ResultRows::FloorRank(const std::wstring& name) const {
    const auto found = floorRanks_.find(name);
    return found == floorRanks_.end() ? floorRanks_.size() : found->second;
}

// Kinds are sorted as they are called on the screen.
std::wstring ResultRows::ShownText(const Item& item, ResultColumn column) const {
    const std::wstring text = ColumnText(item, column);
    const bool isKind = column == ResultColumn::kMainKind || column == ResultColumn::kSecondKind;
    return isKind && translator_ ? translator_(text) : text;
}

void ResultRows::Sort() {
    const bool descending = order_.direction == SortDirection::kDescending;
    if (order_.column) {
        std::vector<std::pair<SortKey, std::size_t>> keys;
        keys.reserve(rows_.size());
        for (const std::size_t row : rows_) {
            const Item& item = *entries_[row].item;
            const std::size_t rank =
                order_.column == ResultColumn::kFloor ? FloorRank(item.GetFloorA()) : 0;
            keys.emplace_back(SortKey(rank, ShownText(item, *order_.column)), row);
        }
        // Equal rows keep their priority order in both directions.
        std::stable_sort(keys.begin(), keys.end(), [&](const auto& a, const auto& b) {
            return descending ? b.first < a.first : a.first < b.first;
        });
        std::transform(keys.begin(), keys.end(), rows_.begin(),
                       [](const auto& key) { return key.second; });
    } else if (descending) {
        std::reverse(rows_.begin(), rows_.end());
    }
}

template <class Matches>
std::optional<std::size_t> ResultRows::FirstRow(Matches matches) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [&](std::size_t row) { return matches(entries_[row].item); });
    if (found == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - rows_.begin());
}

std::optional<std::size_t> ResultRows::RowOf(const Item* item) const {
    return FirstRow([&](const Item* each) { return each == item; });
}

std::optional<std::size_t> ResultRows::RowOf(const PairKey& pair) const {
    return FirstRow([&](const Item* each) { return PairOf(*each) == pair; });
}

std::map<int, std::size_t> ResultRows::CountByState() const {
    std::map<int, std::size_t> counts;
    for (const std::size_t row : rows_)
        ++counts[entries_[row].item->GetDisposeState()];
    return counts;
}

std::vector<std::wstring> ResultRows::Floors() const {
    std::set<std::pair<std::size_t, std::wstring>> found;
    for (const Item* item : items_)
        found.emplace(FloorRank(item->GetFloorA()), item->GetFloorA());
    std::vector<std::wstring> names;
    for (const auto& [rank, name] : found)
        names.push_back(name);
    return names;
}

std::vector<KindChoice> ResultRows::Kinds() const {
    std::set<KindChoice> found;
    for (const Item* item : items_) {
        for (const SObjAttInfo* info : {&item->GetAttInfoA(), &item->GetAttInfoB()}) {
            if (info->Specialty.empty()) continue;
            found.insert({info->Specialty, {}});
            found.insert({info->Specialty, info->Category});
        }
    }
    return {found.begin(), found.end()};
}

void ResultRows::NoteEdit(std::size_t row) {
    entries_[rows_[row]].searchable.reset();
}

}  // namespace desk
