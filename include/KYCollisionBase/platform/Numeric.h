// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace KYTOOLS::Numeric {

/// True when the closed ranges [minA, maxA] and [minB, maxB] share a value (mm).
///
/// A range that was narrowed past nothing (min > max) is compared as it stands: it overlaps every
/// range that reaches from its max to its min or beyond.
inline bool IsDoubleRangeOverLap(double minA, double maxA, double minB, double maxB) {
    return minA <= maxB && minB <= maxA;
}

}  // namespace KYTOOLS::Numeric
