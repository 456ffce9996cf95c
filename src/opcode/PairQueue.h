// SPDX-License-Identifier: Apache-2.0
// Triangle pairs that wait for a batch to fill.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "opcode/MeshTree.h"
#include "opcode/TriangleContact.h"

namespace kycb::opcode {

/// Pairs that are tested at once. Fixed for every instruction set, so that all find pairs in the
/// same order; more than most have lanes, because the steps of the test wait for each other.
inline constexpr std::size_t kBatch = 16;

/// The same for tests in double precision.
inline constexpr std::size_t kFineBatch = 8;

/// One triangle of each pair, side by side.
struct alignas(64) QueueRows {
    // Nearly a batch, and what one more step may write behind it.
    static constexpr std::size_t kCapacity = 2 * kBatch;

    float vertex[3][3][kCapacity];  // corner, axis, pair
    // Numbers kept as the bits of floats, which they move along with.
    float id[kCapacity];

    std::uint32_t IdAt(std::size_t i) const {
        std::uint32_t bits;
        std::memcpy(&bits, &id[i], sizeof(bits));
        return bits;
    }
    Triangle TriangleAt(std::size_t i) const {
        const auto corner = [&](std::size_t k) {
            return Point(vertex[k][0][i], vertex[k][1][i], vertex[k][2][i]);
        };
        return {{corner(0), corner(1), corner(2)}};
    }
};

/// Pairs of a triangle of one mesh with one of another. The places behind the last pair hold what
/// was there before: idle lanes compute something, which is masked away.
struct PairQueue {
    QueueRows a{};
    QueueRows b{};
    unsigned count = 0;

    /// The first places that hold pairs, of those of a batch; one bit each.
    unsigned LiveLanes(std::size_t batch) const {
        return (1U << std::min<std::size_t>(count, batch)) - 1;
    }
};

/// Pairs of triangles that wait for a batch to fill, by their places in leaves.
struct CandidateList {
    // Nearly a batch, and one triangle with all of two leaves.
    static constexpr std::size_t kCapacity = kBatch + 2 * kWidth;

    /// Pairs from the same two leaves: up to where the next ones begin. For a mesh of two leaves it
    /// is always the first; places go on in the second.
    struct Run {
        const Leaf* a;
        const Leaf* b;
        unsigned begin;
    };

    std::uint8_t inA[kCapacity];
    std::uint8_t inB[kCapacity];
    Run runs[kCapacity];
    unsigned runCount = 0;
    unsigned count = 0;

    void Clear() {
        // Idle places too must be such of the leaves to come.
        std::memset(inA, 0, sizeof(inA));
        std::memset(inB, 0, sizeof(inB));
        runCount = count = 0;
    }

    /// Pairs added from now on are of these leaves.
    void StartRun(const Leaf& a, const Leaf& b) {
        const bool isLastEmpty = runCount > 0 && runs[runCount - 1].begin == count;
        runCount += isLastEmpty ? 0 : 1;
        runs[runCount - 1] = {&a, &b, count};
    }
    /// Forgets the first batch of pairs. What is left is of the last run.
    void DropBatch() {
        std::memcpy(inA, inA + kBatch, 2 * kWidth);
        std::memcpy(inB, inB + kBatch, 2 * kWidth);
        count -= std::min<unsigned>(count, kBatch);
        runs[0] = runs[runCount - 1];
        runs[0].begin = 0;
        runCount = 1;
    }
};

}  // namespace kycb::opcode
