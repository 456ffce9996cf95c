// SPDX-License-Identifier: Apache-2.0
// The inner loop of the box sweep.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kycb::model {

/// Pairs of boxes by their numbers, with room behind them, so that a loop can write ahead of its
/// decisions.
class PairBuffer {
  public:
    std::size_t size() const { return size_; }
    std::uint32_t A(std::size_t i) const { return a_[i]; }
    std::uint32_t B(std::size_t i) const { return b_[i]; }

    /// Makes room behind the last pair for `count` more.
    void Reserve(std::size_t count) {
        if (size_ + count <= a_.size()) return;
        a_.resize(2 * a_.size() + count);
        b_.resize(a_.size());
    }
    std::uint32_t* EndOfA() { return a_.data() + size_; }
    std::uint32_t* EndOfB() { return b_.data() + size_; }
    /// Takes `count` pairs that were written at the end.
    void Grow(std::size_t count) { size_ += count; }
    /// Leaves the first `count` pairs only; the room stays.
    void Shrink(std::size_t count) { size_ = count; }
    void Set(std::size_t i, std::uint32_t a, std::uint32_t b) {
        a_[i] = a;
        b_[i] = b;
    }
    void Add(std::uint32_t a, std::uint32_t b) {
        Reserve(1);
        *EndOfA() = a;
        *EndOfB() = b;
        Grow(1);
    }

  private:
    std::vector<std::uint32_t> a_;
    std::vector<std::uint32_t> b_;
    std::size_t size_ = 0;
};

/// What a sweep found, each pair once and in no particular order.
struct SweptPairs {
    PairBuffer sure;     ///< each of the two sees the other
    PairBuffer inDoubt;  ///< single precision cannot tell
};

/// A box in single precision. Rounding keeps the order of any two numbers, so bounds that differ
/// after it decide.
struct FloatBox {
    std::array<float, 3> low;
    std::array<float, 3> high;
};

/// One strip of a sweep: boxes in ascending order of their lower x, side by side for SIMD. Behind
/// the last one stand kSpareLanes that nothing meets.
struct SweepStrip {
    static constexpr std::size_t kSpareLanes = 16;
    /// Where a box begins in this strip, it begins there across the strips and up the layers. A
    /// pair that stands in several strips is taken where the later one of the two begins.
    static constexpr std::uint32_t kBeginsAcross = 1;
    static constexpr std::uint32_t kBeginsUpward = 2;

    std::array<const float*, 3> low;
    std::array<const float*, 3> high;
    const std::uint32_t* numbers;
    const std::uint32_t* begins;
    std::size_t count;
};

/// Appends the pairs of boxes of `strip` that may see each other under `inset`.
void SweepWithin(const SweepStrip& strip, float inset, SweptPairs& found);

/// The same for pairs of a box of `strip` and a box of `other`, which is over the same place.
void SweepAcross(const SweepStrip& strip, const SweepStrip& other, float inset, SweptPairs& found);

}  // namespace kycb::model
