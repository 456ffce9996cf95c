// SPDX-License-Identifier: Apache-2.0
// Which of a fixed number of things belong together.
#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace ifchost {

/// Union-find over the numbers 0 to size - 1. The smallest number of a set stands for it, so
/// results do not depend on the order of the unions.
class DisjointSets {
  public:
    explicit DisjointSets(std::size_t size) : parent_(size) {
        std::iota(parent_.begin(), parent_.end(), 0U);
    }

    std::uint32_t Find(std::uint32_t i) {
        while (parent_[i] != i) {
            parent_[i] = parent_[parent_[i]];
            i = parent_[i];
        }
        return i;
    }

    void Unite(std::uint32_t a, std::uint32_t b) {
        a = Find(a);
        b = Find(b);
        if (a < b) parent_[b] = a;
        if (b < a) parent_[a] = b;
    }

  private:
    std::vector<std::uint32_t> parent_;
};

}  // namespace ifchost
