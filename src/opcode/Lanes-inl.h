// SPDX-License-Identifier: Apache-2.0
// Packs of a fixed number of lanes for the instruction set being compiled: one register where it
// is wide enough, several where it is not. Every operation is rounded on its own (no fused
// multiply-add), so all instruction sets give the same bits.

// Once per instruction set, not once per translation unit.
#if defined(KYCB_OPCODE_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KYCB_OPCODE_LANES_INL_H_
#undef KYCB_OPCODE_LANES_INL_H_
#else
#define KYCB_OPCODE_LANES_INL_H_
#endif

#include <cstddef>
#include <cstdint>
#include <cstring>

#include <hwy/highway.h>

#include "opcode/ChosenLanes.h"

// Whether the instruction set moves chosen lanes to the front.
#undef KYCB_HAS_FRONT_MOVE
#define KYCB_HAS_FRONT_MOVE (HWY_TARGET == HWY_AVX3 || HWY_TARGET == HWY_SCALAR)

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

template <typename T, std::size_t Count>
struct Pack {
    using Tag = hn::CappedTag<T, Count>;
    using Vector = hn::Vec<Tag>;
    static constexpr std::size_t kLanes = hn::MaxLanes(Tag());
    static constexpr std::size_t kParts = Count / kLanes;

    Vector part[kParts];
};

template <typename T, std::size_t Count>
struct PackMask {
    using Tag = hn::CappedTag<T, Count>;
    static constexpr std::size_t kParts = Pack<T, Count>::kParts;

    hn::Mask<Tag> part[kParts];
};

using F8 = Pack<float, 8>;
using F16 = Pack<float, 16>;
using D8 = Pack<double, 8>;
using D16 = Pack<double, 16>;

#define KYCB_BINARY(name, expression)                                      \
    template <typename T, std::size_t N>                                   \
    HWY_INLINE Pack<T, N> name(const Pack<T, N>& a, const Pack<T, N>& b) { \
        Pack<T, N> r;                                                      \
        for (std::size_t i = 0; i < r.kParts; ++i)                         \
            r.part[i] = (expression);                                      \
        return r;                                                          \
    }
KYCB_BINARY(operator+, hn::Add(a.part[i], b.part[i]))
KYCB_BINARY(operator-, hn::Sub(a.part[i], b.part[i]))
KYCB_BINARY(operator*, hn::Mul(a.part[i], b.part[i]))
KYCB_BINARY(operator/, hn::Div(a.part[i], b.part[i]))
KYCB_BINARY(Least, hn::Min(a.part[i], b.part[i]))
KYCB_BINARY(Most, hn::Max(a.part[i], b.part[i]))
#undef KYCB_BINARY

#define KYCB_UNARY(name, expression)                  \
    template <typename T, std::size_t N>              \
    HWY_INLINE Pack<T, N> name(const Pack<T, N>& a) { \
        Pack<T, N> r;                                 \
        for (std::size_t i = 0; i < r.kParts; ++i)    \
            r.part[i] = (expression);                 \
        return r;                                     \
    }
KYCB_UNARY(Magnitude, hn::Abs(a.part[i]))
KYCB_UNARY(operator-, hn::Neg(a.part[i]))
#undef KYCB_UNARY

#define KYCB_COMPARE(name, operation)                                          \
    template <typename T, std::size_t N>                                       \
    HWY_INLINE PackMask<T, N> name(const Pack<T, N>& a, const Pack<T, N>& b) { \
        PackMask<T, N> r;                                                      \
        for (std::size_t i = 0; i < r.kParts; ++i)                             \
            r.part[i] = hn::operation(a.part[i], b.part[i]);                   \
        return r;                                                              \
    }
KYCB_COMPARE(operator<, Lt)
KYCB_COMPARE(operator<=, Le)
KYCB_COMPARE(operator>, Gt)
KYCB_COMPARE(operator>=, Ge)
KYCB_COMPARE(operator==, Eq)
#undef KYCB_COMPARE

