// SPDX-License-Identifier: Apache-2.0
// Eight triangle pairs at a time. The test is the one of TriangleContact.cpp:
// the sides of the vertices, the vertex that has the other plane to itself, and
// the order of the crossings along the common line of the planes. It runs in
// single precision first; pairs that this cannot decide (touching, coplanar,
// grazing) run in double precision, where terms that are all zero prove a zero;
// what is left goes to the exact test.

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

/// Pairs that wait for a batch to fill.
struct PairQueue {
    const TriangleRecord* a[kWidth];
    const TriangleRecord* b[kWidth];
    unsigned count = 0;

    HWY_INLINE void Add(const TriangleRecord& recordA, const TriangleRecord& recordB) {
        a[count] = &recordA;
        b[count] = &recordB;
        ++count;
    }
    /// Repeats the first pair: idle lanes then change nothing that the first does
    /// not.
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

/// The box of contact points, a part of them in each lane.
struct alignas(32) RegionLanes {
    float low[3][kWidth];
    float high[3][kWidth];
};

/// The verdict on eight pairs, one bit each. A pair in none of them touches
/// nothing.
struct Verdict {
    unsigned hit;     // touching, with segment ends
    unsigned single;  // of these, those with one point only
    unsigned doubt;   // to be decided by the next, more careful test
    unsigned flat;    // of these, those whose vertices are known to lie in one plane
};

template <class P>
struct TriangleLanes {
    Vector3<P> v[3];
};

using TriangleF8 = TriangleLanes<F8>;
using TriangleD4 = TriangleLanes<D4>;

/// Eight triangles with the bounds that their records hold.
struct RecordsF8 {
    TriangleF8 t;
    F8 extent;
    F8 edges;
};

HWY_INLINE RecordsF8 GatherRecords(const TriangleRecord* const* records) {
    const float* rows[kWidth];
    for (std::size_t i = 0; i < kWidth; ++i)
        rows[i] = records[i]->corner[0];
    const F8x4 v[3] = {Gather(rows, 0), Gather(rows, 4), Gather(rows, 8)};
    return {{{v[0].xyz, v[1].xyz, v[2].xyz}},
            v[TriangleRecord::kExtent].w,
            v[TriangleRecord::kEdges].w};
}

// Rounding of a volume of three differences in single precision: eight
// roundings of half an ulp (2^-24) in each of six terms, each bounded by the
// product of the largest components. That is 2.87e-6; the rest covers the
// rounding of the bound itself.
constexpr float kVolumeError = 3.2e-6F;
// Underflow: absolute errors far below what this adds.
constexpr float kUnderflow = 0x1p-120F;

/// The rounding error of a volume of two differences whose product of largest
/// components is `area`, and one whose largest is `length`.
HWY_INLINE F8 VolumeTolerance(const F8& area, const F8& length) {
    const F8 tiny = Broadcast<8>(kUnderflow);
    return (area * Broadcast<8>(kVolumeError) + tiny) * length + tiny;
}

/// Turns the triangles so that the lane's chosen vertex comes first.
template <class P, class M>
HWY_INLINE TriangleLanes<P> TurnedTo(const TriangleLanes<P>& t, const M& isSecond,
                                     const M& isThird) {
    return {{Choose(isThird, t.v[2], Choose(isSecond, t.v[1], t.v[0])),
             Choose(isThird, t.v[0], Choose(isSecond, t.v[2], t.v[1])),
             Choose(isThird, t.v[1], Choose(isSecond, t.v[0], t.v[2]))}};
}

/// Volumes of an edge of a with an edge of b, both from the lone vertices: they
/// order the crossings along the common line.
template <class P>
struct EdgeVolumes {
    P o11, o12, o21, o22;
};

/// Exchanges what belongs to the second and third vertices of a (rows) and b
/// (columns).
template <class P, class M>
HWY_INLINE EdgeVolumes<P> Exchanged(const EdgeVolumes<P>& o, const M& rows, const M& columns) {
    const EdgeVolumes<P> r = {Choose(rows, o.o21, o.o11), Choose(rows, o.o22, o.o12),
                              Choose(rows, o.o11, o.o21), Choose(rows, o.o12, o.o22)};
    return {Choose(columns, r.o12, r.o11), Choose(columns, r.o11, r.o12),
            Choose(columns, r.o22, r.o21), Choose(columns, r.o21, r.o22)};
}

/// One end of each common segment: on an edge of a or of b, from the lone
/// vertex to another.
struct EndChoice {
    PackMask<float, 8> onB;
    F8x3 to;
};

/// Four lanes of where the chosen edges pass the plane of the other triangle.
template <Half kHalf>
HWY_INLINE void PlaceEnds(const TriangleF8& a, const TriangleF8& b, const EndChoice (&choice)[2],
                          D4x3 (&ends)[2]) {
    const D4 zero = Broadcast<4>(0.0);
    const F8 one = Broadcast<8>(1.0F);
    const D4x3 a0 = Widened<kHalf>(a.v[0]);
    const D4x3 b0 = Widened<kHalf>(b.v[0]);
    const D4x3 normalA = Cross(Widened<kHalf>(a.v[1]) - a0, Widened<kHalf>(a.v[2]) - a0);
    const D4x3 normalB = Cross(Widened<kHalf>(b.v[1]) - b0, Widened<kHalf>(b.v[2]) - b0);
    const D4x3 w = a0 - b0;
    const D4 belowB = Dot(normalB, b0 - a0);
    const D4 belowA = Dot(normalA, w);
    for (std::size_t end = 0; end < 2; ++end) {
        const auto onB = Widened<kHalf>(Choose(choice[end].onB, one, Broadcast<8>(0.0F))) > zero;
        const D4x3 from = Choose(onB, b0, a0);
        const D4x3 edge = Widened<kHalf>(choice[end].to) - from;
        // The distance of the start, and how it falls along the edge.
        const D4 t = Choose(onB, belowA, belowB) / Dot(Choose(onB, normalA, normalB), edge);
        ends[end] = {from.x + t * edge.x, from.y + t * edge.y, from.z + t * edge.z};
    }
}

HWY_INLINE F8x3 LeastCorner(const TriangleF8& t) {
    return Least(Least(t.v[0], t.v[1]), t.v[2]);
}

HWY_INLINE F8x3 MostCorner(const TriangleF8& t) {
    return Most(Most(t.v[0], t.v[1]), t.v[2]);
}

/// Where the chosen edges pass the plane of the other triangle: placed in
/// double precision, and kept inside the common box of the two triangles,
/// whatever the rounding.
HWY_INLINE void PlaceEnds(const TriangleF8& a, const TriangleF8& b, const EndChoice (&choice)[2],
                          F8x3 (&ends)[2]) {
    D4x3 lower[2];
    D4x3 upper[2];
    PlaceEnds<Half::kLower>(a, b, choice, lower);
    PlaceEnds<Half::kUpper>(a, b, choice, upper);
    const F8x3 low = Most(LeastCorner(a), LeastCorner(b));
    const F8x3 high = Least(MostCorner(a), MostCorner(b));
    for (std::size_t end = 0; end < 2; ++end)
        ends[end] = Least(Most(Narrowed(lower[end], upper[end]), low), high);
}

HWY_INLINE void StoreVector(const F8x3& v, float (*to)[kWidth]) {
    Store(v.x, to[0]);
    Store(v.y, to[1]);
    Store(v.z, to[2]);
}

HWY_INLINE F8x3 LoadVector(const float (*from)[kWidth]) {
    return {Load<8>(from[0]), Load<8>(from[1]), Load<8>(from[2])};
}

HWY_INLINE void IncludeEnds(const PackMask<float, 8>& hit, const F8x3 (&ends)[2],
                            RegionLanes& region) {
    const F8x3 low = LoadVector(region.low);
    const F8x3 high = LoadVector(region.high);
    StoreVector(Choose(hit, Least(low, Least(ends[0], ends[1])), low), region.low);
    StoreVector(Choose(hit, Most(high, Most(ends[0], ends[1])), high), region.high);
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

enum class Ends { kNotWanted, kWanted };

/// The test in single precision. Coordinates must be small enough for products
/// of three, and the boxes of the triangles of each pair must meet. Ends, when
/// wanted, go to `ends` and `region`.
template <Ends kEnds>
HWY_INLINE Verdict TestInSingle(const PairQueue& queue, SegmentEnds& ends, RegionLanes& region) {
    const unsigned live = (1U << queue.count) - 1;
    const RecordsF8 recordsA = GatherRecords(queue.a);
    const RecordsF8 recordsB = GatherRecords(queue.b);
    const TriangleF8& a = recordsA.t;
    const TriangleF8& b = recordsB.t;
    const F8x3 normalA = Cross(a.v[1] - a.v[0], a.v[2] - a.v[0]);
    const F8x3 normalB = Cross(b.v[1] - b.v[0], b.v[2] - b.v[0]);
    const F8x3 toB = b.v[0] - a.v[0];
    const F8 sideB[3] = {Dot(normalA, toB), Dot(normalA, b.v[1] - a.v[0]),
                         Dot(normalA, b.v[2] - a.v[0])};
    const F8 sideA[3] = {-Dot(normalB, toB), Dot(normalB, a.v[1] - b.v[0]),
                         Dot(normalB, a.v[2] - b.v[0])};
    // Boxes that meet hold no two points further apart than this along an axis.
    const F8 span = recordsA.extent + recordsB.extent;
    const F8 toleranceB = VolumeTolerance(recordsA.edges, span);
    const F8 toleranceA = VolumeTolerance(recordsB.edges, span);
    const auto apart = (LeastOf(sideB) > toleranceB) | (MostOf(sideB) < -toleranceB) |
                       (LeastOf(sideA) > toleranceA) | (MostOf(sideA) < -toleranceA);
    const unsigned close = live & ~Bits(apart);
    if (close == 0) return {0, 0, 0, 0};

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

    const F8x3 v1 = q.v[1] - q.v[0];
    const F8x3 v2 = q.v[2] - q.v[0];
    const F8x3 w = q.v[0] - p.v[0];
    const F8x3 u1w = Cross(p.v[1] - p.v[0], w);
    const F8x3 u2w = Cross(p.v[2] - p.v[0], w);
    const EdgeVolumes<F8> o =
        Exchanged(EdgeVolumes<F8>{Dot(u1w, v1), Dot(u1w, v2), Dot(u2w, v1), Dot(u2w, v2)},
                  loneBelowA, loneBelowB);
    const F8 tolerance = VolumeTolerance(recordsA.extent * recordsB.extent, span);
    const auto crossing = sure & (o.o11 < -tolerance) & (o.o22 > tolerance);
    const unsigned passing = Bits(sure & ((o.o11 > tolerance) | (o.o22 < -tolerance)));
    const unsigned hit = close & Bits(crossing);
    if (kEnds == Ends::kWanted && hit != 0) {
        const auto startOnB = o.o21 >= zero;
        const auto endOnB = o.o12 < zero;
        const EndChoice choice[2] = {{startOnB, Choose(startOnB, Choose(loneBelowB, q.v[2], q.v[1]),
                                                       Choose(loneBelowA, p.v[1], p.v[2]))},
                                     {endOnB, Choose(endOnB, Choose(loneBelowB, q.v[1], q.v[2]),
                                                     Choose(loneBelowA, p.v[2], p.v[1]))}};
        F8x3 placed[2];
        PlaceEnds(p, q, choice, placed);
        IncludeEnds(crossing, placed, region);
        StoreVector(placed[0], ends.at[0]);
        StoreVector(placed[1], ends.at[1]);
    }
    return {hit, 0, close & ~hit & ~passing, 0};
}

// As in Predicates.cpp.
constexpr double kVolumeErrorDouble = 8 * 0x1p-53;

/// Signs as -1, 0 and 1, and the lanes in which rounding hides them (their sign
/// reads 0).
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

/// Which lanes have their lone vertex at `s`, with `p` and `q` the other two:
/// as FindLoneVertex.
HWY_INLINE PackMask<double, 4> IsLone(const D4& s, const D4& p, const D4& q) {
    const D4 zero = Broadcast<4>(0.0);
    return (s * p <= zero) & (s * q <= zero) & ((Magnitude(s) > zero) | (p * q > zero));
}

/// One triangle of each pair turned to its lone vertex, and the signs of its
/// vertices.
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

/// The lone vertex, its sign, its distance from the other triangle's plane, and
/// that plane's normal.
struct EdgeStart {
    D4x3 from;
    D4 sign;
    D4 distance;
    D4x3 normal;
};

HWY_INLINE EdgeStart Choose(const PackMask<double, 4>& m, const EdgeStart& yes,
                            const EdgeStart& no) {
    return {Choose(m, yes.from, no.from), Choose(m, yes.sign, no.sign),
            Choose(m, yes.distance, no.distance), Choose(m, yes.normal, no.normal)};
}

/// Where an edge passes the plane of the other triangle. An end that lies on
/// the plane is the place itself.
HWY_INLINE D4x3 EndOnEdge(const EdgeStart& start, const D4x3& to, const D4& toSign) {
    const D4 zero = Broadcast<4>(0.0);
    const D4x3 edge = to - start.from;
    const D4 quotient = -start.distance / Dot(start.normal, edge);
    const D4 t = Choose(start.sign == zero, zero, quotient);
    const D4x3 inside = {start.from.x + t * edge.x, start.from.y + t * edge.y,
                         start.from.z + t * edge.z};
    return Choose(toSign == zero, to, inside);
}

struct HalfVerdict {
    unsigned apart;
    unsigned hit;
    unsigned single;
    unsigned flat;
};

/// Four of the pairs in double precision.
HWY_INLINE HalfVerdict TestInDouble(const TriangleD4& a, const TriangleD4& b, D4x3 (&ends)[2]) {
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
    const auto flatA = (leastA == zero) & (mostA == zero);
    const auto flatB = (leastB == zero) & (mostB == zero);
    const auto flat = flatA | flatB;
    const unsigned undecided = Bits(unknown | flat);
    const unsigned known = 15U & ~undecided & ~apart;
    // A triangle of no area has zeros everywhere too, which the exact test sees
    // to.
    const unsigned allZero = ~apart & ~Bits(unknown) & Bits(flatA & flatB);
    if (known == 0) return {apart, 0, 0, allZero};

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
    const unsigned passing = known & Bits((atStart.sign > zero) | (atEnd.sign < zero));
    const unsigned unsure = Bits(atStart.unknown | atEnd.unknown);
    const unsigned hit = known & ~passing & ~unsure;
    const unsigned single = hit & Bits((atStart.sign == zero) | (atEnd.sign == zero));
    if (hit != 0) {
        const EdgeStart onP = {p.t.v[0], p.sign[0], Dot(normalB.value, p.t.v[0] - b.v[0]),
                               normalB.value};
        const EdgeStart onQ = {q.t.v[0], q.sign[0], Dot(normalA.value, q.t.v[0] - a.v[0]),
                               normalA.value};
        const auto startOnB = Dot(u2w.value, v1) >= zero;
        const auto endOnB = Dot(u1w.value, v2) < zero;
        const D4x3 start = EndOnEdge(Choose(startOnB, onQ, onP), Choose(startOnB, q1, p2),
                                     Choose(startOnB, q1Sign, p2Sign));
        const D4x3 end = EndOnEdge(Choose(endOnB, onQ, onP), Choose(endOnB, q2, p1),
                                   Choose(endOnB, q2Sign, p1Sign));
        ends[0] = start;
        ends[1] = end;
    }
    return {apart | passing, hit, single, allZero};
}

template <Half kHalf>
HWY_INLINE TriangleD4 Widened(const TriangleF8& t) {
    return {{Widened<kHalf>(t.v[0]), Widened<kHalf>(t.v[1]), Widened<kHalf>(t.v[2])}};
}

/// The test in double precision. Ends are always placed.
HWY_INLINE Verdict TestInDouble(const PairQueue& queue, SegmentEnds& ends) {
    const unsigned live = (1U << queue.count) - 1;
    const TriangleF8 a = GatherRecords(queue.a).t;
    const TriangleF8 b = GatherRecords(queue.b).t;
    const D4x3 origin = {Broadcast<4>(0.0), Broadcast<4>(0.0), Broadcast<4>(0.0)};
    D4x3 lowerEnds[2] = {origin, origin};
    D4x3 upperEnds[2] = {origin, origin};
    const HalfVerdict lower =
        TestInDouble(Widened<Half::kLower>(a), Widened<Half::kLower>(b), lowerEnds);
    HalfVerdict upper = {0, 0, 0, 0};
    if (queue.count > 4)
        upper = TestInDouble(Widened<Half::kUpper>(a), Widened<Half::kUpper>(b), upperEnds);
    const unsigned hit = live & (lower.hit | upper.hit << 4);
    const unsigned apart = lower.apart | upper.apart << 4;
    if (hit != 0) {
        const F8x3 low = Most(LeastCorner(a), LeastCorner(b));
        const F8x3 high = Least(MostCorner(a), MostCorner(b));
        for (std::size_t end = 0; end < 2; ++end)
            StoreVector(Least(Most(Narrowed(lowerEnds[end], upperEnds[end]), low), high),
                        ends.at[end]);
    }
    return {hit, lower.single | upper.single << 4, live & ~apart & ~hit,
            lower.flat | upper.flat << 4};
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
