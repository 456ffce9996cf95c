// SPDX-License-Identifier: Apache-2.0
// Sixteen triangle pairs at a time. The test is the one of TriangleContact.cpp: the sides of the
// vertices, the vertex that has the other plane to itself, and the order of the crossings along the
// common line of the planes. It runs in single precision first, where terms that are all zero prove
// a zero, as where walls stand on a slab. What this cannot decide (grazing, coplanar but oblique)
// runs in double precision, eight pairs at a time; what is left goes to the exact test.

#if defined(KYCB_OPCODE_PAIR_BATCH_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KYCB_OPCODE_PAIR_BATCH_INL_H_
#undef KYCB_OPCODE_PAIR_BATCH_INL_H_
#else
#define KYCB_OPCODE_PAIR_BATCH_INL_H_
#endif

#include "KYCollisionBase/opcode/Pair.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include <hwy/highway.h>

#include "opcode/ChosenLanes.h"
#include "opcode/FillLeaf-inl.h"
#include "opcode/Lanes-inl.h"
#include "opcode/PairQueue.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

enum class Side { kA, kB };

template <std::size_t N>
HWY_INLINE TriangleLanes<Pack<float, N>> LoadTriangle(const QueueRows& rows) {
    TriangleLanes<Pack<float, N>> t;
    for (std::size_t k = 0; k < 3; ++k)
        t.v[k] = {Load<N>(rows.vertex[k][0]), Load<N>(rows.vertex[k][1]),
                  Load<N>(rows.vertex[k][2])};
    return t;
}

/// Adds the pairs of one triangle with some of another leaf or of another two, one bit each.
template <Side kSideOfOne, std::size_t kOthers>
HWY_INLINE void AddPairs(unsigned one, unsigned others, CandidateList& list) {
    std::uint8_t* ones = (kSideOfOne == Side::kA ? list.inA : list.inB) + list.count;
    std::uint8_t* many = (kSideOfOne == Side::kA ? list.inB : list.inA) + list.count;
    std::memset(ones, static_cast<int>(one), kOthers);
    const unsigned inFirst = others & ((1U << kWidth) - 1);
    std::memcpy(many, kChosenLanes<kWidth>.lane[inFirst], kWidth);
    if constexpr (kOthers > kWidth) {
        const unsigned inSecond = others >> kWidth;
        std::memcpy(many + hwy::PopCount(inFirst), kChosenLanes<kWidth, kWidth>.lane[inSecond],
                    kWidth);
    }
    list.count += static_cast<unsigned>(hwy::PopCount(others));
}

HWY_INLINE void CopyTriangles(const Leaf& leaf, const LanePicker<kBatch>& picker,
                              const LaneRange<kBatch>& range, QueueRows& rows) {
    for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t axis = 0; axis < 3; ++axis)
            picker.Store(leaf.vertex[k][axis], range, rows.vertex[k][axis]);
    picker.Store(leaf.id, range, rows.id);
}

HWY_INLINE void CopyTriangles(const Leaf* leaves, const TwoRowPicker& picker, QueueRows& rows) {
    for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t axis = 0; axis < 3; ++axis)
            picker.Store(leaves[0].vertex[k][axis], leaves[1].vertex[k][axis],
                         rows.vertex[k][axis]);
    picker.Store(leaves[0].id, leaves[1].id, rows.id);
}

/// Brings the first batch of pairs together; told is of which sides the triangles are all in two
/// leaves.
HWY_INLINE void CopyBatch(const CandidateList& list, bool areOfTwoLeavesA, bool areOfTwoLeavesB,
                          PairQueue& batch) {
    batch.count = std::min<unsigned>(list.count, kBatch);
    if (areOfTwoLeavesA) CopyTriangles(list.runs[0].a, TwoRowPicker(list.inA), batch.a);
    if (areOfTwoLeavesB) CopyTriangles(list.runs[0].b, TwoRowPicker(list.inB), batch.b);
    if (areOfTwoLeavesA && areOfTwoLeavesB) return;
    const LanePicker<kBatch> inA(list.inA);
    const LanePicker<kBatch> inB(list.inB);
    for (unsigned i = 0; i < list.runCount; ++i) {
        const auto& run = list.runs[i];
        const unsigned end = i + 1 < list.runCount ? list.runs[i + 1].begin : batch.count;
        const LaneRange<kBatch> range(run.begin, end);
        if (!areOfTwoLeavesA) CopyTriangles(*run.a, inA, range, batch.a);
        if (!areOfTwoLeavesB) CopyTriangles(*run.b, inB, range, batch.b);
    }
}

HWY_INLINE void MoveRows(const QueueRows& from, const ChosenStore<kBatch>& store, std::size_t end,
                         QueueRows& to) {
    for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t axis = 0; axis < 3; ++axis)
            store.Store(Load<kBatch>(from.vertex[k][axis]), to.vertex[k][axis] + end);
    store.Store(Load<kBatch>(from.id), to.id + end);
}

/// Adds the chosen ones (one bit each) of the first batch of pairs to another queue.
inline HWY_NOINLINE void MovePairs(const PairQueue& from, unsigned chosen, PairQueue& to) {
    const ChosenStore<kBatch> store(MaskOf<kBatch>(chosen));
    MoveRows(from.a, store, to.count, to.a);
    MoveRows(from.b, store, to.count, to.b);
    to.count += static_cast<unsigned>(hwy::PopCount(chosen));
}

