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

template <class M, class P>
HWY_INLINE Vector3<P> Choose(const M& m, const Vector3<P>& yes, const Vector3<P>& no) {
    return {Choose(m, yes.x, no.x), Choose(m, yes.y, no.y), Choose(m, yes.z, no.z)};
}

/// Transposes eight points of four floats each (the last is ignored).
HWY_INLINE F8x3 Gather(const float* const* points, std::size_t offset) {
    F8x3 r;
#if HWY_TARGET == HWY_AVX2 || HWY_TARGET == HWY_AVX3
    const hn::FixedTag<float, 4> half;
    const hn::FixedTag<float, 8> full;
    const hn::FixedTag<double, 4> wide;
    F8::Vector row[4];
    for (std::size_t i = 0; i < 4; ++i)
        row[i] = hn::Combine(full, hn::Load(half, points[i + 4] + offset),
                             hn::Load(half, points[i] + offset));
    const auto xy01 = hn::BitCast(wide, hn::InterleaveLower(full, row[0], row[1]));
    const auto xy23 = hn::BitCast(wide, hn::InterleaveLower(full, row[2], row[3]));
    const auto zw01 = hn::BitCast(wide, hn::InterleaveUpper(full, row[0], row[1]));
    const auto zw23 = hn::BitCast(wide, hn::InterleaveUpper(full, row[2], row[3]));
    r.x.part[0] = hn::BitCast(full, hn::InterleaveLower(wide, xy01, xy23));
    r.y.part[0] = hn::BitCast(full, hn::InterleaveUpper(wide, xy01, xy23));
    r.z.part[0] = hn::BitCast(full, hn::InterleaveLower(wide, zw01, zw23));
#else
    alignas(32) float x[8];
    alignas(32) float y[8];
    alignas(32) float z[8];
    for (std::size_t i = 0; i < 8; ++i) {
        const float* p = points[i] + offset;
        x[i] = p[0];
        y[i] = p[1];
        z[i] = p[2];
    }
    r = {Load<8>(x), Load<8>(y), Load<8>(z)};
#endif
    return r;
}

/// Four consecutive floats, widened.
HWY_INLINE D4 LoadWidened(const float* from) {
    D4 r;
    const hn::Rebind<float, D4::Tag> narrow;
    for (std::size_t i = 0; i < r.kParts; ++i)
        r.part[i] = hn::PromoteTo(D4::Tag(), hn::Load(narrow, from + i * r.kLanes));
    return r;
}

/// Four doubles, each rounded to float.
HWY_INLINE void StoreRounded(const D4& a, float* to) {
    const hn::Rebind<float, D4::Tag> narrow;
    for (std::size_t i = 0; i < a.kParts; ++i)
        hn::Store(hn::DemoteTo(narrow, a.part[i]), narrow, to + i * a.kLanes);
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
