// SPDX-License-Identifier: Apache-2.0
// Eight triangle pairs at a time. The test is the one of TriangleContact.cpp: the sides of the
// vertices, the vertex that has the other plane to itself, and the order of the crossings along
// the common line of the planes. It runs in single precision first; pairs that this cannot decide
// (touching, coplanar, grazing) run in double precision, where terms that are all zero prove a
// zero; what is left goes to the exact test.

#if defined(KYCB_OPCODE_PAIR_BATCH_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KYCB_OPCODE_PAIR_BATCH_INL_H_
#undef KYCB_OPCODE_PAIR_BATCH_INL_H_
#else
#define KYCB_OPCODE_PAIR_BATCH_INL_H_
#endif

#include <cstdint>

#include <hwy/highway.h>

#include "opcode/Lanes-inl.h"
#include "opcode/MeshTree.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

/// Pairs that wait for a batch to fill: the corners (twelve floats) and number of each triangle.
struct PairQueue {
    const float* a[kWidth];
    const float* b[kWidth];
    std::uint32_t idA[kWidth];
    std::uint32_t idB[kWidth];
    unsigned count = 0;

    HWY_INLINE void Add(const float* cornersA, std::uint32_t a0, const float* cornersB,
                        std::uint32_t b0) {
        a[count] = cornersA;
        b[count] = cornersB;
        idA[count] = a0;
        idB[count] = b0;
        ++count;
    }
    /// Repeats the first pair, so that idle lanes hold something harmless.
    HWY_INLINE void Pad() {
        for (unsigned i = count; i < kWidth; ++i) {
            a[i] = a[0];
            b[i] = b[0];
        }
    }
};

/// Where eight pairs touch: the two ends of each common segment.
struct alignas(32) SegmentEnds {
    float at[2][3][kWidth];
};

/// The verdict on eight pairs, one bit each. A pair in none of them touches nothing.
struct Verdict {
    unsigned hit;     // touching, with segment ends
    unsigned single;  // of these, those with one point only
    unsigned doubt;   // to be decided by the next, more careful test
};

template <class P>
struct TriangleLanes {
    Vector3<P> v[3];
};

using TriangleF8 = TriangleLanes<F8>;
using TriangleD4 = TriangleLanes<D4>;

HWY_INLINE TriangleF8 GatherTriangles(const float* const* corners) {
    return {{Gather(corners, 0), Gather(corners, 4), Gather(corners, 8)}};
}

// Rounding of a volume of three differences in single precision: eight roundings of half an ulp
// (2^-24) in each of six terms, each bounded by the product of the largest components. That is
// 2.87e-6; the rest covers the rounding of the bound itself.
constexpr float kVolumeError = 3.2e-6F;
// Underflow: absolute errors far below what this adds.
constexpr float kUnderflow = 0x1p-120F;

HWY_INLINE F8 VolumeTolerance(const F8& u, const F8& v, const F8& w) {
    const F8 tiny = Broadcast<8>(kUnderflow);
    return (u * v * Broadcast<8>(kVolumeError) + tiny) * w + tiny;
}

/// Turns the triangles so that the lane's chosen vertex comes first.
template <class P, class M>
HWY_INLINE TriangleLanes<P> TurnedTo(const TriangleLanes<P>& t, const M& isSecond,
                                     const M& isThird) {
    return {{Choose(isThird, t.v[2], Choose(isSecond, t.v[1], t.v[0])),
             Choose(isThird, t.v[0], Choose(isSecond, t.v[2], t.v[1])),
             Choose(isThird, t.v[1], Choose(isSecond, t.v[0], t.v[2]))}};
}

/// Volumes of an edge of a with an edge of b, both from the lone vertices: they order the
/// crossings along the common line.
template <class P>
struct EdgeVolumes {
    P o11, o12, o21, o22;
};

