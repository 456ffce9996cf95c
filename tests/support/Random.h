// SPDX-License-Identifier: Apache-2.0
// Seeded numbers for random tests, after G. Steele, D. Lea, C. Flood, "Fast splittable pseudorandom
// number generators" (2014).
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace kycb::test {

/// The same numbers on every machine, which the distributions of the standard library are not.
class Random {
  public:
    /// Seeds are mixed, because the numbers of states that are one step apart are the same numbers
    /// shifted by one.
    explicit Random(std::uint64_t seed) : state_(Mixed(seed)) {}

    std::uint64_t Next() {
        state_ += 0x9E3779B97F4A7C15ULL;
        return Mixed(state_);
    }
    int Below(int n) { return static_cast<int>(Next() % static_cast<std::uint64_t>(n)); }
    double Unit() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
    double In(double low, double high) { return low + (high - low) * Unit(); }
    bool OneIn(int n) { return Below(n) == 0; }

    template <class Items>
    const auto& Pick(const Items& items) {
        return items[static_cast<std::size_t>(Below(static_cast<int>(items.size())))];
    }

    template <class Items>
    void Shuffle(Items& items) {
        for (std::size_t i = items.size(); i > 1; --i) {
            std::swap(items[i - 1], items[static_cast<std::size_t>(Below(static_cast<int>(i)))]);
        }
    }

  private:
    static std::uint64_t Mixed(std::uint64_t z) {
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }

    std::uint64_t state_;
};

}  // namespace kycb::test
