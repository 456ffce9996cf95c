// SPDX-License-Identifier: Apache-2.0
// The inner loop of the box sweep, compiled once for each instruction set.
#include "opcode/Targets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "model/SweepStrip.cpp"

#include <cmath>

#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "model/SweepStrip.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::model::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<float, SweepStrip::kSpareLanes>;
using NumberTag = hn::RebindToUnsigned<Tag>;
using Vector = hn::Vec<Tag>;
using Mask = hn::Mask<Tag>;

constexpr std::size_t kLanes = hn::MaxLanes(Tag());

/// A box that asks, in all lanes.
struct Asker {
    // What rounding can make of a height narrowed by the inset, generously.
    static constexpr float kSlack = 1.0F / (1U << 21U);

    Asker(const SweepStrip& strip, std::size_t place, float inset)
        : number(strip.numbers[place]), begins(strip.begins[place]), endX(strip.high[0][place]) {
        const float low = strip.low[2][place];
        const float high = strip.high[2][place];
        const float slack = (std::abs(low) + std::abs(high) + 2.0F * inset) * kSlack;
        lowX = hn::Set(tag, strip.low[0][place]);
        highX = hn::Set(tag, endX);
        lowY = hn::Set(tag, strip.low[1][place]);
        highY = hn::Set(tag, strip.high[1][place]);
        lowZ = hn::Set(tag, low + inset - slack);
        highZ = hn::Set(tag, high - inset + slack);
        sureLowZ = hn::Set(tag, low + inset + slack);
        sureHighZ = hn::Set(tag, high - inset - slack);
    }

    Tag tag;
    std::uint32_t number;
    std::uint32_t begins;
    float endX;
    Vector lowX, highX, lowY, highY, lowZ, highZ, sureLowZ, sureHighZ;
};

/// Some boxes of a strip, one to a lane.
struct Lanes {
    Lanes(const SweepStrip& strip, std::size_t place)
        : lowX(hn::LoadU(tag, strip.low[0] + place)),
          highX(hn::LoadU(tag, strip.high[0] + place)),
          lowY(hn::LoadU(tag, strip.low[1] + place)),
          highY(hn::LoadU(tag, strip.high[1] + place)),
          lowZ(hn::LoadU(tag, strip.low[2] + place)),
          highZ(hn::LoadU(tag, strip.high[2] + place)) {}

    /// Those that may see `a` or be seen by it. That a box does not end before `a` begins along x
    /// follows from the order of the sweep.
    HWY_INLINE Mask May(const Asker& a) const {
        const Mask y = hn::And(hn::Le(lowY, a.highY), hn::Le(a.lowY, highY));
        const Mask z = hn::And(hn::Le(lowZ, a.highZ), hn::Le(a.lowZ, highZ));
        return hn::And(hn::Le(lowX, a.highX), hn::And(y, z));
    }

    /// Those that do, both ways, whatever rounding did.
    HWY_INLINE Mask Do(const Asker& a) const {
        const Mask x = hn::And(hn::Lt(lowX, a.highX), hn::Lt(a.lowX, highX));
        const Mask y = hn::And(hn::Lt(lowY, a.highY), hn::Lt(a.lowY, highY));
        const Mask z = hn::And(hn::Lt(lowZ, a.sureHighZ), hn::Lt(a.sureLowZ, highZ));
        return hn::And(x, hn::And(y, z));
    }

    Tag tag;
    Vector lowX, highX, lowY, highY, lowZ, highZ;
};

/// Whether a pair of `a` and each lane is to be taken in this strip.
HWY_INLINE Mask AreTakenHere(const Asker& a, const SweepStrip& strip, std::size_t place) {
    constexpr std::uint32_t kBoth = SweepStrip::kBeginsAcross | SweepStrip::kBeginsUpward;
    const NumberTag tag;
    const auto begins = hn::Or(hn::LoadU(tag, strip.begins + place), hn::Set(tag, a.begins));
    return hn::RebindMask(Tag(), hn::Eq(begins, hn::Set(tag, kBoth)));
}

/// Without branches: which lanes meet is too even to be guessed by a processor.
HWY_INLINE void Append(const Asker& a, const SweepStrip& strip, std::size_t place, Mask lanes,
                       PairBuffer& pairs) {
    const NumberTag tag;
    pairs.Reserve(kLanes);
    hn::StoreU(hn::Set(tag, a.number), tag, pairs.EndOfA());
    pairs.Grow(hn::CompressStore(hn::LoadU(tag, strip.numbers + place), hn::RebindMask(tag, lanes),
                                 tag, pairs.EndOfB()));
}

/// Takes the pairs of one box with the boxes of `strip` from `place` on.
HWY_INLINE void SweepFrom(const Asker& a, const SweepStrip& strip, std::size_t place,
                          SweptPairs& found) {
    for (; strip.low[0][place] <= a.endX; place += kLanes) {
        const Lanes lanes(strip, place);
        const Mask may = hn::And(lanes.May(a), AreTakenHere(a, strip, place));
        const Mask sure = hn::And(may, lanes.Do(a));
        Append(a, strip, place, sure, found.sure);
        const Mask doubt = hn::AndNot(sure, may);
        if (HWY_UNLIKELY(!hn::AllFalse(Tag(), doubt))) {
            Append(a, strip, place, doubt, found.inDoubt);
        }
    }
}

void Within(const SweepStrip& strip, float inset, SweptPairs& found) {
    for (std::size_t i = 0; i < strip.count; ++i) {
        SweepFrom(Asker(strip, i, inset), strip, i + 1, found);
    }
}

/// Of two boxes that begin at the same x, the one of `strip` sweeps.
void Across(const SweepStrip& strip, const SweepStrip& other, float inset, SweptPairs& found) {
    std::size_t first = 0;
    for (std::size_t i = 0; i < strip.count; ++i) {
        while (other.low[0][first] < strip.low[0][i])
            ++first;
        SweepFrom(Asker(strip, i, inset), other, first, found);
    }
    first = 0;
    for (std::size_t i = 0; i < other.count; ++i) {
        while (strip.low[0][first] <= other.low[0][i])
            ++first;
        SweepFrom(Asker(other, i, inset), strip, first, found);
    }
}

}  // namespace kycb::model::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kycb::model {

HWY_EXPORT(Within);
HWY_EXPORT(Across);

void SweepWithin(const SweepStrip& strip, float inset, SweptPairs& found) {
    HWY_DYNAMIC_DISPATCH(Within)(strip, inset, found);
}

void SweepAcross(const SweepStrip& strip, const SweepStrip& other, float inset, SweptPairs& found) {
    HWY_DYNAMIC_DISPATCH(Across)(strip, other, inset, found);
}

}  // namespace kycb::model
#endif
