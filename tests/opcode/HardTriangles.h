// SPDX-License-Identifier: Apache-2.0
// Seeded pairs of triangles of the kinds that break inexact tests.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "opcode/TriangleContact.h"

namespace kycb::opcode::test {

/// The same numbers on every machine, which the distributions of the standard library are not.
class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed * 0x9E3779B97F4A7C15ULL + 0x1234567ULL) {}

    std::uint64_t Next() {
        state_ += 0x9E3779B97F4A7C15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
        return z ^ (z >> 31);
    }
    int Below(int n) { return static_cast<int>(Next() % static_cast<std::uint64_t>(n)); }
    double Unit() { return static_cast<double>(Next() >> 11) * 0x1p-53; }
    double In(double low, double high) { return low + (high - low) * Unit(); }

  private:
    std::uint64_t state_;
};

struct TrianglePair {
    Triangle a;
    Triangle b;
};

/// One family of hard pairs: `make` gives another pair on each call.
struct HardFamily {
    std::string name;
    TrianglePair (*make)(Random&);

    friend std::ostream& operator<<(std::ostream& out, const HardFamily& family) {
        return out << family.name;
    }
};

const std::vector<HardFamily>& HardFamilies();

}  // namespace kycb::opcode::test
