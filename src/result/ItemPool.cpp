// SPDX-License-Identifier: Apache-2.0
#include "result/ItemPool.h"

#include "KYCollisionBase/result/KyResultItem.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace kycb {

namespace {

using Items = std::vector<ItemPool::KyResultItem*>;

Items Distinct(Items items) {
    std::sort(items.begin(), items.end(), std::less<>());
    items.erase(std::unique(items.begin(), items.end()), items.end());
    return items;
}

void DeleteAll(const Items& items) {
    for (ItemPool::KyResultItem* item : items)
        delete item;
}

}  // namespace

ItemPool::~ItemPool() {
    DeleteAll(Distinct(std::move(items_)));
}

std::shared_ptr<ItemPool> ItemPool::Replace(std::shared_ptr<ItemPool> old, const Items& items) {
    const Items oldItems = Distinct(old->items_);
    Items newItems = Distinct(items);
    Items dropped;
    std::set_difference(oldItems.begin(), oldItems.end(), newItems.begin(), newItems.end(),
                        std::back_inserter(dropped), std::less<>());
    if (old.use_count() == 1) {
        old->items_ = std::move(newItems);
        DeleteAll(dropped);
        return old;
    }
    // Someone else still lists the old items. One that is carried over must keep its one owner, and
    // then that owner stays for all of them.
    const bool carriesOver = dropped.size() < oldItems.size();
    std::shared_ptr<ItemPool> pool = carriesOver ? std::move(old) : std::make_shared<ItemPool>();
    pool->items_.insert(pool->items_.end(), newItems.begin(), newItems.end());
    return pool;
}

}  // namespace kycb