/// Writes the numbers of the chosen pairs of a batch. There must be place for a batch.
HWY_INLINE void StoreNumbers(const PairQueue& batch, unsigned chosen, Opcode::Pair* to) {
    static_assert(sizeof(Opcode::Pair) == 2 * sizeof(float));
    StoreChosenByTwos(MaskOf<kBatch>(chosen), Load<kBatch>(batch.a.id), Load<kBatch>(batch.b.id),
                      reinterpret_cast<float*>(to));
}

template <std::size_t kDropped>
HWY_INLINE void DropRows(QueueRows& rows) {
    for (std::size_t i = 0; i < kBatch; i += kDropped) {
        for (auto& vertex : rows.vertex)
            for (auto& row : vertex)
                Store(Load<kDropped>(row + kDropped + i), row + i);
        Store(Load<kDropped>(rows.id + kDropped + i), rows.id + i);
    }
}

/// Forgets the first pairs, as many as a batch holds.
template <std::size_t N>
HWY_INLINE void DropBatch(PairQueue& queue) {
    if (queue.count > N) {
        DropRows<N>(queue.a);
        DropRows<N>(queue.b);
    }
    queue.count -= std::min<unsigned>(queue.count, N);
}

/// Where a batch of pairs touches: the two ends of each common segment.
struct alignas(64) SegmentEnds {
    float at[2][3][kBatch];
};

/// The verdict on a batch of pairs, one bit each. A pair in none of them touches nothing.
struct Verdict {
    unsigned hit;     // touching, with segment ends
    unsigned single;  // of these, those with one point only
    unsigned doubt;   // to be decided by the next, more careful test
    unsigned flat;    // of these, those whose vertices are known to lie in one plane
    bool hasPoints;   // of those that touch
};

/// What is to be done with the points where pairs touch.
struct EndsWanted {
    bool forRegion;
    bool forCallback;
    bool onlyToGrowRegion;  // a callback may miss the others

    /// Whether points must be placed of pairs that touch, some of which may enlarge the region.
    bool Needs(bool mayGrowRegion) const {
        return (forCallback && !onlyToGrowRegion) || (forRegion && mayGrowRegion);
    }
};

template <std::size_t N>
HWY_INLINE TriangleLanes<Pack<double, N>> Widened(const TriangleLanes<Pack<float, N>>& t) {
    return {{Widened(t.v[0]), Widened(t.v[1]), Widened(t.v[2])}};
}

template <class P>
HWY_INLINE BoxLanes<P> CommonBox(const BoxLanes<P>& a, const BoxLanes<P>& b) {
    return {Most(a.low, b.low), Least(a.high, b.high)};
}

template <class P>
HWY_INLINE Vector3<P> ClampedTo(const BoxLanes<P>& box, const Vector3<P>& v) {
    return Least(Most(v, box.low), box.high);
}

template <class P>
HWY_INLINE P LongestSide(const BoxLanes<P>& box) {
    const Vector3<P> sides = box.high - box.low;
    return Most(Most(sides.x, sides.y), sides.z);
}

/// Whether boxes reach out of a region, in each lane.
template <std::size_t N>
HWY_INLINE PackMask<float, N> ReachesOut(const BoxLanes<Pack<float, N>>& boxes, const Box& region) {
    const auto x =
        (boxes.low.x < Broadcast<N>(region.low[0])) | (boxes.high.x > Broadcast<N>(region.high[0]));
    const auto y =
        (boxes.low.y < Broadcast<N>(region.low[1])) | (boxes.high.y > Broadcast<N>(region.high[1]));
    const auto z =
        (boxes.low.z < Broadcast<N>(region.low[2])) | (boxes.high.z > Broadcast<N>(region.high[2]));
    return x | y | z;
}

/// Grows a region to hold points, in the lanes chosen.
template <std::size_t N>
HWY_INLINE void Include(const PackMask<float, N>& chosen, const Vector3<Pack<float, N>>& low,
                        const Vector3<Pack<float, N>>& high, Box& region) {
    const Pack<float, N>* lows[3] = {&low.x, &low.y, &low.z};
    const Pack<float, N>* highs[3] = {&high.x, &high.y, &high.z};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const Pack<float, N> regionLow = Broadcast<N>(region.low[axis]);
        const Pack<float, N> regionHigh = Broadcast<N>(region.high[axis]);
        region.low[axis] = LeastLane(Choose(chosen, Least(regionLow, *lows[axis]), regionLow));
        region.high[axis] = MostLane(Choose(chosen, Most(regionHigh, *highs[axis]), regionHigh));
    }
}

// Rounding of a volume of three differences in single precision: eight roundings of half an ulp
// (2^-24) in each of six terms, each bounded by the product of the largest components. That is
// 2.87e-6; the rest covers the rounding of the bound itself.
constexpr float kVolumeError = 3.2e-6F;
// Underflow: absolute errors far below what this adds.
constexpr float kUnderflow = 0x1p-120F;

/// The rounding error of a volume of two differences whose product of largest components is `area`,
/// and one whose largest is `length`.
HWY_INLINE F16 VolumeTolerance(const F16& area, const F16& length) {
    const F16 tiny = Broadcast<kBatch>(kUnderflow);
    return (area * Broadcast<kBatch>(kVolumeError) + tiny) * length + tiny;
}

