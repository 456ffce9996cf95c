// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <vector>

namespace KYCOLLISION::RESULT {
class KyResultItem;
}

namespace kycb {

/// Owns result items, each of which may have been added several times, and deletes each once.
class ItemPool {
  public:
    using KyResultItem = KYCOLLISION::RESULT::KyResultItem;

    ItemPool() = default;
    ~ItemPool();
    ItemPool(const ItemPool&) = delete;
    ItemPool& operator=(const ItemPool&) = delete;

    /// Makes room, so that the next Add cannot fail and leave an item listed but not owned.
    void Reserve() {
        if (items_.size() == items_.capacity()) items_.reserve(2 * items_.size() + 1);
    }
    void Add(KyResultItem* item) { items_.push_back(item); }

    /// The pool that owns `items` in place of what `old` owned. Items in both are kept; those that
    /// only `old` has go, unless others share it.
    static std::shared_ptr<ItemPool> Replace(std::shared_ptr<ItemPool> old,
                                             const std::vector<KyResultItem*>& items);

  private:
    std::vector<KyResultItem*> items_;
};

}  // namespace kycb