/// Exchanges what belongs to the second and third vertices of a (rows) and b (columns).
template <class P, class M>
HWY_INLINE EdgeVolumes<P> Exchanged(const EdgeVolumes<P>& o, const M& rows, const M& columns) {
    const EdgeVolumes<P> r = {Choose(rows, o.o21, o.o11), Choose(rows, o.o22, o.o12),
                              Choose(rows, o.o11, o.o21), Choose(rows, o.o12, o.o22)};
    return {Choose(columns, r.o12, r.o11), Choose(columns, r.o11, r.o12),
            Choose(columns, r.o22, r.o21), Choose(columns, r.o21, r.o22)};
}

HWY_INLINE void StoreVector(const F8x3& v, float (*to)[kWidth]) {
    Store(v.x, to[0]);
    Store(v.y, to[1]);
    Store(v.z, to[2]);
}

HWY_INLINE D4x3 LoadVector(const float (*from)[kWidth], std::size_t first) {
    return {LoadWidened(&from[0][first]), LoadWidened(&from[1][first]),
            LoadWidened(&from[2][first])};
}

/// Keeps the ends inside the common box of the two triangles, whatever their rounding.
HWY_INLINE void ClampEnds(const TriangleF8& a, const TriangleF8& b, SegmentEnds& ends) {
    const auto clamp = [&](F8 Vector3<F8>::*axis, std::size_t k) HWY_ATTR {
        const F8 lowA = Least(Least(a.v[0].*axis, a.v[1].*axis), a.v[2].*axis);
        const F8 lowB = Least(Least(b.v[0].*axis, b.v[1].*axis), b.v[2].*axis);
        const F8 highA = Most(Most(a.v[0].*axis, a.v[1].*axis), a.v[2].*axis);
        const F8 highB = Most(Most(b.v[0].*axis, b.v[1].*axis), b.v[2].*axis);
        const F8 low = Most(lowA, lowB);
        const F8 high = Least(highA, highB);
        for (std::size_t end = 0; end < 2; ++end)
            Store(Least(Most(Load<8>(ends.at[end][k]), low), high), ends.at[end][k]);
    };
    clamp(&F8x3::x, 0);
    clamp(&F8x3::y, 1);
    clamp(&F8x3::z, 2);
}

/// One end of a common segment: on an edge of a or of b, from the lone vertex to another.
struct alignas(32) EndChoice {
    float onB[kWidth];      // 1 or 0
    float from[3][kWidth];  // lone vertex
    float to[3][kWidth];
};

HWY_INLINE void StoreChoice(const PackMask<float, 8>& onB, const F8x3& from, const F8x3& to,
                            EndChoice& choice) {
    Store(Choose(onB, Broadcast<8>(1.0F), Broadcast<8>(0.0F)), choice.onB);
    StoreVector(from, choice.from);
    StoreVector(to, choice.to);
}

/// Where the chosen edges pass the plane of the other triangle, in double precision.
HWY_INLINE void PlaceEnds(const TriangleF8& a, const TriangleF8& b, const EndChoice (&choice)[2],
                          SegmentEnds& ends) {
    alignas(32) float corner[6][3][kWidth];
    for (std::size_t k = 0; k < 3; ++k) {
        StoreVector(a.v[k], corner[k]);
        StoreVector(b.v[k], corner[3 + k]);
    }
    for (std::size_t first = 0; first < kWidth; first += 4) {
        const D4x3 a0 = LoadVector(corner[0], first);
        const D4x3 b0 = LoadVector(corner[3], first);
        const D4x3 normalA =
            Cross(LoadVector(corner[1], first) - a0, LoadVector(corner[2], first) - a0);
        const D4x3 normalB =
            Cross(LoadVector(corner[4], first) - b0, LoadVector(corner[5], first) - b0);
        const D4x3 w = a0 - b0;
        const D4 aboveB = Dot(normalB, w);
        const D4 belowA = Dot(normalA, w);
        for (std::size_t end = 0; end < 2; ++end) {
            const EndChoice& c = choice[end];
            const auto onB = LoadWidened(&c.onB[first]) > Broadcast<4>(0.0);
            const D4x3 from = LoadVector(c.from, first);
            const D4x3 edge = LoadVector(c.to, first) - from;
            const D4x3 normal = Choose(onB, normalA, normalB);
            // The distance of the start, and how it falls along the edge.
            const D4 t = Choose(onB, belowA, -aboveB) / Dot(normal, edge);
            StoreRounded(from.x + t * edge.x, &ends.at[end][0][first]);
            StoreRounded(from.y + t * edge.y, &ends.at[end][1][first]);
            StoreRounded(from.z + t * edge.z, &ends.at[end][2][first]);
        }
    }
}