/// Turns the triangles so that the lane's chosen vertex comes first.
template <class T, class M>
HWY_INLINE T TurnedTo(const T& t, const M& isSecond, const M& isThird) {
    return {{Choose(isThird, t.v[2], Choose(isSecond, t.v[1], t.v[0])),
             Choose(isThird, t.v[0], Choose(isSecond, t.v[2], t.v[1])),
             Choose(isThird, t.v[1], Choose(isSecond, t.v[0], t.v[2]))}};
}

/// One value for each corner.
struct CornerF16 {
    F16 v[3];
};

/// A triangle turned to its lone vertex, and on which side of the other's plane its corners lie,
/// give or take `tolerance`.
struct SidedTriangle {
    TriangleF16 t;
    CornerF16 side;
    F16 tolerance;
};

/// Volumes of an edge of a with an edge of b, both from the lone vertices: they order the crossings
/// along the common line.
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

/// One end of each common segment: on an edge of a or of b, from the lone vertex to another.
struct EndChoice {
    PackMask<float, kBatch> onB;
    F16x3 to;
};

/// Where the chosen edges pass the plane of the other triangle: placed in double precision, and
/// kept inside the common box of the two triangles, whatever the rounding.
HWY_INLINE void PlaceEnds(const TriangleF16& a, const TriangleF16& b, const EndChoice (&choice)[2],
                          const BoxF16& common, F16x3 (&ends)[2]) {
    const D16 half = Broadcast<kBatch>(0.5);
    const F16 one = Broadcast<kBatch>(1.0F);
    const F16 zero = Broadcast<kBatch>(0.0F);
    const D16x3 a0 = Widened(a.v[0]);
    const D16x3 b0 = Widened(b.v[0]);
    const D16x3 normalA = Cross(Widened(a.v[1]) - a0, Widened(a.v[2]) - a0);
    const D16x3 normalB = Cross(Widened(b.v[1]) - b0, Widened(b.v[2]) - b0);
    const D16x3 w = a0 - b0;
    const D16 belowB = Dot(normalB, b0 - a0);
    const D16 belowA = Dot(normalA, w);
    for (std::size_t end = 0; end < 2; ++end) {
        const auto onB = Widened(Choose(choice[end].onB, one, zero)) > half;
        const D16x3 from = Choose(onB, b0, a0);
        const D16x3 edge = Widened(choice[end].to) - from;
        // The distance of the start, and how it falls along the edge.
        const D16 t = Choose(onB, belowA, belowB) / Dot(Choose(onB, normalA, normalB), edge);
        const D16x3 at = {from.x + t * edge.x, from.y + t * edge.y, from.z + t * edge.z};
        ends[end] = ClampedTo(common, Narrowed(at));
    }
}

/// Hands placed ends on.
template <std::size_t N>
HWY_INLINE void DeliverEnds(const PackMask<float, N>& hit,
                            const Vector3<Pack<float, N>> (&placed)[2], const EndsWanted& wanted,
                            Box& region, SegmentEnds& ends) {
    if (wanted.forRegion)
        Include(hit, Least(placed[0], placed[1]), Most(placed[0], placed[1]), region);
    if (!wanted.forCallback) return;
    for (std::size_t end = 0; end < 2; ++end) {
        Store(placed[end].x, ends.at[end][0]);
        Store(placed[end].y, ends.at[end][1]);
        Store(placed[end].z, ends.at[end][2]);
    }
}

/// Between which values the ends of pairs lie.
struct EndBounds {
    BoxF16 outer;  // the box of both ends lies in this
    BoxF16 inner;  // and reaches these
};

/// An end in single precision, give or take `error` along each axis.
struct RoughEnd {
    F16x3 at;
    F16 error;
};

/// `toSide` is the side of the end of the edge. `span` is no less than the edge is long along each
/// axis. Both sides are larger than their tolerance; where their difference is not much larger, the
/// error exceeds the edge.
HWY_INLINE RoughEnd FindRoughEnd(const EndChoice& end, const F16& toSide, const SidedTriangle& a,
                                 const SidedTriangle& b, const F16& span, const F16& rounding) {
    const F16x3 from = Choose(end.onB, b.t.v[0], a.t.v[0]);
    const F16 fromSide = Magnitude(Choose(end.onB, b.side.v[0], a.side.v[0]));
    const F16 tolerance = Choose(end.onB, b.tolerance, a.tolerance);
    const F16 apart = fromSide + Magnitude(toSide);
    const F16 scale = Broadcast<kBatch>(1.0F) / Most(apart - (tolerance + tolerance), tolerance);
    const F16 t = fromSide * scale;
    const F16x3 edge = end.to - from;
    // Off by three times the tolerance; the fourth is for rounding.
    const F16 error = span * (tolerance * scale * Broadcast<kBatch>(4.0F)) + rounding;
    return {{from.x + t * edge.x, from.y + t * edge.y, from.z + t * edge.z}, error};
}

HWY_INLINE EndBounds BoundsOf(const RoughEnd& x, const RoughEnd& y, const BoxF16& common) {
    const F16 error = Most(x.error, y.error);
    const F16x3 low = Least(x.at, y.at);
    const F16x3 high = Most(x.at, y.at);
    return {{ClampedTo(common, low - error), ClampedTo(common, high + error)},
            {ClampedTo(common, low + error), ClampedTo(common, high - error)}};
}