#define KYCB_LOGIC(name, operation)                                                    \
    template <typename T, std::size_t N>                                               \
    HWY_INLINE PackMask<T, N> name(const PackMask<T, N>& a, const PackMask<T, N>& b) { \
        PackMask<T, N> r;                                                              \
        for (std::size_t i = 0; i < r.kParts; ++i)                                     \
            r.part[i] = hn::operation(a.part[i], b.part[i]);                           \
        return r;                                                                      \
    }
KYCB_LOGIC(operator&, And)
KYCB_LOGIC(operator|, Or)
KYCB_LOGIC(operator^, Xor)
#undef KYCB_LOGIC

template <typename T, std::size_t N>
HWY_INLINE Pack<T, N> Choose(const PackMask<T, N>& m, const Pack<T, N>& yes, const Pack<T, N>& no) {
    Pack<T, N> r;
    for (std::size_t i = 0; i < r.kParts; ++i)
        r.part[i] = hn::IfThenElse(m.part[i], yes.part[i], no.part[i]);
    return r;
}

/// The mask as the low bits of an integer, lane 0 lowest.
template <typename T, std::size_t N>
HWY_INLINE unsigned Bits(const PackMask<T, N>& m) {
    const typename Pack<T, N>::Tag tag;
    constexpr unsigned kPartBits = (1U << Pack<T, N>::kLanes) - 1;
    unsigned bits = 0;
    for (std::size_t i = 0; i < m.kParts; ++i) {
        // The store may write eight bytes where there are one or two.
        std::uint8_t bytes[8] = {};
        hn::StoreMaskBits(tag, m.part[i], bytes);
        std::uint16_t part;
        std::memcpy(&part, bytes, sizeof(part));
        bits |= (part & kPartBits) << (i * Pack<T, N>::kLanes);
    }
    return bits;
}

/// Whether any lane is set.
template <typename T, std::size_t N>
HWY_INLINE bool Any(const PackMask<T, N>& m) {
    const typename Pack<T, N>::Tag tag;
    auto any = m.part[0];
    for (std::size_t i = 1; i < m.kParts; ++i)
        any = hn::Or(any, m.part[i]);
    return !hn::AllFalse(tag, any);
}

template <std::size_t N, typename T>
HWY_INLINE Pack<T, N> Broadcast(T value) {
    Pack<T, N> r;
    for (std::size_t i = 0; i < r.kParts; ++i)
        r.part[i] = hn::Set(typename Pack<T, N>::Tag(), value);
    return r;
}

/// From memory aligned to a register.
template <std::size_t N, typename T>
HWY_INLINE Pack<T, N> Load(const T* from) {
    Pack<T, N> r;
    for (std::size_t i = 0; i < r.kParts; ++i)
        r.part[i] = hn::Load(typename Pack<T, N>::Tag(), from + i * r.kLanes);
    return r;
}

template <typename T, std::size_t N>
HWY_INLINE void Store(const Pack<T, N>& a, T* to) {
    for (std::size_t i = 0; i < a.kParts; ++i)
        hn::Store(a.part[i], typename Pack<T, N>::Tag(), to + i * a.kLanes);
}

/// The mask of the low bits of an integer.
template <std::size_t N, typename T = float>
HWY_INLINE PackMask<T, N> MaskOf(unsigned bits) {
    const typename Pack<T, N>::Tag tag;
    PackMask<T, N> r;
    for (std::size_t i = 0; i < r.kParts; ++i) {
        const unsigned part = bits >> (i * Pack<T, N>::kLanes);
        // The load may read eight bytes where there are one or two.
        const std::uint8_t bytes[8] = {static_cast<std::uint8_t>(part),
                                       static_cast<std::uint8_t>(part >> 8U)};
        r.part[i] = hn::LoadMaskBits(tag, bytes);
    }
    return r;
}

