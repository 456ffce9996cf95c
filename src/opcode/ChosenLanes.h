// SPDX-License-Identifier: Apache-2.0
// Where the chosen lanes of a register go when they are moved to its front, for instruction sets
// that have no such move. (The tables of the SIMD library are copied to the stack for each use by
// some compilers, which takes longer than all the rest.)
#pragma once

#include <cstddef>
#include <cstdint>

namespace kycb::opcode {

template <std::size_t N>
struct ChosenLanes {
    // For each mask the lanes to take, the chosen ones first. The rest is 0.
    std::uint8_t lane[std::size_t{1} << N][N];
};

/// Lanes are numbered from `first`.
template <std::size_t N>
constexpr ChosenLanes<N> MakeChosenLanes(std::size_t first) {
    ChosenLanes<N> table{};
    for (std::size_t mask = 0; mask < std::size_t{1} << N; ++mask) {
        std::size_t used = 0;
        for (std::size_t i = 0; i < N; ++i)
            if ((mask >> i & 1U) != 0)
                table.lane[mask][used++] = static_cast<std::uint8_t>(first + i);
    }
    return table;
}

template <std::size_t N, std::size_t kFirst = 0>
inline constexpr ChosenLanes<N> kChosenLanes = MakeChosenLanes<N>(kFirst);

}  // namespace kycb::opcode
