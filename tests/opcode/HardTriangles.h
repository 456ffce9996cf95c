// SPDX-License-Identifier: Apache-2.0
// Seeded pairs of triangles of the kinds that break inexact tests.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "opcode/TriangleContact.h"
#include "support/Random.h"

namespace kycb::opcode::test {

using kycb::test::Random;

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