template <class P>
HWY_INLINE P LeastOf(const P (&d)[3]) {
    return Least(d[0], Least(d[1], d[2]));
}

template <class P>
HWY_INLINE P MostOf(const P (&d)[3]) {
    return Most(d[0], Most(d[1], d[2]));
}

HWY_INLINE F8 LeastMagnitude(const F8 (&d)[3]) {
    return Least(Magnitude(d[0]), Least(Magnitude(d[1]), Magnitude(d[2])));
}

enum class Ends { kWanted, kNotWanted };

/// The test in single precision. Coordinates must be small enough for products of three.
template <Ends kEnds>
HWY_INLINE Verdict TestInSingle(const PairQueue& queue, SegmentEnds& ends) {
    const unsigned live = (1U << queue.count) - 1;
    const TriangleF8 a = GatherTriangles(queue.a);
    const TriangleF8 b = GatherTriangles(queue.b);
    const F8x3 edgeA[2] = {a.v[1] - a.v[0], a.v[2] - a.v[0]};
    const F8x3 edgeB[2] = {b.v[1] - b.v[0], b.v[2] - b.v[0]};
    const F8x3 normalA = Cross(edgeA[0], edgeA[1]);
    const F8x3 normalB = Cross(edgeB[0], edgeB[1]);
    const F8x3 toB[3] = {b.v[0] - a.v[0], b.v[1] - a.v[0], b.v[2] - a.v[0]};
    const F8x3 toA[2] = {a.v[1] - b.v[0], a.v[2] - b.v[0]};
    const F8 sideB[3] = {Dot(normalA, toB[0]), Dot(normalA, toB[1]), Dot(normalA, toB[2])};
    const F8 sideA[3] = {-Dot(normalB, toB[0]), Dot(normalB, toA[0]), Dot(normalB, toA[1])};
    const F8 apex = Norm(toB[0]);
    const F8 toleranceB = VolumeTolerance(Norm(edgeA[0]), Norm(edgeA[1]),
                                          Most(apex, Most(Norm(toB[1]), Norm(toB[2]))));
    const F8 toleranceA = VolumeTolerance(Norm(edgeB[0]), Norm(edgeB[1]),
                                          Most(apex, Most(Norm(toA[0]), Norm(toA[1]))));
    const auto apart = (LeastOf(sideB) > toleranceB) | (MostOf(sideB) < -toleranceB) |
                       (LeastOf(sideA) > toleranceA) | (MostOf(sideA) < -toleranceA);
    const unsigned close = live & ~Bits(apart);
    if (close == 0) return {0, 0, 0};

    const auto sure = (LeastMagnitude(sideB) > toleranceB) & (LeastMagnitude(sideA) > toleranceA);
    const F8 zero = Broadcast<8>(0.0F);
    const auto isThirdA = ((sideA[0] > zero) ^ (sideA[1] < zero));
    const auto isSecondA = ((sideA[0] > zero) ^ (sideA[2] < zero));
    const auto isThirdB = ((sideB[0] > zero) ^ (sideB[1] < zero));
    const auto isSecondB = ((sideB[0] > zero) ^ (sideB[2] < zero));
    const TriangleF8 p = TurnedTo(a, isSecondA, isThirdA);
    const TriangleF8 q = TurnedTo(b, isSecondB, isThirdB);
    const auto loneBelowB =
        Choose(isThirdA, sideA[2], Choose(isSecondA, sideA[1], sideA[0])) < zero;
    const auto loneBelowA =
        Choose(isThirdB, sideB[2], Choose(isSecondB, sideB[1], sideB[0])) < zero;

    const F8x3 u1 = p.v[1] - p.v[0];
    const F8x3 u2 = p.v[2] - p.v[0];
    const F8x3 v1 = q.v[1] - q.v[0];
    const F8x3 v2 = q.v[2] - q.v[0];
    const F8x3 w = q.v[0] - p.v[0];
    const F8x3 u1w = Cross(u1, w);
    const F8x3 u2w = Cross(u2, w);
    const EdgeVolumes<F8> o =
        Exchanged(EdgeVolumes<F8>{Dot(u1w, v1), Dot(u1w, v2), Dot(u2w, v1), Dot(u2w, v2)},
                  loneBelowA, loneBelowB);
    const F8 tolerance =
        VolumeTolerance(Most(Norm(u1), Norm(u2)), Most(Norm(v1), Norm(v2)), Norm(w));
    const unsigned decided = Bits(sure);
    const unsigned passing = Bits((o.o11 > tolerance) | (o.o22 < -tolerance));
    const unsigned crossing = Bits((o.o11 < -tolerance) & (o.o22 > tolerance));
    const Verdict verdict = {close & decided & crossing, 0,
                             close & ~(decided & (crossing | passing))};
    if (kEnds == Ends::kWanted && verdict.hit != 0) {
        const auto startOnB = o.o21 >= zero;
        const auto endOnB = o.o12 < zero;
        EndChoice choice[2];
        StoreChoice(startOnB, Choose(startOnB, q.v[0], p.v[0]),
                    Choose(startOnB, Choose(loneBelowB, q.v[2], q.v[1]),
                           Choose(loneBelowA, p.v[1], p.v[2])),
                    choice[0]);
        StoreChoice(
            endOnB, Choose(endOnB, q.v[0], p.v[0]),
            Choose(endOnB, Choose(loneBelowB, q.v[1], q.v[2]), Choose(loneBelowA, p.v[2], p.v[1])),
            choice[1]);
        PlaceEnds(p, q, choice, ends);
        ClampEnds(a, b, ends);
    }
    return verdict;
}