template <std::size_t N>
HWY_INLINE float LeastLane(const Pack<float, N>& a) {
    const typename Pack<float, N>::Tag tag;
    auto least = a.part[0];
    for (std::size_t i = 1; i < a.kParts; ++i)
        least = hn::Min(least, a.part[i]);
    return hn::GetLane(hn::MinOfLanes(tag, least));
}

template <std::size_t N>
HWY_INLINE float MostLane(const Pack<float, N>& a) {
    const typename Pack<float, N>::Tag tag;
    auto most = a.part[0];
    for (std::size_t i = 1; i < a.kParts; ++i)
        most = hn::Max(most, a.part[i]);
    return hn::GetLane(hn::MaxOfLanes(tag, most));
}

/// Moves the chosen lanes of registers to their front.
template <class D>
class FrontMover {
  public:
    FrontMover() = default;
    explicit HWY_INLINE FrontMover(const hn::Mask<D>& chosen)
        : chosen_(chosen), count_(hn::CountTrue(D(), chosen)) {
#if !KYCB_HAS_FRONT_MOVE
        constexpr std::size_t kLanes = hn::MaxLanes(D());
        std::uint8_t bytes[8] = {};
        hn::StoreMaskBits(D(), chosen, bytes);
        const hn::RebindToSigned<D> whole;
        const hn::Rebind<std::uint8_t, D> narrow;
        const auto& lanes = kChosenLanes<kLanes>.lane[bytes[0] & ((std::size_t{1} << kLanes) - 1)];
        indices_ = hn::IndicesFromVec(D(), hn::PromoteTo(whole, hn::LoadU(narrow, lanes)));
#endif
    }
    std::size_t Count() const {
        return count_;
    }
    HWY_INLINE hn::Vec<D> Moved(const hn::Vec<D>& v) const {
#if KYCB_HAS_FRONT_MOVE
        return hn::Compress(v, chosen_);
#else
        return hn::TableLookupLanes(v, indices_);
#endif
    }

  private:
    hn::Mask<D> chosen_;
    std::size_t count_;
#if !KYCB_HAS_FRONT_MOVE
    decltype(hn::IndicesFromVec(D(), hn::Zero(hn::RebindToSigned<D>()))) indices_;
#endif
};

/// Writes the chosen lanes of packs side by side, wherever; what follows them, up to as many places
/// as there are lanes, may be overwritten.
template <std::size_t N>
class ChosenStore {
  public:
    explicit HWY_INLINE ChosenStore(const PackMask<float, N>& chosen) {
        for (std::size_t i = 0; i < kParts; ++i)
            mover_[i] = Mover(chosen.part[i]);
    }
    HWY_INLINE void Store(const Pack<float, N>& a, float* to) const {
        for (std::size_t i = 0; i < kParts; ++i) {
            hn::StoreU(mover_[i].Moved(a.part[i]), Tag(), to);
            to += mover_[i].Count();
        }
    }

  private:
    using Tag = typename Pack<float, N>::Tag;
    using Mover = FrontMover<Tag>;
    static constexpr std::size_t kParts = Pack<float, N>::kParts;

    Mover mover_[kParts];
};

/// Writes the chosen lanes of two packs alternately; what follows them, up to as many places as all
/// lanes take, may be overwritten.
template <std::size_t N>
HWY_INLINE void StoreChosenByTwos(const PackMask<float, N>& chosen, const Pack<float, N>& a,
                                  const Pack<float, N>& b, float* to) {
    using Tag = typename Pack<float, N>::Tag;
    for (std::size_t i = 0; i < a.kParts; ++i) {
        const FrontMover<Tag> mover(chosen.part[i]);
        hn::StoreInterleaved2(mover.Moved(a.part[i]), mover.Moved(b.part[i]), Tag(), to);
        to += 2 * mover.Count();
    }
}

/// Lanes that follow one another.
template <std::size_t N>
struct LaneRange {
    HWY_INLINE LaneRange(unsigned from, unsigned to)
        : begin(from), end(to), before(MaskOf<N>((1U << from) - 1)) {}