/// Batches of pairs that touch, whose ends may enlarge the region. Most of them do not once it has
/// grown by the others. So single precision first says how far it grows at least; only pairs that
/// may reach out of that are worth double precision.
class UnplacedEnds {
  public:
    /// Forgets all. Coordinates are no larger than `reach`.
    void Clear(float reach) {
        count_ = 0;
        // Each end is the result of ten roundings at most, each of half an ulp (2^-24) of the
        // largest coordinate. The rest is room to spare.
        rounding_ = reach * 0x1p-20F;
    }
    bool IsFull() const { return count_ == kMost; }
    bool IsEmpty() const { return count_ == 0; }
    float Rounding() const { return rounding_; }
    /// Where the next batch is to be made.
    PairQueue& Next() { return batches_[count_].pairs; }

    /// Keeps the next batch, in which the ends of these pairs may enlarge the region.
    HWY_INLINE void Add(unsigned lanes, const EndBounds& ends) {
        if (IsEmpty()) {
            const F16 most = Broadcast<kBatch>(std::numeric_limits<float>::max());
            StoreBox({{most, most, most}, {-most, -most, -most}}, surely_);
        }
        Batch& batch = batches_[count_++];
        batch.lanes = lanes;
        StoreBox(ends.outer, batch.outer);
        const auto chosen = MaskOf<kBatch>(lanes);
        const BoxF16 before = LoadBox(surely_);
        StoreBox({Choose(chosen, Least(before.low, ends.inner.low), before.low),
                  Choose(chosen, Most(before.high, ends.inner.high), before.high)},
                 surely_);
    }

    /// Grows the region by what is sure, and moves the pairs that may enlarge it further. Forgets
    /// the others.
    template <class Move>
    void Settle(Box& region, const Move& move) {
        const BoxF16 surely = LoadBox(surely_);
        Include(MaskOf<kBatch>((1U << kBatch) - 1), surely.low, surely.high, region);
        for (unsigned i = 0; i < count_; ++i) {
            const Batch& batch = batches_[i];
            const unsigned lanes = batch.lanes & Bits(ReachesOut(LoadBox(batch.outer), region));
            if (lanes != 0) move(batch.pairs, lanes);
        }
        count_ = 0;
    }

  private:
    static constexpr unsigned kMost = 16;

    struct alignas(64) BoxRows {
        float low[3][kBatch];
        float high[3][kBatch];
    };
    struct Batch {
        PairQueue pairs;
        unsigned lanes;
        BoxRows outer;
    };

    static HWY_INLINE BoxF16 LoadBox(const BoxRows& rows) {
        return {LoadVector(rows.low), LoadVector(rows.high)};
    }
    static HWY_INLINE void StoreBox(const BoxF16& box, BoxRows& rows) {
        StoreVector(box.low, rows.low);
        StoreVector(box.high, rows.high);
    }

    // One more than can wait: the next.
    Batch batches_[kMost + 1];
    BoxRows surely_;
    float rounding_ = 0.0F;
    unsigned count_ = 0;
};

HWY_INLINE F16 LeastMagnitude(const F16 (&d)[3]) {
    return Least(Magnitude(d[0]), Least(Magnitude(d[1]), Magnitude(d[2])));
}

/// Pairs of triangles, and on which side of the other's plane the corners of each lie, give or take
/// a tolerance.
struct SidedPairs {
    TriangleF16 a;
    TriangleF16 b;
    CornerF16 sideA;
    CornerF16 sideB;
    F16 toleranceA;
    F16 toleranceB;
    BoxF16 boxA;
    BoxF16 boxB;
    F16 span;       // no two points of a pair are further apart along an axis
    F16 tolerance;  // of a volume of an edge of a, one of b and a distance between them
};

/// The boxes of the two triangles must meet.
HWY_INLINE SidedPairs FindSides(const TriangleF16& a, const TriangleF16& b) {
    const F16x3 edgesA[2] = {a.v[1] - a.v[0], a.v[2] - a.v[0]};
    const F16x3 edgesB[2] = {b.v[1] - b.v[0], b.v[2] - b.v[0]};
    const F16x3 normalA = Cross(edgesA[0], edgesA[1]);
    const F16x3 normalB = Cross(edgesB[0], edgesB[1]);
    const F16x3 toB = b.v[0] - a.v[0];
    const BoxF16 boxA = BoxOf(a);
    const BoxF16 boxB = BoxOf(b);
    const F16 extentA = LongestSide(boxA);
    const F16 extentB = LongestSide(boxB);
    const F16 span = extentA + extentB;
    return {a,
            b,
            {{-Dot(normalB, toB), Dot(normalB, a.v[1] - b.v[0]), Dot(normalB, a.v[2] - b.v[0])}},
            {{Dot(normalA, toB), Dot(normalA, b.v[1] - a.v[0]), Dot(normalA, b.v[2] - a.v[0])}},
            VolumeTolerance(Norm(edgesB[0]) * Norm(edgesB[1]), span),
            VolumeTolerance(Norm(edgesA[0]) * Norm(edgesA[1]), span),
            boxA,
            boxB,
            span,
            VolumeTolerance(extentA * extentB, span)};
}

