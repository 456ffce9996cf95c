// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string>

namespace kyclash {

/// `value` with so many decimals, with a point whatever the locale; infinities and NaN as "inf" and
/// "nan".
std::string FixedText(double value, int decimals);

/// A point as the result file keeps it: "x,y,z" with two decimals each (mm).
std::string PositionText(const std::array<double, 3>& point);

}  // namespace kyclash
