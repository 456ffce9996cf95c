// SPDX-License-Identifier: Apache-2.0
// Sorting boxes so that each eight, each eight times eight, and so on, lie close together.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace kycb::opcode {

/// The middles of boxes, side by side, with a number that goes along with each. For sorting; the
/// memory is kept for the next sort.
class Middles {
  public:
    /// Makes place for `count` middles. What was there is lost.
    void Resize(std::size_t count);
    std::size_t Count() const { return count_; }

    float* Row(std::size_t axis) { return rows_[axis].data(); }
    /// Numbers as the bits of floats, so that all rows move alike.
    float* Numbers() { return rows_[3].data(); }
    std::uint32_t NumberAt(std::size_t i) const {
        std::uint32_t number;
        std::memcpy(&number, &rows_[3][i], sizeof(number));
        return number;
    }
    void Set(std::size_t i, float x, float y, float z, std::uint32_t number) {
        rows_[0][i] = x;
        rows_[1][i] = y;
        rows_[2][i] = z;
        std::memcpy(&rows_[3][i], &number, sizeof(number));
    }

    /// Memory of the sort itself.
    float* OtherRow(std::size_t row) { return otherRows_[row].data(); }
    std::int32_t* Bins() { return bins_.data(); }

  private:
    std::array<std::vector<float>, 4> rows_;
    std::array<std::vector<float>, 4> otherRows_;
    std::vector<std::int32_t> bins_;
    std::size_t count_ = 0;
};

/// Sorts by halving at the median along the axis on which the middles spread the most, down to
/// eight. Cuts are at multiples of powers of eight, so that groups of groups stay together too.
/// Medians are approximate, so that no bad order makes it slow. Middles that cannot be told apart
/// stay in their order. The result is the same on every instruction set.
void SortByPlace(Middles& middles);

}  // namespace kycb::opcode