/// The lanes in which two points agree, axis by axis, so that their difference is zero there; one
/// bit each. Told from the points, because a difference that is none may be flushed to zero.
struct EqualLanes {
    unsigned x;
    unsigned y;
    unsigned z;
};

HWY_INLINE EqualLanes WhereEqual(const F16x3& p, const F16x3& q) {
    return {Bits(p.x == q.x), Bits(p.y == q.y), Bits(p.z == q.z)};
}

/// Where the components of a cross product of two differences are zero because all terms are.
HWY_INLINE EqualLanes ZerosOfCross(const EqualLanes& u, const EqualLanes& v) {
    return {(u.y | v.z) & (u.z | v.y), (u.z | v.x) & (u.x | v.z), (u.x | v.y) & (u.y | v.x)};
}

/// The same for a scalar product.
HWY_INLINE unsigned ZerosOfDot(const EqualLanes& u, const EqualLanes& v) {
    return (u.x | v.x) & (u.y | v.y) & (u.z | v.z);
}

/// What is sure of the sides of the corners of a triangle, one bit for each pair.
struct CornerSigns {
    unsigned above[3];
    unsigned below[3];
    unsigned on[3];

    unsigned Known() const {
        unsigned known = ~0U;
        for (std::size_t k = 0; k < 3; ++k)
            known &= above[k] | below[k] | on[k];
        return known;
    }
    unsigned AllOn() const { return on[0] & on[1] & on[2]; }
    unsigned AllOnOneSide() const {
        return (above[0] & above[1] & above[2]) | (below[0] & below[1] & below[2]);
    }
    /// Whether two corners lie on the same side, off the plane.
    unsigned AreTogether(std::size_t i, std::size_t k) const {
        return (above[i] & above[k]) | (below[i] & below[k]);
    }
    /// Whether a corner has its side to itself, or lies on the plane with both others on one side:
    /// as FindLoneVertex.
    unsigned IsLone(std::size_t i) const {
        const std::size_t p = (i + 1) % 3;
        const std::size_t q = (i + 2) % 3;
        return ~AreTogether(i, p) & ~AreTogether(i, q) & (~on[i] | AreTogether(p, q));
    }
};

/// The same from single precision, give or take `tolerance`; `plane` is of the other triangle.
HWY_INLINE CornerSigns SignsOf(const CornerF16& side, const F16& tolerance, const TriangleF16& t,
                               const TriangleF16& plane) {
    const EqualLanes normal =
        ZerosOfCross(WhereEqual(plane.v[1], plane.v[0]), WhereEqual(plane.v[2], plane.v[0]));
    CornerSigns signs;
    for (std::size_t k = 0; k < 3; ++k) {
        signs.above[k] = Bits(side.v[k] > tolerance);
        signs.below[k] = Bits(side.v[k] < -tolerance);
        signs.on[k] = ZerosOfDot(normal, WhereEqual(t.v[k], plane.v[0]));
    }
    return signs;
}

/// A triangle turned to its lone vertex.
template <class P>
struct LoneCorners {
    TriangleLanes<P> t;
    unsigned on[3];    // the corners on the other's plane
    unsigned isBelow;  // whether the lone vertex is below, or the others above
};

template <typename T, std::size_t N>
HWY_INLINE LoneCorners<Pack<T, N>> TurnToLone(const TriangleLanes<Pack<T, N>>& t,
                                              const CornerSigns& signs) {
    const unsigned first = signs.IsLone(0);
    const unsigned second = signs.IsLone(1) & ~first;
    const unsigned third = ~first & ~second;
    const auto turned = [&](const unsigned(&bits)[3], std::size_t k) {
        return (first & bits[k]) | (second & bits[(k + 1) % 3]) | (third & bits[(k + 2) % 3]);
    };
    LoneCorners<Pack<T, N>> lone;
    lone.t = TurnedTo(t, MaskOf<N, T>(second), MaskOf<N, T>(third));
    for (std::size_t k = 0; k < 3; ++k)
        lone.on[k] = turned(signs.on, k);
    lone.isBelow = turned(signs.below, 0) | (lone.on[0] & turned(signs.above, 1));
    return lone;
}

/// Exchanges the other two corners, in some lanes.
template <typename T, std::size_t N>
HWY_INLINE void ExchangeOthers(LoneCorners<Pack<T, N>>& corners, unsigned lanes) {
    const auto chosen = MaskOf<N, T>(lanes);
    const Vector3<Pack<T, N>> second = corners.t.v[1];
    corners.t.v[1] = Choose(chosen, corners.t.v[2], second);
    corners.t.v[2] = Choose(chosen, second, corners.t.v[2]);
    const unsigned differing = (corners.on[1] ^ corners.on[2]) & lanes;
    corners.on[1] ^= differing;
    corners.on[2] ^= differing;
}

/// An end of a common segment that is a corner on the other's plane, which it is exactly. `onB`
/// says whose edge it lies on, which leads to one of two corners.
template <typename T, std::size_t N>
HWY_INLINE void PutOnCorners(const PackMask<T, N>& onB, const LoneCorners<Pack<T, N>>& p,
                             std::size_t toP, const LoneCorners<Pack<T, N>>& q, std::size_t toQ,
                             Vector3<Pack<T, N>>& end) {
    const unsigned isOnB = Bits(onB);
    const auto isStart = MaskOf<N, T>((isOnB & q.on[0]) | (~isOnB & p.on[0]));
    const auto isTo = MaskOf<N, T>((isOnB & q.on[toQ]) | (~isOnB & p.on[toP]));
    end = Choose(isTo, Choose(onB, q.t.v[toQ], p.t.v[toP]),
                 Choose(isStart, Choose(onB, q.t.v[0], p.t.v[0]), end));
}

