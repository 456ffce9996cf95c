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

#include <hwy/highway.h>

// Whether one register holds eight floats.
#undef KYCB_EIGHT_LANES
#define KYCB_EIGHT_LANES (HWY_TARGET == HWY_AVX2 || HWY_TARGET == HWY_AVX3)

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
using F4 = Pack<float, 4>;
using D4 = Pack<double, 4>;

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
    unsigned bits = 0;
    for (std::size_t i = 0; i < m.kParts; ++i) {
        // The store may write eight bytes where there is one.
        std::uint8_t bytes[8] = {};
        hn::StoreMaskBits(tag, m.part[i], bytes);
        bits |= static_cast<unsigned>(bytes[0]) << (i * Pack<T, N>::kLanes);
    }
    return bits;
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

template <class P>
struct Vector3 {
    P x;
    P y;
    P z;
};

using F8x3 = Vector3<F8>;
using D4x3 = Vector3<D4>;

template <class P>
HWY_INLINE Vector3<P> operator-(const Vector3<P>& a, const Vector3<P>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

template <class P>
HWY_INLINE Vector3<P> Cross(const Vector3<P>& a, const Vector3<P>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

template <class P>
HWY_INLINE P Dot(const Vector3<P>& a, const Vector3<P>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
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

struct F8x4 {
    F8x3 xyz;
    F8 w;
};

/// Transposes eight groups of four floats.
HWY_INLINE F8x4 Gather(const float* const* rows, std::size_t offset) {
    F8x4 r;
#if KYCB_EIGHT_LANES
    const hn::FixedTag<float, 4> half;
    const hn::FixedTag<float, 8> full;
    const hn::FixedTag<double, 4> wide;
    F8::Vector row[4];
    for (std::size_t i = 0; i < 4; ++i)
        row[i] = hn::Combine(full, hn::Load(half, rows[i + 4] + offset),
                             hn::Load(half, rows[i] + offset));
    const auto xy01 = hn::BitCast(wide, hn::InterleaveLower(full, row[0], row[1]));
    const auto xy23 = hn::BitCast(wide, hn::InterleaveLower(full, row[2], row[3]));
    const auto zw01 = hn::BitCast(wide, hn::InterleaveUpper(full, row[0], row[1]));
    const auto zw23 = hn::BitCast(wide, hn::InterleaveUpper(full, row[2], row[3]));
    r.xyz.x.part[0] = hn::BitCast(full, hn::InterleaveLower(wide, xy01, xy23));
    r.xyz.y.part[0] = hn::BitCast(full, hn::InterleaveUpper(wide, xy01, xy23));
    r.xyz.z.part[0] = hn::BitCast(full, hn::InterleaveLower(wide, zw01, zw23));
    r.w.part[0] = hn::BitCast(full, hn::InterleaveUpper(wide, zw01, zw23));
#else
    alignas(32) float column[4][8];
    for (std::size_t i = 0; i < 8; ++i)
        for (std::size_t k = 0; k < 4; ++k)
            column[k][i] = rows[i][offset + k];
    r = {{Load<8>(column[0]), Load<8>(column[1]), Load<8>(column[2])}, Load<8>(column[3])};
#endif
    return r;
}

enum class Half { kLower, kUpper };

/// Four of eight floats, widened.
template <Half kHalf>
HWY_INLINE D4 Widened(const F8& a) {
    constexpr std::size_t kFirst = kHalf == Half::kLower ? 0 : 1;
    const D4::Tag wide;
    D4 r;
#if KYCB_EIGHT_LANES
    const hn::FixedTag<float, 4> narrow;
    const auto half =
        kFirst == 0 ? hn::LowerHalf(narrow, a.part[0]) : hn::UpperHalf(narrow, a.part[0]);
    r.part[0] = hn::PromoteTo(wide, half);
#elif HWY_TARGET != HWY_SCALAR
    const hn::FixedTag<float, 2> narrow;
    r.part[0] = hn::PromoteTo(wide, hn::LowerHalf(narrow, a.part[kFirst]));
    r.part[1] = hn::PromoteTo(wide, hn::UpperHalf(narrow, a.part[kFirst]));
#else
    for (std::size_t i = 0; i < 4; ++i)
        r.part[i] = hn::PromoteTo(wide, a.part[4 * kFirst + i]);
#endif
    return r;
}

template <Half kHalf>
HWY_INLINE D4x3 Widened(const F8x3& a) {
    return {Widened<kHalf>(a.x), Widened<kHalf>(a.y), Widened<kHalf>(a.z)};
}

/// Eight doubles, each rounded to float.
HWY_INLINE F8 Narrowed(const D4& lower, const D4& upper) {
    F8 r;
#if KYCB_EIGHT_LANES
    const hn::FixedTag<float, 4> narrow;
    r.part[0] = hn::Combine(F8::Tag(), hn::DemoteTo(narrow, upper.part[0]),
                            hn::DemoteTo(narrow, lower.part[0]));
#elif HWY_TARGET != HWY_SCALAR
    const hn::FixedTag<float, 2> narrow;
    r.part[0] = hn::Combine(F8::Tag(), hn::DemoteTo(narrow, lower.part[1]),
                            hn::DemoteTo(narrow, lower.part[0]));
    r.part[1] = hn::Combine(F8::Tag(), hn::DemoteTo(narrow, upper.part[1]),
                            hn::DemoteTo(narrow, upper.part[0]));
#else
    for (std::size_t i = 0; i < 4; ++i) {
        r.part[i] = hn::DemoteTo(F8::Tag(), lower.part[i]);
        r.part[i + 4] = hn::DemoteTo(F8::Tag(), upper.part[i]);
    }
#endif
    return r;
}

HWY_INLINE F8x3 Narrowed(const D4x3& lower, const D4x3& upper) {
    return {Narrowed(lower.x, upper.x), Narrowed(lower.y, upper.y), Narrowed(lower.z, upper.z)};
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
