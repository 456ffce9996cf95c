// SPDX-License-Identifier: Apache-2.0
#include "desk/core/ResultMerge.h"

#include "KYCollisionBase/result/IKyResultData.h"

#include <algorithm>
#include <set>

namespace desk {
namespace {

using KYCOLLISION::RESULT::IKyResultData;
using KYCOLLISION::RESULT::KyResultItem;

// The old results by their pair of components.
class OldResults {
  public:
    explicit OldResults(IKyResultData& container) {
        ResultsByFloor all;
        container.GetAllResultItems(all);
        for (const auto& [floor, items] : all) {
            for (const KyResultItem* item : items)
                byPair_.emplace(PairOf(*item), item);
        }
    }

    bool Knows(const KyResultItem& item) const { return byPair_.count(PairOf(item)) != 0; }

    void CarryHandlingTo(KyResultItem& item) const {
        if (const KyResultItem* old = Find(item)) {
            item.SetDisposeState(old->GetDisposeState());
            item.SetRemark(old->GetRemark());
            item.SetViewport(old->GetViewport());
            item.SetPicture(old->GetPicuuid(), old->GetPicmd5(), old->GetPicsize());
        }
    }

  private:
    // The same way round is preferred to a swapped one.
    const KyResultItem* Find(const KyResultItem& item) const {
        const auto [first, last] = byPair_.equal_range(PairOf(item));
        if (first == last) return nullptr;
        const auto same = std::find_if(first, last, [&](const auto& entry) {
            return item.IsSameResult_MainInfo(entry.second);
        });
        return same != last ? same->second : first->second;
    }

    std::multimap<PairKey, const KyResultItem*> byPair_;
};

}  // namespace

PairKey PairOf(const KyResultItem& item) {
    ComponentKey a(item.GetProjectA(), item.GetFloorA(), item.GetObjGuidA());
    ComponentKey b(item.GetProjectB(), item.GetFloorB(), item.GetObjGuidB());
    if (b < a) std::swap(a, b);
    return {std::move(a), std::move(b)};
}

void MergeResults(IKyResultData& container, ResultsByFloor results, const CheckedFloors& floors) {
    const OldResults old(container);
    for (auto& [floor, items] : results) {
        for (KyResultItem* item : items)
            old.CarryHandlingTo(*item);
    }
    const std::set<FloorKey> complete(floors.complete.begin(), floors.complete.end());
    std::vector<KyResultItem*> added;
    for (auto& [floor, items] : results) {
        if (complete.count(floor) != 0) continue;
        for (KyResultItem* item : items) {
            if (old.Knows(*item)) {
                delete item;
            } else {
                added.push_back(item);
            }
        }
        items.clear();
    }
    // Last: this deletes what the old results pointed to.
    for (const FloorKey& floor : complete)
        container.AppendNewResults(floor, std::move(results[floor]));
    container.InitByResults(added);
}

}  // namespace desk
