// SPDX-License-Identifier: Apache-2.0
#include "opcode/ExactOracle.h"

#include <array>
#include <optional>
#include <vector>

#include <boost/multiprecision/cpp_int.hpp>

namespace kycb::opcode::test {
namespace {

using Rational = boost::multiprecision::cpp_rational;

constexpr std::size_t kRows = 5;  // x, y, z, sum of the weights of a, and of b
constexpr std::size_t kColumns = 6;

using Column = std::array<Rational, kRows>;

Column MakeColumn(const Point& p, bool ofA) {
    const int sign = ofA ? 1 : -1;
    return {Rational(static_cast<double>(p.x)) * sign, Rational(static_cast<double>(p.y)) * sign,
            Rational(static_cast<double>(p.z)) * sign, ofA ? 1 : 0, ofA ? 0 : 1};
}

/// Solves for the weights of the chosen columns by elimination; none when they are dependent or
/// there is no solution.
std::optional<std::vector<Rational>> Solve(std::vector<Column> columns) {
    Column right = {0, 0, 0, 1, 1};
    const std::size_t n = columns.size();
    for (std::size_t c = 0; c < n; ++c) {
        std::size_t pivot = c;
        while (pivot < kRows && columns[c][pivot] == 0)
            ++pivot;
        if (pivot == kRows) return std::nullopt;
        for (Column& column : columns)
            std::swap(column[c], column[pivot]);
        std::swap(right[c], right[pivot]);
        for (std::size_t r = 0; r < kRows; ++r) {
            if (r == c || columns[c][r] == 0) continue;
            const Rational factor = columns[c][r] / columns[c][c];
            for (std::size_t k = c; k < n; ++k)
                columns[k][r] -= factor * columns[k][c];
            right[r] -= factor * right[c];
        }
    }
    for (std::size_t r = n; r < kRows; ++r)
        if (right[r] != 0) return std::nullopt;
    std::vector<Rational> weights;
    for (std::size_t c = 0; c < n; ++c)
        weights.push_back(right[c] / columns[c][c]);
    return weights;
}

bool HasSolutionIn(const std::array<Column, kColumns>& all, unsigned subset) {
    std::vector<Column> columns;
    for (std::size_t c = 0; c < kColumns; ++c)
        if ((subset >> c & 1U) != 0) columns.push_back(all[c]);
    const auto weights = Solve(std::move(columns));
    if (!weights) return false;
    for (const Rational& w : *weights)
        if (w < 0) return false;
    return true;
}

}  // namespace

bool TouchByRationals(const Triangle& a, const Triangle& b) {
    std::array<Column, kColumns> columns;
    for (std::size_t i = 0; i < 3; ++i) {
        columns[i] = MakeColumn(a.v[i], true);
        columns[3 + i] = MakeColumn(b.v[i], false);
    }
    for (unsigned subset = 1; subset < (1U << kColumns) - 1; ++subset)
        if ((subset & 7U) != 0 && (subset >> 3) != 0 && HasSolutionIn(columns, subset)) return true;
    return false;
}

}  // namespace kycb::opcode::test