// As in Predicates.cpp.
constexpr double kVolumeErrorDouble = 8 * 0x1p-53;

/// Signs as -1, 0 and 1, and the lanes in which rounding hides them (their sign reads 0).
struct SignLanes {
    D4 sign;
    PackMask<double, 4> unknown;
};

HWY_INLINE D4x3 Magnitudes(const D4x3& v) {
    return {Magnitude(v.x), Magnitude(v.y), Magnitude(v.z)};
}

/// A cross product together with the sums of the magnitudes of its terms.
struct BoundedNormal {
    D4x3 value;
    D4x3 terms;
};

HWY_INLINE BoundedNormal CrossBounded(const D4x3& u, const D4x3& v) {
    const D4x3 plus = {u.y * v.z, u.z * v.x, u.x * v.y};
    const D4x3 minus = {u.z * v.y, u.x * v.z, u.y * v.x};
    return {plus - minus,
            {Magnitude(plus.x) + Magnitude(minus.x), Magnitude(plus.y) + Magnitude(minus.y),
             Magnitude(plus.z) + Magnitude(minus.z)}};
}

HWY_INLINE SignLanes SignOfDot(const BoundedNormal& n, const D4x3& v) {
    const D4 value = Dot(n.value, v);
    const D4 terms = Dot(n.terms, Magnitudes(v));
    const D4 bound = terms * Broadcast<4>(kVolumeErrorDouble);
    const D4 zero = Broadcast<4>(0.0);
    const D4 one = Broadcast<4>(1.0);
    const D4 sign = Choose(value > bound, one, Choose(value < -bound, -one, zero));
    return {sign, (sign == zero) & (terms > zero)};
}

/// Which lanes have their lone vertex at `s`, with `p` and `q` the other two: as FindLoneVertex.
HWY_INLINE PackMask<double, 4> IsLone(const D4& s, const D4& p, const D4& q) {
    const D4 zero = Broadcast<4>(0.0);
    return (s * p <= zero) & (s * q <= zero) & ((Magnitude(s) > zero) | (p * q > zero));
}

/// One triangle of each pair turned to its lone vertex, and the signs of its vertices.
struct LoneTriangle {
    TriangleD4 t;
    D4 sign[3];
    PackMask<double, 4> below;
};