    unsigned begin;
    unsigned end;
    PackMask<float, N> before;
};

/// Takes values from rows of eight by their places there, one for each lane, and writes them side
/// by side. Places for lanes that are of no interest must be such too.
template <std::size_t N, bool kRowFitsRegister = (Pack<float, N>::kLanes >= 8)>
class LanePicker {
  public:
    explicit HWY_INLINE LanePicker(const std::uint8_t* places) {
        const hn::RebindToSigned<Tag> whole;
        const hn::Rebind<std::uint8_t, Tag> narrow;
        for (std::size_t i = 0; i < kParts; ++i) {
            const auto place = hn::LoadU(narrow, places + i * kLanes);
            place_[i] = hn::IndicesFromVec(Tag(), hn::PromoteTo(whole, place));
        }
    }
    /// Writes the lanes of a range, and anything behind them; `row` and `to` are aligned to a
    /// register.
    HWY_INLINE void Store(const float* row, const LaneRange<N>& range, float* to) const {
        const auto values = LoadRow(row);
        for (std::size_t i = 0; i < kParts; ++i) {
            float* part = to + i * kLanes;
            const auto picked = hn::TableLookupLanes(values, place_[i]);
            const auto before = hn::Load(Tag(), part);
            hn::Store(hn::IfThenElse(range.before.part[i], before, picked), Tag(), part);
        }
    }

  private:
    using Tag = typename Pack<float, N>::Tag;
    static constexpr std::size_t kLanes = Pack<float, N>::kLanes;
    static constexpr std::size_t kParts = Pack<float, N>::kParts;

    static HWY_INLINE hn::Vec<Tag> LoadRow(const float* row) {
        if constexpr (kLanes == 8) return hn::Load(Tag(), row);
#if HWY_TARGET != HWY_SCALAR
        else
            return hn::ZeroExtendVector(Tag(), hn::Load(hn::Half<Tag>(), row));
#endif
    }

    decltype(hn::IndicesFromVec(Tag(), hn::Zero(hn::RebindToSigned<Tag>()))) place_[kParts];
};

template <std::size_t N>
class LanePicker<N, false> {
  public:
    explicit HWY_INLINE LanePicker(const std::uint8_t* places) : places_(places) {}
    HWY_INLINE void Store(const float* row, const LaneRange<N>& range, float* to) const {
        for (unsigned i = range.begin; i < range.end; ++i)
            to[i] = row[places_[i]];
    }

  private:
    const std::uint8_t* places_;
};

/// Two rows of eight, one behind the other.
HWY_INLINE F16 LoadRows(const float* first, const float* second) {
    F16 r;
    if constexpr (F16::kLanes == 16) {
#if HWY_TARGET != HWY_SCALAR
        const hn::Half<F16::Tag> half;
        r.part[0] = hn::Combine(F16::Tag(), hn::Load(half, second), hn::Load(half, first));
#endif
    } else {
        for (std::size_t i = 0; i < r.kParts / 2; ++i) {
            r.part[i] = hn::Load(F16::Tag(), first + i * r.kLanes);
            r.part[r.kParts / 2 + i] = hn::Load(F16::Tag(), second + i * r.kLanes);
        }
    }
    return r;
}

