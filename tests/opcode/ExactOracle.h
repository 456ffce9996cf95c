// SPDX-License-Identifier: Apache-2.0
// An answer to "do two closed triangles share a point?" that has nothing in common with the code
// under test: rational linear programming instead of orientation signs.
#pragma once

#include "opcode/TriangleContact.h"

namespace kycb::opcode::test {

/// Looks for weights x >= 0 of the three vertices of `a` and y >= 0 of those of `b`, each summing
/// to 1, that give the same point. If there are any, there are some whose columns of the linear
/// system are independent (Caratheodory), so trying every subset of columns is complete.
bool TouchByRationals(const Triangle& a, const Triangle& b);

}  // namespace kycb::opcode::test