/// What is left of the test in single precision for a batch in which corners lie on planes, or
/// nearly so: what is surely on a plane counts as that, as FindCrossing has it.
inline HWY_NOINLINE Verdict TestTouching(const SidedPairs& pairs, unsigned close,
                                         const EndsWanted& wanted, Box& region, SegmentEnds& ends) {
    const CornerSigns signsA = SignsOf(pairs.sideA, pairs.toleranceA, pairs.a, pairs.b);
    const CornerSigns signsB = SignsOf(pairs.sideB, pairs.toleranceB, pairs.b, pairs.a);
    const unsigned known = close & signsA.Known() & signsB.Known();
    const unsigned flatA = signsA.AllOn();
    const unsigned flatB = signsB.AllOn();
    const unsigned flat = known & flatA & flatB;
    const unsigned sure = known & ~flatA & ~flatB;
    if (sure == 0) return {0, 0, close, flat, false};

    LoneCorners<F16> p = TurnToLone(pairs.a, signsA);
    LoneCorners<F16> q = TurnToLone(pairs.b, signsB);
    const unsigned rows = q.isBelow;
    const unsigned columns = p.isBelow;
    ExchangeOthers(p, rows);
    ExchangeOthers(q, columns);
    const F16x3& from = p.t.v[0];
    const F16x3& to = q.t.v[0];
    const F16x3 w = to - from;
    const F16x3 v1 = q.t.v[1] - to;
    const F16x3 v2 = q.t.v[2] - to;
    const F16x3 u1w = Cross(p.t.v[1] - from, w);
    const F16x3 u2w = Cross(p.t.v[2] - from, w);
    const F16 atStart = Dot(u1w, v1);
    const F16 atEnd = Dot(u2w, v2);
    const EqualLanes wZeros = WhereEqual(to, from);
    const unsigned startZero =
        ZerosOfDot(ZerosOfCross(WhereEqual(p.t.v[1], from), wZeros), WhereEqual(q.t.v[1], to));
    const unsigned endZero =
        ZerosOfDot(ZerosOfCross(WhereEqual(p.t.v[2], from), wZeros), WhereEqual(q.t.v[2], to));
    const F16& tolerance = pairs.tolerance;
    const unsigned passing = sure & Bits((atStart > tolerance) | (atEnd < -tolerance));
    const unsigned hit =
        sure & (Bits(atStart < -tolerance) | startZero) & (Bits(atEnd > tolerance) | endZero);
    const BoxF16 common = CommonBox(pairs.boxA, pairs.boxB);
    const bool hasPoints = hit != 0 && wanted.Needs((hit & Bits(ReachesOut(common, region))) != 0);
    if (hasPoints) {
        const F16 zero = Broadcast<kBatch>(0.0F);
        const auto startOnB = Dot(u2w, v1) >= zero;
        const auto endOnB = Dot(u1w, v2) < zero;
        const EndChoice choice[2] = {{startOnB, Choose(startOnB, q.t.v[1], p.t.v[2])},
                                     {endOnB, Choose(endOnB, q.t.v[2], p.t.v[1])}};
        F16x3 placed[2];
        PlaceEnds(p.t, q.t, choice, common, placed);
        PutOnCorners(startOnB, p, 2, q, 1, placed[0]);
        PutOnCorners(endOnB, p, 1, q, 2, placed[1]);
        DeliverEnds(MaskOf<kBatch>(hit), placed, wanted, region, ends);
    }
    return {hit, hit & (startZero | endZero), close & ~hit & ~passing, flat, hasPoints};
}