HWY_INLINE LoneTriangle TurnToLone(const TriangleD4& t, const SignLanes (&s)[3]) {
    const auto isSecond = IsLone(s[1].sign, s[2].sign, s[0].sign);
    const auto first = IsLone(s[0].sign, s[1].sign, s[2].sign);
    const D4 zero = Broadcast<4>(0.0);
    const D4 one = Broadcast<4>(1.0);
    const D4 firstOrSecond = Choose(first, one, Choose(isSecond, one, zero));
    const auto isThird = firstOrSecond == zero;
    const auto second = Choose(first, zero, Choose(isSecond, one, zero)) == one;
    LoneTriangle r;
    r.t = TurnedTo(t, second, isThird);
    r.sign[0] = Choose(isThird, s[2].sign, Choose(second, s[1].sign, s[0].sign));
    r.sign[1] = Choose(isThird, s[0].sign, Choose(second, s[2].sign, s[1].sign));
    r.sign[2] = Choose(isThird, s[1].sign, Choose(second, s[0].sign, s[2].sign));
    const D4 side = Choose(r.sign[0] == zero, -r.sign[1], r.sign[0]);
    r.below = side < zero;
    return r;
}

/// An end of the common segment on the edge from `from` to `to`, whose ends have the given signs
/// and of which the first is at `distance` from the plane with `normal`.
HWY_INLINE D4x3 EndOnEdge(const D4x3& from, const D4& fromSign, const D4x3& to, const D4& toSign,
                          const D4& distance, const D4x3& normal) {
    const D4 zero = Broadcast<4>(0.0);
    const D4x3 edge = to - from;
    const D4 quotient = -distance / Dot(normal, edge);
    // A start on the plane is the end itself; so is a target on it.
    const D4 t = Choose(fromSign == zero, zero, quotient);
    const D4x3 inside = {from.x + t * edge.x, from.y + t * edge.y, from.z + t * edge.z};
    return Choose(toSign == zero, to, inside);
}

struct HalfVerdict {
    unsigned apart;
    unsigned hit;
    unsigned single;
};

