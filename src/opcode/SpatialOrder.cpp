// SPDX-License-Identifier: Apache-2.0
// Compiled once for each instruction set.
#include "opcode/Targets.h"
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "opcode/SpatialOrder.cpp"

#include <algorithm>
#include <cmath>

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "opcode/Lanes-inl.h"
#include "opcode/SpatialOrder.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

constexpr std::size_t kGroup = 8;

constexpr std::size_t kMostBins = 256;

/// Few middles are counted in few bins.
constexpr std::size_t BinsFor(std::size_t count) {
    return count < 64 ? 16 : count < 512 ? 64 : kMostBins;
}

/// How many of `count` make the lower half: whole groups of the largest size that a part can be
/// divided into.
inline std::size_t LowerShare(std::size_t count) {
    std::size_t unit = kGroup;
    while (unit * kGroup < count)
        unit *= kGroup;
    return (count / 2 + unit - 1) / unit * unit;
}

/// Maps middles to bins along one axis.
struct Line {
    std::size_t axis;
    float origin;
    float scale;
    std::int32_t bins;

    // Not so where all middles are one, or differ by too little or too much for a quotient.
    bool IsUsable() const { return std::isfinite(scale) && scale > 0.0F; }
};

class Halving {
  public:
    explicit Halving(Middles& middles) : bins_(middles.Bins()) {
        for (std::size_t k = 0; k < kRows; ++k) {
            row_[k] = middles.Row(k);
            other_[k] = middles.OtherRow(k);
        }
    }

    void Divide(std::size_t begin, std::size_t end) {
        while (end - begin > kGroup) {
            const Line line = FindLine(begin, end);
            if (!line.IsUsable()) return;
            const std::size_t middle = begin + LowerShare(end - begin);
            Part(begin, end, middle - begin, line);
            Divide(begin, middle);
            begin = middle;
        }
    }

  private:
    static constexpr std::size_t kRows = 4;
    using Tag = hn::CappedTag<float, kGroup>;
    using Vector = hn::Vec<Tag>;
    static constexpr std::size_t kLanes = hn::MaxLanes(Tag());

    Line FindLine(std::size_t begin, std::size_t end) const {
        float origin[3];
        float extent[3];
        for (std::size_t k = 0; k < 3; ++k) {
            Vector low = hn::Set(Tag(), row_[k][begin]);
            Vector high = low;
            std::size_t i = begin;
            for (; i + kLanes <= end; i += kLanes) {
                const Vector middle = hn::LoadU(Tag(), row_[k] + i);
                low = hn::Min(low, middle);
                high = hn::Max(high, middle);
            }
            for (; i < end; ++i) {
                const Vector middle = hn::Set(Tag(), row_[k][i]);
                low = hn::Min(low, middle);
                high = hn::Max(high, middle);
            }
            origin[k] = hn::GetLane(hn::MinOfLanes(Tag(), low));
            extent[k] = hn::GetLane(hn::MaxOfLanes(Tag(), high)) - origin[k];
        }
        const auto axis = static_cast<std::size_t>(std::max_element(extent, extent + 3) - extent);
        const std::size_t bins = BinsFor(end - begin);
        return {axis, origin[axis], static_cast<float>(bins) / extent[axis],
                static_cast<std::int32_t>(bins)};
    }

    /// Counts the middles in each bin, and remembers their bins.
    void Count(std::size_t begin, std::size_t end, const Line& line) {
        const hn::RebindToSigned<Tag> whole;
        const Vector origin = hn::Set(Tag(), line.origin);
        const Vector scale = hn::Set(Tag(), line.scale);
        const Vector last = hn::Set(Tag(), static_cast<float>(line.bins - 1));
        for (auto& set : counts_)
            std::fill_n(set, line.bins, 0U);
        std::size_t i = begin;
        for (; i + kLanes <= end; i += kLanes) {
            const Vector middle = hn::LoadU(Tag(), row_[line.axis] + i);
            const Vector place = hn::Min(hn::Mul(hn::Sub(middle, origin), scale), last);
            hn::StoreU(hn::ConvertTo(whole, place), whole, bins_ + i);
        }
        for (; i < end; ++i) {
            const float place = (row_[line.axis][i] - line.origin) * line.scale;
            bins_[i] =
                static_cast<std::int32_t>(std::min(place, static_cast<float>(line.bins - 1)));
        }
        for (i = begin; i < end; ++i)
            ++counts_[i % kSets][bins_[i]];
    }