/// The test in single precision of the first batch of pairs. Coordinates must be small enough for
/// products of three, and the boxes of the triangles of each pair must meet. Points that the region
/// cannot do without go there, or the batch, which must be the next one of `unplaced` unless that
/// is null, waits there; all ends go to `ends` when a callback wants them.
inline HWY_NOINLINE Verdict TestInSingle(const PairQueue& queue, const EndsWanted& wanted,
                                         Box& region, SegmentEnds& ends, UnplacedEnds* unplaced) {
    const unsigned live = queue.LiveLanes(kBatch);
    const SidedPairs pairs =
        FindSides(LoadTriangle<kBatch>(queue.a), LoadTriangle<kBatch>(queue.b));
    const F16(&sideA)[3] = pairs.sideA.v;
    const F16(&sideB)[3] = pairs.sideB.v;
    const F16& toleranceA = pairs.toleranceA;
    const F16& toleranceB = pairs.toleranceB;
    const auto apart = (LeastOf(sideB) > toleranceB) | (MostOf(sideB) < -toleranceB) |
                       (LeastOf(sideA) > toleranceA) | (MostOf(sideA) < -toleranceA);
    const unsigned close = live & ~Bits(apart);
    if (close == 0) return {};
    const auto sure = (LeastMagnitude(sideB) > toleranceB) & (LeastMagnitude(sideA) > toleranceA);
    if ((close & ~Bits(sure)) != 0) return TestTouching(pairs, close, wanted, region, ends);

    const F16 zero = Broadcast<kBatch>(0.0F);
    const auto isThirdA = ((sideA[0] > zero) ^ (sideA[1] < zero));
    const auto isSecondA = ((sideA[0] > zero) ^ (sideA[2] < zero));
    const auto isThirdB = ((sideB[0] > zero) ^ (sideB[1] < zero));
    const auto isSecondB = ((sideB[0] > zero) ^ (sideB[2] < zero));
    const SidedTriangle turnedA = {TurnedTo(pairs.a, isSecondA, isThirdA),
                                   TurnedTo(pairs.sideA, isSecondA, isThirdA), toleranceA};
    const SidedTriangle turnedB = {TurnedTo(pairs.b, isSecondB, isThirdB),
                                   TurnedTo(pairs.sideB, isSecondB, isThirdB), toleranceB};
    const TriangleF16& p = turnedA.t;
    const TriangleF16& q = turnedB.t;
    const auto loneBelowB = turnedA.side.v[0] < zero;
    const auto loneBelowA = turnedB.side.v[0] < zero;

    const F16x3 v1 = q.v[1] - q.v[0];
    const F16x3 v2 = q.v[2] - q.v[0];
    const F16x3 w = q.v[0] - p.v[0];
    const F16x3 u1w = Cross(p.v[1] - p.v[0], w);
    const F16x3 u2w = Cross(p.v[2] - p.v[0], w);
    const EdgeVolumes<F16> o =
        Exchanged(EdgeVolumes<F16>{Dot(u1w, v1), Dot(u1w, v2), Dot(u2w, v1), Dot(u2w, v2)},
                  loneBelowA, loneBelowB);
    const F16& tolerance = pairs.tolerance;
    const unsigned passing = Bits((o.o11 > tolerance) | (o.o22 < -tolerance));
    const unsigned hit = close & Bits((o.o11 < -tolerance) & (o.o22 > tolerance));
    bool hasPoints = false;
    if (hit != 0) {
        const BoxF16 common = CommonBox(pairs.boxA, pairs.boxB);
        hasPoints = wanted.Needs((hit & Bits(ReachesOut(common, region))) != 0);
        if (hasPoints) {
            // The edges that bound the common segment, by the corner that they lead to.
            const auto choose = [&](const PackMask<float, kBatch>& onB, std::size_t k) {
                const std::size_t other = 3 - k;
                return EndChoice{onB, Choose(onB, Choose(loneBelowB, q.v[k], q.v[other]),
                                             Choose(loneBelowA, p.v[other], p.v[k]))};
            };
            const EndChoice choice[2] = {choose(o.o21 >= zero, 2), choose(o.o12 < zero, 1)};
            if (unplaced != nullptr) {
                const F16 rounding = Broadcast<kBatch>(unplaced->Rounding());
                const auto roughEnd = [&](const EndChoice& end, std::size_t k) {
                    const std::size_t other = 3 - k;
                    const F16 toSide = Choose(
                        end.onB, Choose(loneBelowB, turnedB.side.v[k], turnedB.side.v[other]),
                        Choose(loneBelowA, turnedA.side.v[other], turnedA.side.v[k]));
                    return FindRoughEnd(end, toSide, turnedA, turnedB, pairs.span, rounding);
                };
                const EndBounds bounds =
                    BoundsOf(roughEnd(choice[0], 2), roughEnd(choice[1], 1), common);
                const unsigned lanes = hit & Bits(ReachesOut(bounds.outer, region));
                if (lanes != 0) unplaced->Add(lanes, bounds);
                hasPoints = false;
            } else {
                F16x3 placed[2];
                PlaceEnds(p, q, choice, common, placed);
                DeliverEnds(MaskOf<kBatch>(hit), placed, wanted, region, ends);
            }
        }
    }
    return {hit, 0, close & ~hit & ~passing, 0, hasPoints};
}

// As in Predicates.cpp.
constexpr double kVolumeErrorDouble = 8 * 0x1p-53;
constexpr double kAreaError = 4 * 0x1p-53;

/// The lanes in which a sign is known, one bit each.
struct KnownSigns {
    unsigned above;
    unsigned below;
    unsigned zero;
};

HWY_INLINE D8x3 Magnitudes(const D8x3& v) {
    return {Magnitude(v.x), Magnitude(v.y), Magnitude(v.z)};
}

/// A cross product together with the sums of the magnitudes of its terms.
struct BoundedNormal {
    D8x3 value;
    D8x3 terms;
};

HWY_INLINE BoundedNormal CrossBounded(const D8x3& u, const D8x3& v) {
    const D8x3 plus = {u.y * v.z, u.z * v.x, u.x * v.y};
    const D8x3 minus = {u.z * v.y, u.x * v.z, u.y * v.x};
    return {plus - minus,
            {Magnitude(plus.x) + Magnitude(minus.x), Magnitude(plus.y) + Magnitude(minus.y),
             Magnitude(plus.z) + Magnitude(minus.z)}};
}

HWY_INLINE KnownSigns SignOfDot(const BoundedNormal& n, const D8x3& v) {
    const D8 value = Dot(n.value, v);
    const D8 terms = Dot(n.terms, Magnitudes(v));
    const D8 bound = terms * Broadcast<kFineBatch>(kVolumeErrorDouble);
    return {Bits(value > bound), Bits(value < -bound), Bits(terms == Broadcast<kFineBatch>(0.0))};
}