/// Four of the pairs in double precision.
HWY_INLINE HalfVerdict TestInDouble(const TriangleD4& a, const TriangleD4& b, std::size_t first,
                                    SegmentEnds& ends) {
    const D4 zero = Broadcast<4>(0.0);
    const BoundedNormal normalA = CrossBounded(a.v[1] - a.v[0], a.v[2] - a.v[0]);
    const BoundedNormal normalB = CrossBounded(b.v[1] - b.v[0], b.v[2] - b.v[0]);
    SignLanes sideA[3];
    SignLanes sideB[3];
    for (std::size_t k = 0; k < 3; ++k) {
        sideB[k] = SignOfDot(normalA, b.v[k] - a.v[0]);
        sideA[k] = SignOfDot(normalB, a.v[k] - b.v[0]);
    }
    const D4 signsA[3] = {sideA[0].sign, sideA[1].sign, sideA[2].sign};
    const D4 signsB[3] = {sideB[0].sign, sideB[1].sign, sideB[2].sign};
    const D4 leastA = LeastOf(signsA);
    const D4 mostA = MostOf(signsA);
    const D4 leastB = LeastOf(signsB);
    const D4 mostB = MostOf(signsB);
    const unsigned apart =
        Bits((leastA > zero) | (mostA < zero) | (leastB > zero) | (mostB < zero));
    const auto unknown = sideA[0].unknown | sideA[1].unknown | sideA[2].unknown | sideB[0].unknown |
                         sideB[1].unknown | sideB[2].unknown;
    const auto flat = ((leastA == zero) & (mostA == zero)) | ((leastB == zero) & (mostB == zero));
    const unsigned undecided = Bits(unknown | flat);
    if ((apart | undecided) == 15U) return {apart, 0, 0};

    const LoneTriangle p = TurnToLone(a, sideA);
    const LoneTriangle q = TurnToLone(b, sideB);
    const D4x3 w = q.t.v[0] - p.t.v[0];
    const auto rows = q.below;
    const auto columns = p.below;
    // What FindCrossing does by exchanging vertices.
    const D4x3 p1 = Choose(rows, p.t.v[2], p.t.v[1]);
    const D4x3 p2 = Choose(rows, p.t.v[1], p.t.v[2]);
    const D4x3 q1 = Choose(columns, q.t.v[2], q.t.v[1]);
    const D4x3 q2 = Choose(columns, q.t.v[1], q.t.v[2]);
    const D4 p1Sign = Choose(rows, p.sign[2], p.sign[1]);
    const D4 p2Sign = Choose(rows, p.sign[1], p.sign[2]);
    const D4 q1Sign = Choose(columns, q.sign[2], q.sign[1]);
    const D4 q2Sign = Choose(columns, q.sign[1], q.sign[2]);
    const BoundedNormal u1w = CrossBounded(p1 - p.t.v[0], w);
    const BoundedNormal u2w = CrossBounded(p2 - p.t.v[0], w);
    const D4x3 v1 = q1 - q.t.v[0];
    const D4x3 v2 = q2 - q.t.v[0];
    const SignLanes atStart = SignOfDot(u1w, v1);
    const SignLanes atEnd = SignOfDot(u2w, v2);
    const unsigned known = 15U & ~undecided & ~apart;
    const unsigned passing = known & Bits((atStart.sign > zero) | (atEnd.sign < zero));
    const unsigned unsure = Bits(atStart.unknown | atEnd.unknown);
    const unsigned hit = known & ~passing & ~unsure;
    const unsigned single = hit & Bits((atStart.sign == zero) | (atEnd.sign == zero));
    if (hit != 0) {
        const D4 distanceQ = Dot(normalA.value, q.t.v[0] - a.v[0]);
        const D4 distanceP = Dot(normalB.value, p.t.v[0] - b.v[0]);
        const auto startOnB = Dot(u2w.value, v1) >= zero;
        const auto endOnB = Dot(u1w.value, v2) < zero;
        const D4x3 start =
            Choose(startOnB, EndOnEdge(q.t.v[0], q.sign[0], q1, q1Sign, distanceQ, normalA.value),
                   EndOnEdge(p.t.v[0], p.sign[0], p2, p2Sign, distanceP, normalB.value));
        const D4x3 end =
            Choose(endOnB, EndOnEdge(q.t.v[0], q.sign[0], q2, q2Sign, distanceQ, normalA.value),
                   EndOnEdge(p.t.v[0], p.sign[0], p1, p1Sign, distanceP, normalB.value));
        StoreRounded(start.x, &ends.at[0][0][first]);
        StoreRounded(start.y, &ends.at[0][1][first]);
        StoreRounded(start.z, &ends.at[0][2][first]);
        StoreRounded(end.x, &ends.at[1][0][first]);
        StoreRounded(end.y, &ends.at[1][1][first]);
        StoreRounded(end.z, &ends.at[1][2][first]);
    }
    return {apart | passing, hit, single};
}

/// The test in double precision.
HWY_INLINE Verdict TestInDouble(const PairQueue& queue, SegmentEnds& ends) {
    const unsigned live = (1U << queue.count) - 1;
    const TriangleF8 a = GatherTriangles(queue.a);
    const TriangleF8 b = GatherTriangles(queue.b);
    alignas(32) float corner[6][3][kWidth];
    for (std::size_t k = 0; k < 3; ++k) {
        StoreVector(a.v[k], corner[k]);
        StoreVector(b.v[k], corner[3 + k]);
    }
    Verdict verdict = {0, 0, 0};
    unsigned apart = 0;
    for (std::size_t first = 0; first < queue.count; first += 4) {
        const HalfVerdict half =
            TestInDouble(TriangleD4{{LoadVector(corner[0], first), LoadVector(corner[1], first),
                                     LoadVector(corner[2], first)}},
                         TriangleD4{{LoadVector(corner[3], first), LoadVector(corner[4], first),
                                     LoadVector(corner[5], first)}},
                         first, ends);
        apart |= half.apart << first;
        verdict.hit |= half.hit << first;
        verdict.single |= half.single << first;
    }
    verdict.hit &= live;
    verdict.doubt = live & ~apart & ~verdict.hit;
    if (verdict.hit != 0) ClampEnds(a, b, ends);
    return verdict;
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
