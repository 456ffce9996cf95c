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
        for (std::int32_t bin = 0; bin < line.bins; bin += std::int32_t{kLanes}) {
            hn::StoreU(hn::Zero(whole), whole, countsEven_ + bin);
            hn::StoreU(hn::Zero(whole), whole, countsOdd_ + bin);
        }
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
        for (i = begin; i + 1 < end; i += 2) {
            ++countsEven_[bins_[i]];
            ++countsOdd_[bins_[i + 1]];
        }
        if (i < end) ++countsEven_[bins_[i]];
    }

    /// The bin that the middle of the parts lies in, and how many of it go to the lower one.
    struct Pivot {
        std::int32_t bin;
        std::size_t rest;
    };

    Pivot FindPivot(std::size_t lower) const {
        for (Pivot pivot = {0, lower};; ++pivot.bin) {
            const auto here = static_cast<std::size_t>(countsEven_[pivot.bin]) +
                              static_cast<std::size_t>(countsOdd_[pivot.bin]);
            if (pivot.rest <= here) return pivot;
            pivot.rest -= here;
        }
    }

    /// How far a parting has come.
    struct Parted {
        std::size_t done;
        std::size_t low;
        std::size_t high;
    };

    /// Brings the `lower` ones that are lowest along the line, as far as bins tell, to the front.
    void Part(std::size_t begin, std::size_t end, std::size_t lower, const Line& line) {
        Count(begin, end, line);
        Pivot pivot = FindPivot(lower);
        Parted parted = {begin, begin, 0};
        PartRegisters(hn::CappedTag<float, 2 * kGroup>(), end, pivot, parted);
        PartRegisters(Tag(), end, pivot, parted);
        for (std::size_t i = parted.done; i < end; ++i) {
            const bool atPivot = bins_[i] == pivot.bin && pivot.rest > 0;
            pivot.rest -= atPivot ? 1 : 0;
            const bool isLow = bins_[i] < pivot.bin || atPivot;
            for (std::size_t k = 0; k < kRows; ++k)
                (isLow ? row_[k][parted.low] : other_[k][parted.high]) = row_[k][i];
            ++(isLow ? parted.low : parted.high);
        }
        // In whole registers: only the last part of all does not fill them, and behind it is room.
        for (std::size_t k = 0; k < kRows; ++k)
            for (std::size_t i = 0; i < parted.high; i += kLanes)
                hn::StoreU(hn::LoadU(Tag(), other_[k] + i), Tag(), row_[k] + parted.low + i);
    }

    /// Parts as many middles as fill whole registers.
    template <class D>
    HWY_INLINE void PartRegisters(D tag, std::size_t end, Pivot& pivot, Parted& parted) {
        const hn::RebindToSigned<D> whole;
        const auto pivots = hn::Set(whole, pivot.bin);
        for (; parted.done + hn::MaxLanes(tag) <= end; parted.done += hn::MaxLanes(tag)) {
            const auto bins = hn::LoadU(whole, bins_ + parted.done);
            auto isLow = hn::RebindMask(tag, hn::Lt(bins, pivots));
            const auto atPivot = hn::RebindMask(tag, hn::Eq(bins, pivots));
            const std::size_t countAtPivot = hn::CountTrue(tag, atPivot);
            if (countAtPivot <= pivot.rest) {
                isLow = hn::Or(isLow, atPivot);
                pivot.rest -= countAtPivot;
            } else if (pivot.rest > 0) {
                isLow = hn::Or(isLow, FirstOf<D>(atPivot, pivot.rest));
                pivot.rest = 0;
            }
            const FrontMover<D> toLow(isLow);
            const FrontMover<D> toHigh(hn::Not(isLow));
            for (std::size_t k = 0; k < kRows; ++k) {
                const auto moved = hn::LoadU(tag, row_[k] + parted.done);
                hn::StoreU(toLow.Moved(moved), tag, row_[k] + parted.low);
                hn::StoreU(toHigh.Moved(moved), tag, other_[k] + parted.high);
            }
            parted.low += toLow.Count();
            parted.high += toHigh.Count();
        }
    }

    template <class D>
    static hn::Mask<D> FirstOf(const hn::Mask<D>& mask, std::size_t count) {
        constexpr std::size_t kCount = hn::MaxLanes(D());
        const unsigned all = Bits(PackMask<float, kCount>{{mask}});
        unsigned first = 0;
        for (unsigned rest = all; count > 0; --count, rest &= rest - 1)
            first |= rest & (0U - rest);
        return MaskOf<kCount>(first).part[0];
    }

    float* row_[kRows];
    float* other_[kRows];
    std::int32_t* bins_;
    // Neighbours fall into one bin: with two sets of counts, they need not wait for each other.
    std::int32_t countsEven_[kMostBins];
    std::int32_t countsOdd_[kMostBins];
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
