// SPDX-License-Identifier: Apache-2.0
#include "desk/core/PriorityOrder.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <tuple>

namespace desk {
namespace {

using KYCOLLISION::RESULT::KyResultItem;

// What the comparison knows of a component.
using Identity = std::tuple<std::wstring, std::wstring, std::wstring, std::wstring>;

Identity IdentityOf(const SObjAttInfo& info) {
    return {info.Specialty, info.Category, info.Subcategory, info.Name};
}

// A component's identity as a number, and its rank, which ties share.
struct Place {
    std::size_t identity = 0;
    std::size_t rank = 0;
};

using Places = std::map<Identity, Place>;

// A component that stands for all of its identity, as the library's comparison takes it.
struct Representative {
    std::unique_ptr<KyResultItem> item;
    Place* place = nullptr;

    Representative(const SObjAttInfo& info, Place& itsPlace)
        : item(std::make_unique<KyResultItem>()), place(&itsPlace) {
        item->SetObjAttInfo_Main(info);
    }
};

bool RanksBefore(const Representative& a, const Representative& b) {
    return KyResultItem::PriorityCompareHigh(a.item.get(), b.item.get());
}

// Ranks the components that occur by the library's own comparison of main components.
Places RankComponents(const std::vector<KyResultItem*>& items) {
    Places places;
    std::vector<Representative> distinct;
    const auto add = [&](const SObjAttInfo& info) {
        const auto [entry, isNew] = places.try_emplace(IdentityOf(info));
        if (!isNew) return;
        entry->second.identity = places.size();
        distinct.emplace_back(info, entry->second);
    };
    for (const KyResultItem* item : items) {
        add(item->GetAttInfoA());
        add(item->GetAttInfoB());
    }
    std::stable_sort(distinct.begin(), distinct.end(), RanksBefore);
    std::size_t rank = 0;
    for (std::size_t i = 0; i < distinct.size(); ++i) {
        if (i > 0 && RanksBefore(distinct[i - 1], distinct[i])) ++rank;
        distinct[i].place->rank = rank;
    }
    return places;
}

struct Key {
    Place main;
    Place second;
    std::wstring mainGuid;
    KyResultItem* item = nullptr;

    bool operator<(const Key& other) const {
        const bool sameMain = main.identity == other.main.identity;
        const std::size_t mine = sameMain ? second.rank : main.rank;
        const std::size_t theirs = sameMain ? other.second.rank : other.main.rank;
        return mine != theirs ? mine < theirs : mainGuid < other.mainGuid;
    }
};

}  // namespace

void SortByPriority(std::vector<KyResultItem*>& items) {
    const Places places = RankComponents(items);
    std::vector<Key> keys;
    keys.reserve(items.size());
    for (KyResultItem* item : items) {
        keys.push_back({places.at(IdentityOf(item->GetAttInfoA())),
                        places.at(IdentityOf(item->GetAttInfoB())), item->GetObjGuidA(), item});
    }
    std::stable_sort(keys.begin(), keys.end());
    std::transform(keys.begin(), keys.end(), items.begin(),
                   [](const Key& key) { return key.item; });
}

}  // namespace desk