/// `normal` and `from` are of the other triangle's plane.
HWY_INLINE CornerSigns SignsOf(const TriangleD8& t, const BoundedNormal& normal, const D8x3& from) {
    CornerSigns signs;
    for (std::size_t k = 0; k < 3; ++k) {
        const KnownSigns sign = SignOfDot(normal, t.v[k] - from);
        signs.above[k] = sign.above;
        signs.below[k] = sign.below;
        signs.on[k] = sign.zero;
    }
    return signs;
}

/// The lone vertex, its distance from the other triangle's plane, and that plane's normal.
struct EdgeStart {
    D8x3 from;
    D8 distance;
    D8x3 normal;
};

HWY_INLINE EdgeStart Choose(const PackMask<double, kFineBatch>& m, const EdgeStart& yes,
                            const EdgeStart& no) {
    return {Choose(m, yes.from, no.from), Choose(m, yes.distance, no.distance),
            Choose(m, yes.normal, no.normal)};
}

/// Where an edge passes the plane of the other triangle.
HWY_INLINE D8x3 EndOnEdge(const EdgeStart& start, const D8x3& to) {
    const D8x3 edge = to - start.from;
    const D8 t = -start.distance / Dot(start.normal, edge);
    return {start.from.x + t * edge.x, start.from.y + t * edge.y, start.from.z + t * edge.z};
}

/// The test in double precision of the first eight pairs. Points go where those of TestInSingle go.
inline Verdict TestInDouble(const PairQueue& queue, const EndsWanted& wanted, Box& region,
                            SegmentEnds& segments) {
    const unsigned live = queue.LiveLanes(kFineBatch);
    const TriangleF8 narrowA = LoadTriangle<kFineBatch>(queue.a);
    const TriangleF8 narrowB = LoadTriangle<kFineBatch>(queue.b);
    const TriangleD8 a = Widened(narrowA);
    const TriangleD8 b = Widened(narrowB);
    const BoundedNormal normalA = CrossBounded(a.v[1] - a.v[0], a.v[2] - a.v[0]);
    const BoundedNormal normalB = CrossBounded(b.v[1] - b.v[0], b.v[2] - b.v[0]);
    const CornerSigns signsA = SignsOf(a, normalB, b.v[0]);
    const CornerSigns signsB = SignsOf(b, normalA, a.v[0]);
    const unsigned close = live & ~signsA.AllOnOneSide() & ~signsB.AllOnOneSide();
    const unsigned known = close & signsA.Known() & signsB.Known();
    const unsigned flatA = signsA.AllOn();
    const unsigned flatB = signsB.AllOn();
    // A triangle of no area has zeros everywhere too, which the exact test sees to.
    const unsigned flat = known & flatA & flatB;
    const unsigned sure = known & ~flatA & ~flatB;
    if (sure == 0) return {0, 0, close, flat, false};

    LoneCorners<D8> p = TurnToLone(a, signsA);
    LoneCorners<D8> q = TurnToLone(b, signsB);
    const unsigned rows = q.isBelow;
    const unsigned columns = p.isBelow;
    ExchangeOthers(p, rows);
    ExchangeOthers(q, columns);
    const D8x3& from = p.t.v[0];
    const D8x3& to = q.t.v[0];
    const BoundedNormal u1w = CrossBounded(p.t.v[1] - from, to - from);
    const BoundedNormal u2w = CrossBounded(p.t.v[2] - from, to - from);
    const D8x3 v1 = q.t.v[1] - to;
    const D8x3 v2 = q.t.v[2] - to;
    const KnownSigns atStart = SignOfDot(u1w, v1);
    const KnownSigns atEnd = SignOfDot(u2w, v2);
    const unsigned passing = sure & (atStart.above | atEnd.below);
    const unsigned hit = sure & (atStart.below | atStart.zero) & (atEnd.above | atEnd.zero);
    const BoxF8 common = CommonBox(BoxOf(narrowA), BoxOf(narrowB));
    const bool hasPoints = hit != 0 && wanted.Needs((hit & Bits(ReachesOut(common, region))) != 0);
    if (hasPoints) {
        const D8 zero = Broadcast<kFineBatch>(0.0);
        const EdgeStart onP = {from, Dot(normalB.value, from - b.v[0]), normalB.value};
        const EdgeStart onQ = {to, Dot(normalA.value, to - a.v[0]), normalA.value};
        const auto startOnB = Dot(u2w.value, v1) >= zero;
        const auto endOnB = Dot(u1w.value, v2) < zero;
        D8x3 start = EndOnEdge(Choose(startOnB, onQ, onP), Choose(startOnB, q.t.v[1], p.t.v[2]));
        D8x3 end = EndOnEdge(Choose(endOnB, onQ, onP), Choose(endOnB, q.t.v[2], p.t.v[1]));
        PutOnCorners(startOnB, p, 2, q, 1, start);
        PutOnCorners(endOnB, p, 1, q, 2, end);
        const F8x3 placed[2] = {ClampedTo(common, Narrowed(start)),
                                ClampedTo(common, Narrowed(end))};
        DeliverEnds(MaskOf<kFineBatch>(hit), placed, wanted, region, segments);
    }
    return {hit, hit & (atStart.zero | atEnd.zero), close & ~passing & ~hit, flat, hasPoints};
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
