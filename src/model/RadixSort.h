// SPDX-License-Identifier: Apache-2.0
// Sorts numbers by whole keys.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace kycb::model {

/// The number of something, with what it is sorted by.
struct SortEntry {
    std::uint32_t key;
    std::uint32_t number;
};

/// Sorts by key, leaving entries of equal keys in their order: three passes over eleven bits each,
/// or by comparisons where there are too few to make up for the counters. `room` is overwritten.
inline void RadixSort(std::vector<SortEntry>& entries, std::vector<SortEntry>& room) {
    constexpr unsigned kBits = 11;
    constexpr std::size_t kDigits = std::size_t{1} << kBits;
    constexpr std::size_t kFewest = 256;
    if (entries.size() < kFewest) {
        std::stable_sort(entries.begin(), entries.end(),
                         [](const SortEntry& a, const SortEntry& b) { return a.key < b.key; });
        return;
    }
    const auto digit = [](std::uint32_t key, std::size_t pass) {
        return key >> (kBits * pass) & (kDigits - 1);
    };
    std::array<std::array<std::uint32_t, kDigits>, 3> places{};
    for (const SortEntry& entry : entries) {
        for (std::size_t pass = 0; pass < places.size(); ++pass) {
            ++places[pass][digit(entry.key, pass)];
        }
    }
    room.resize(entries.size());
    for (std::size_t pass = 0; pass < places.size(); ++pass) {
        auto& place = places[pass];
        std::exclusive_scan(place.begin(), place.end(), place.begin(), 0U);
        for (const SortEntry& entry : entries) {
            room[place[digit(entry.key, pass)]++] = entry;
        }
        entries.swap(room);
    }
}

}  // namespace kycb::model