/// The same for places in two rows, the one behind the other. Writes all lanes; behind the places
/// in use, there must be others below sixteen.
class TwoRowPicker {
  public:
    explicit HWY_INLINE TwoRowPicker(const std::uint8_t* places) : places_(places) {
        if constexpr (kLanes >= 8) {
            const hn::RebindToSigned<Tag> whole;
            const hn::Rebind<std::uint8_t, Tag> narrow;
            for (std::size_t i = 0; i < kParts; ++i) {
                const auto place = hn::PromoteTo(whole, hn::LoadU(narrow, places + i * kLanes));
                const auto lane = hn::And(place, hn::Set(whole, static_cast<int>(kLanes - 1)));
                place_[i] = hn::IndicesFromVec(Tag(), lane);
                inSecond_.part[i] = hn::RebindMask(Tag(), hn::Gt(place, hn::Set(whole, 7)));
            }
        }
    }
    HWY_INLINE void Store(const float* first, const float* second, float* to) const {
        if constexpr (kLanes == 16) {
            const auto values = LoadRows(first, second).part[0];
            hn::Store(hn::TableLookupLanes(values, place_[0]), Tag(), to);
        } else if constexpr (kLanes == 8) {
            const auto low = hn::Load(Tag(), first);
            const auto high = hn::Load(Tag(), second);
            for (std::size_t i = 0; i < kParts; ++i) {
                const auto picked =
                    hn::IfThenElse(inSecond_.part[i], hn::TableLookupLanes(high, place_[i]),
                                   hn::TableLookupLanes(low, place_[i]));
                hn::Store(picked, Tag(), to + i * kLanes);
            }
        } else {
            for (std::size_t i = 0; i < 16; ++i)
                to[i] = (places_[i] < 8 ? first : second)[places_[i] % 8];
        }
    }

  private:
    using Tag = F16::Tag;
    static constexpr std::size_t kLanes = F16::kLanes;
    static constexpr std::size_t kParts = F16::kParts;

    const std::uint8_t* places_;
    decltype(hn::IndicesFromVec(Tag(), hn::Zero(hn::RebindToSigned<Tag>()))) place_[kParts];
    PackMask<float, 16> inSecond_;
};

/// To memory wherever.
template <typename T, std::size_t N>
HWY_INLINE void StoreAnywhere(const Pack<T, N>& a, T* to) {
    for (std::size_t i = 0; i < a.kParts; ++i)
        hn::StoreU(a.part[i], typename Pack<T, N>::Tag(), to + i * a.kLanes);
}

template <class P>
struct Vector3 {
    P x;
    P y;
    P z;
};

using F8x3 = Vector3<F8>;
using F16x3 = Vector3<F16>;
using D8x3 = Vector3<D8>;
using D16x3 = Vector3<D16>;