    /// Brings the `lower` ones that are lowest along the line, as far as bins tell, to the front.
    void Part(std::size_t begin, std::size_t end, std::size_t lower, const Line& line) {
        Count(begin, end, line);
        std::int32_t pivot = 0;
        std::size_t rest = lower;  // of the lower half, those that the pivot's bin must give
        for (;; ++pivot) {
            std::size_t here = 0;
            for (const auto& set : counts_)
                here += set[pivot];
            if (rest <= here) break;
            rest -= here;
        }
        const hn::RebindToSigned<Tag> whole;
        const auto pivots = hn::Set(whole, pivot);
        std::size_t low = begin;
        std::size_t high = 0;
        std::size_t i = begin;
        for (; i + kLanes <= end; i += kLanes) {
            const auto bins = hn::LoadU(whole, bins_ + i);
            auto isLow = hn::RebindMask(Tag(), hn::Lt(bins, pivots));
            const auto atPivot = hn::RebindMask(Tag(), hn::Eq(bins, pivots));
            const std::size_t countAtPivot = hn::CountTrue(Tag(), atPivot);
            if (countAtPivot <= rest) {
                isLow = hn::Or(isLow, atPivot);
                rest -= countAtPivot;
            } else if (rest > 0) {
                isLow = hn::Or(isLow, FirstOf(atPivot, rest));
                rest = 0;
            }
            const FrontMover<Tag> toLow(isLow);
            const FrontMover<Tag> toHigh(hn::Not(isLow));
            for (std::size_t k = 0; k < kRows; ++k) {
                const Vector moved = hn::LoadU(Tag(), row_[k] + i);
                hn::StoreU(toLow.Moved(moved), Tag(), row_[k] + low);
                hn::StoreU(toHigh.Moved(moved), Tag(), other_[k] + high);
            }
            low += toLow.Count();
            high += toHigh.Count();
        }
        for (; i < end; ++i) {
            const bool atPivot = bins_[i] == pivot && rest > 0;
            rest -= atPivot ? 1 : 0;
            const bool isLow = bins_[i] < pivot || atPivot;
            for (std::size_t k = 0; k < kRows; ++k)
                (isLow ? row_[k][low] : other_[k][high]) = row_[k][i];
            ++(isLow ? low : high);
        }
        for (std::size_t k = 0; k < kRows; ++k)
            std::copy_n(other_[k], high, row_[k] + low);
    }

    static hn::Mask<Tag> FirstOf(const hn::Mask<Tag>& mask, std::size_t count) {
        const unsigned all = Bits(PackMask<float, kLanes>{{mask}});
        unsigned first = 0;
        for (unsigned rest = all; count > 0; --count, rest &= rest - 1)
            first |= rest & (0U - rest);
        return MaskOf<kLanes>(first).part[0];
    }

    // Neighbours fall into one bin: with two sets of counts, they need not wait for each other.
    static constexpr std::size_t kSets = 2;

    float* row_[kRows];
    float* other_[kRows];
    std::int32_t* bins_;
    std::uint32_t counts_[kSets][kMostBins];
};

void SortAll(Middles& middles) {
    Halving(middles).Divide(0, middles.Count());
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kycb::opcode {

HWY_EXPORT(SortAll);

void SortByPlace(Middles& middles) {
    HWY_DYNAMIC_DISPATCH(SortAll)(middles);
}

void Middles::Resize(std::size_t count) {
    // What is written in whole registers may go beyond the last.
    constexpr std::size_t kBeyond = 16;
    count_ = count;
    if (bins_.size() >= count + kBeyond) return;
    for (auto* rows : {&rows_, &otherRows_})
        for (std::vector<float>& row : *rows)
            row.resize(count + kBeyond);
    bins_.resize(count + kBeyond);
}

}  // namespace kycb::opcode
#endif
