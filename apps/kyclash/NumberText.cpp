// SPDX-License-Identifier: Apache-2.0
#include "kyclash/NumberText.h"

#include <charconv>
#include <cmath>

namespace kyclash {
namespace {

// The largest double has 309 digits before its point.
constexpr std::size_t kLongestNumber = 400;

constexpr int kPositionDecimals = 2;

}  // namespace

std::string FixedText(double value, int decimals) {
    std::array<char, kLongestNumber> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   std::chars_format::fixed, decimals);
    return {buffer.data(), end.ptr};
}

std::string WholeText(double value) {
    return FixedText(std::round(value) + 0.0, 0);
}

std::string ColumnText(std::size_t count, std::size_t largest) {
    const std::string text = std::to_string(count);
    const std::size_t width = std::to_string(largest).size();
    return std::string(width > text.size() ? width - text.size() : 0, ' ') + text;
}

std::string CountText(std::size_t count, std::string_view one, std::string_view several) {
    std::string text = std::to_string(count) + " ";
    if (count == 1) return text.append(one);
    return several.empty() ? text.append(one) + "s" : text.append(several);
}

std::string PositionText(const std::array<double, 3>& point) {
    return FixedText(point[0], kPositionDecimals) + "," + FixedText(point[1], kPositionDecimals) +
           "," + FixedText(point[2], kPositionDecimals);
}

}  // namespace kyclash
