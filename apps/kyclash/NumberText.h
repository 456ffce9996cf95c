// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace kyclash {

/// `value` with so many decimals, with a point whatever the locale; infinities and NaN as "inf" and
/// "nan".
std::string FixedText(double value, int decimals);

/// `value` rounded to a whole number; what rounds to zero has no sign.
std::string WholeText(double value);

/// `count` with spaces in front up to the width of `largest`, for columns.
std::string ColumnText(std::size_t count, std::size_t largest);

/// A number of things in English: "1 floor", "2 floors", "0 clashes". Without a plural of its own
/// the word gets an "s".
std::string CountText(std::size_t count, std::string_view one, std::string_view several = {});

/// A point as the result file keeps it: "x,y,z" with two decimals each (mm).
std::string PositionText(const std::array<double, 3>& point);

}  // namespace kyclash
