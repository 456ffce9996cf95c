// SPDX-License-Identifier: Apache-2.0
#include "result/ComponentRank.h"

#include "KYCollisionBase/model/AttCategory.h"
#include "KYCollisionBase/platform/CodePage.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>

namespace kycb {

using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::RESULT::KyResultItem;
using KYTOOLS::CodePage;

namespace {

int Sign(int comparison) {
    return comparison < 0 ? -1 : comparison > 0 ? 1 : 0;
}

// The fields that decide whether two components are of one kind and name.
using KindAndName =
    std::tuple<std::wstring_view, std::wstring_view, std::wstring_view, std::wstring_view>;

KindAndName KeyOf(const SObjAttInfo& info) {
    return {info.Specialty, info.Category, info.Subcategory, info.Name};
}

// A building has few kinds and names compared with its clashes, so ranks are shared.
class RankTable {
  public:
    const ComponentRank* Get(const SObjAttInfo& info) {
        return &ranks_.try_emplace(KeyOf(info), info).first->second;
    }

  private:
    std::map<KindAndName, ComponentRank> ranks_;
};

struct SortEntry {
    KyResultItem* item;
    const ComponentRank* rankA;
    const ComponentRank* rankB;
    std::wstring guidA;
};

bool SortsBefore(const SortEntry& a, const SortEntry& b) {
    if (!a.item || !b.item) return false;
    // One rank object stands for one kind and name, so the pointers tell whether these agree.
    const int comparison =
        a.rankA == b.rankA ? CompareRanks(*a.rankB, *b.rankB) : CompareRanks(*a.rankA, *b.rankA);
    return comparison != 0 ? comparison < 0 : a.guidA < b.guidA;
}

SortEntry MakeEntry(KyResultItem* item, RankTable& ranks) {
    if (!item) return {nullptr, nullptr, nullptr, {}};
    return {item, ranks.Get(item->GetAttInfoA()), ranks.Get(item->GetAttInfoB()),
            item->GetObjGuidA()};
}

}  // namespace

ComponentRank::ComponentRank(const SObjAttInfo& info) : nameAnsi(CodePage::ToAnsi(info.Name)) {
    AttCategory category(info.Specialty, info.Category, info.Subcategory);
    priority = category.GetAttPriority();
    categoryIndex = category.categoryIndex();
    categoryIndexAnsi = CodePage::ToAnsi(categoryIndex);
}

int CompareRanks(const ComponentRank& a, const ComponentRank& b) {
    if (a.priority != b.priority) return a.priority < b.priority ? -1 : 1;
    if (a.categoryIndex != b.categoryIndex) {
        return a.categoryIndexAnsi < b.categoryIndexAnsi ? -1 : 1;
    }
    return Sign(a.nameAnsi.compare(b.nameAnsi));
}

void SortByPriority(std::vector<KyResultItem*>& items) {
    RankTable ranks;
    std::vector<SortEntry> entries;
    entries.reserve(items.size());
    for (KyResultItem* item : items)
        entries.push_back(MakeEntry(item, ranks));
    // A merge sort: unlike std::sort it never leaves the range when an ordering is inconsistent,
    // and components of one rank but different kinds make this one so.
    std::stable_sort(entries.begin(), entries.end(), SortsBefore);
    std::transform(entries.begin(), entries.end(), items.begin(),
                   [](const SortEntry& entry) { return entry.item; });
}

}  // namespace kycb