template <class P>
HWY_INLINE Vector3<P> operator-(const Vector3<P>& a, const Vector3<P>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

template <class P>
HWY_INLINE Vector3<P> operator+(const Vector3<P>& v, const P& all) {
    return {v.x + all, v.y + all, v.z + all};
}

template <class P>
HWY_INLINE Vector3<P> operator-(const Vector3<P>& v, const P& all) {
    return {v.x - all, v.y - all, v.z - all};
}

template <class P>
HWY_INLINE Vector3<P> Cross(const Vector3<P>& a, const Vector3<P>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

template <class P>
HWY_INLINE P Dot(const Vector3<P>& a, const Vector3<P>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <class P>
HWY_INLINE P LeastOf(const P (&d)[3]) {
    return Least(d[0], Least(d[1], d[2]));
}

template <class P>
HWY_INLINE P MostOf(const P (&d)[3]) {
    return Most(d[0], Most(d[1], d[2]));
}

/// The largest magnitude among the coordinates.
template <class P>
HWY_INLINE P Norm(const Vector3<P>& a) {
    return Most(Most(Magnitude(a.x), Magnitude(a.y)), Magnitude(a.z));
}

template <class P>
HWY_INLINE Vector3<P> Least(const Vector3<P>& a, const Vector3<P>& b) {
    return {Least(a.x, b.x), Least(a.y, b.y), Least(a.z, b.z)};
}

template <class P>
HWY_INLINE Vector3<P> Most(const Vector3<P>& a, const Vector3<P>& b) {
    return {Most(a.x, b.x), Most(a.y, b.y), Most(a.z, b.z)};
}

template <class M, class P>
HWY_INLINE Vector3<P> Choose(const M& m, const Vector3<P>& yes, const Vector3<P>& no) {
    return {Choose(m, yes.x, no.x), Choose(m, yes.y, no.y), Choose(m, yes.z, no.z)};
}

/// A triangle in each lane.
template <class P>
struct TriangleLanes {
    Vector3<P> v[3];
};

using TriangleF8 = TriangleLanes<F8>;
using TriangleF16 = TriangleLanes<F16>;
using TriangleD8 = TriangleLanes<D8>;

/// A box in each lane.
template <class P>
struct BoxLanes {
    Vector3<P> low;
    Vector3<P> high;
};

using BoxF8 = BoxLanes<F8>;
using BoxF16 = BoxLanes<F16>;

template <class P>
HWY_INLINE BoxLanes<P> BoxOf(const TriangleLanes<P>& t) {
    return {Least(Least(t.v[0], t.v[1]), t.v[2]), Most(Most(t.v[0], t.v[1]), t.v[2])};
}

/// Floats, widened. A register of them fills one of doubles, or two.
template <std::size_t N>
HWY_INLINE Pack<double, N> Widened(const Pack<float, N>& a) {
    using Wide = Pack<double, N>;
    const typename Wide::Tag wide;
    Wide r;
    if constexpr (Wide::kParts == Pack<float, N>::kParts) {
        for (std::size_t i = 0; i < r.kParts; ++i)
            r.part[i] = hn::PromoteTo(wide, a.part[i]);
    }
#if HWY_TARGET != HWY_SCALAR
    else {
        const hn::Rebind<float, typename Wide::Tag> narrow;
        for (std::size_t i = 0; i < a.kParts; ++i) {
            r.part[2 * i] = hn::PromoteTo(wide, hn::LowerHalf(narrow, a.part[i]));
            r.part[2 * i + 1] = hn::PromoteTo(wide, hn::UpperHalf(narrow, a.part[i]));
        }
    }
#endif
    return r;
}

/// Doubles, each rounded to float.
template <std::size_t N>
HWY_INLINE Pack<float, N> Narrowed(const Pack<double, N>& a) {
    const hn::Rebind<float, typename Pack<double, N>::Tag> narrow;
    Pack<float, N> r;
    if constexpr (r.kParts == Pack<double, N>::kParts) {
        for (std::size_t i = 0; i < r.kParts; ++i)
            r.part[i] = hn::DemoteTo(narrow, a.part[i]);
    }
#if HWY_TARGET != HWY_SCALAR
    else {
        for (std::size_t i = 0; i < r.kParts; ++i)
            r.part[i] =
                hn::Combine(typename Pack<float, N>::Tag(), hn::DemoteTo(narrow, a.part[2 * i + 1]),
                            hn::DemoteTo(narrow, a.part[2 * i]));
    }
#endif
    return r;
}

template <std::size_t N>
HWY_INLINE Vector3<Pack<double, N>> Widened(const Vector3<Pack<float, N>>& a) {
    return {Widened(a.x), Widened(a.y), Widened(a.z)};
}

template <std::size_t N>
HWY_INLINE Vector3<Pack<float, N>> Narrowed(const Vector3<Pack<double, N>>& a) {
    return {Narrowed(a.x), Narrowed(a.y), Narrowed(a.z)};
}

template <std::size_t N>
HWY_INLINE Vector3<Pack<float, N>> LoadVector(const float (*from)[N]) {
    return {Load<N>(from[0]), Load<N>(from[1]), Load<N>(from[2])};
}

template <std::size_t N>
HWY_INLINE void StoreVector(const Vector3<Pack<float, N>>& v, float (*to)[N]) {
    Store(v.x, to[0]);
    Store(v.y, to[1]);
    Store(v.z, to[2]);
}

/// One value of each row of eight, in all lanes.
template <std::size_t N>
HWY_INLINE Vector3<Pack<float, N>> BroadcastLane(const float (*from)[8], std::size_t lane) {
    return {Broadcast<N>(from[0][lane]), Broadcast<N>(from[1][lane]), Broadcast<N>(from[2][lane])};
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
