// SPDX-License-Identifier: Apache-2.0
// Pairs of triangles of one plane, a batch at a time, as where two parts of a building stand on
// each other. The test is that of FindCoplanarContact, in double precision; what rounding hides
// goes there.

#if defined(KYCB_OPCODE_COPLANAR_BATCH_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KYCB_OPCODE_COPLANAR_BATCH_INL_H_
#undef KYCB_OPCODE_COPLANAR_BATCH_INL_H_
#else
#define KYCB_OPCODE_COPLANAR_BATCH_INL_H_
#endif

#include <cstddef>

#include <hwy/highway.h>

#include "opcode/Lanes-inl.h"
#include "opcode/PairBatch-inl.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

/// Points of eight pairs: the corners of a inside b, those of b inside a, and the crossings of
/// edges.
struct alignas(32) PlanarPoints {
    static constexpr std::size_t kMost = 3 + 3 + 9;

    float at[kMost][3][kFineBatch];
    unsigned lanes[kMost];  // the pairs that have this point, one bit each
};

/// Two coordinates.
struct PlaceD8 {
    D8 u;
    D8 v;
};

HWY_INLINE PlaceD8 operator-(const PlaceD8& a, const PlaceD8& b) {
    return {a.u - b.u, a.v - b.v};
}

/// u.u v.v - u.v v.u, and the lanes in which rounding hides its sign: as Orientation of
/// projections.
struct AreaD8 {
    D8 value;
    PackMask<double, kFineBatch> known;
};

HWY_INLINE AreaD8 AreaOf(const PlaceD8& a, const PlaceD8& b) {
    const D8 left = a.u * b.v;
    const D8 right = a.v * b.u;
    const D8 value = left - right;
    const D8 terms = Magnitude(left) + Magnitude(right);
    return {value, (Magnitude(value) > terms * Broadcast<kFineBatch>(kAreaError)) |
                       (terms == Broadcast<kFineBatch>(0.0))};
}

/// Which coordinate of each lane a projection drops: the one along which the normal is longest.
struct DroppedD8 {
    PackMask<double, kFineBatch> x;
    PackMask<double, kFineBatch> y;

    explicit DroppedD8(const TriangleD8& t) {
        const D8x3 size = Magnitudes(Cross(t.v[1] - t.v[0], t.v[2] - t.v[0]));
        x = (size.x >= size.y) & (size.x >= size.z);
        y = (size.y >= size.z);
    }
    HWY_INLINE PlaceD8 Project(const D8x3& p) const {
        return {Choose(x, p.y, Choose(y, p.z, p.x)), Choose(x, p.z, Choose(y, p.x, p.y))};
    }
};

/// Of an edge of the one triangle and a corner of the other: in proportion to the distance of the
/// corner from the edge's line.
struct SidesD8 {
    D8 at[3][3];

    /// Whether a corner lies in the triangle of the edges.
    HWY_INLINE PackMask<double, kFineBatch> Contains(std::size_t corner) const {
        const D8 zero = Broadcast<kFineBatch>(0.0);
        const D8 s[3] = {at[0][corner], at[1][corner], at[2][corner]};
        return (LeastOf(s) >= zero) | (MostOf(s) <= zero);
    }
    /// Whether the line of an edge properly separates a corner from the next. Products of two
    /// neither underflow nor overflow.
    HWY_INLINE PackMask<double, kFineBatch> Separates(std::size_t edge, std::size_t corner) const {
        return at[edge][corner] * at[edge][(corner + 1) % 3] < Broadcast<kFineBatch>(0.0);
    }
};

/// Gathers the points of eight pairs.
class PlanarPointSink {
  public:
    PlanarPointSink(const BoxF8& common, bool keepsAll, PlanarPoints& points)
        : common_(common), keepsAll_(keepsAll), points_(points) {
        const D8 most = Broadcast<kFineBatch>(std::numeric_limits<double>::max());
        low_ = {most, most, most};
        high_ = {-most, -most, -most};
    }
    HWY_INLINE void Add(const PackMask<double, kFineBatch>& chosen, const D8x3& p) {
        low_ = Choose(chosen, Least(low_, p), low_);
        high_ = Choose(chosen, Most(high_, p), high_);
        if (!keepsAll_) return;
        StoreVector(ClampedTo(common_, Narrowed(p)), points_.at[count_]);
        points_.lanes[count_++] = Bits(chosen);
    }
    HWY_INLINE void Skip() {
        if (keepsAll_) points_.lanes[count_++] = 0;
    }
    /// Rounding and clamping keep the order of numbers, so once at the end is as good as for each.
    HWY_INLINE void IncludeIn(unsigned lanes, Box& region) const {
        Include(MaskOf<kFineBatch>(lanes), ClampedTo(common_, Narrowed(low_)),
                ClampedTo(common_, Narrowed(high_)), region);
    }

  private:
    const BoxF8 common_;
    const bool keepsAll_;
    PlanarPoints& points_;
    std::size_t count_ = 0;
    D8x3 low_;
    D8x3 high_;
};

/// The test of the first eight pairs, which must be of triangles whose corners lie in one plane.
/// `points` is filled when a callback wants it.
inline Verdict TestCoplanar(const PairQueue& queue, const EndsWanted& wanted, Box& region,
                            PlanarPoints& points) {
    const unsigned live = queue.LiveLanes(kFineBatch);
    const TriangleF8 narrowA = LoadTriangle<kFineBatch>(queue.a);
    const TriangleF8 narrowB = LoadTriangle<kFineBatch>(queue.b);
    const TriangleD8 a = Widened(narrowA);
    const TriangleD8 b = Widened(narrowB);
    const DroppedD8 dropped(a);
    PlaceD8 placeA[3];
    PlaceD8 placeB[3];
    for (std::size_t k = 0; k < 3; ++k) {
        placeA[k] = dropped.Project(a.v[k]);
        placeB[k] = dropped.Project(b.v[k]);
    }
    const D8 zero = Broadcast<kFineBatch>(0.0);
    const AreaD8 areaA = AreaOf(placeA[1] - placeA[0], placeA[2] - placeA[0]);
    const AreaD8 areaB = AreaOf(placeB[1] - placeB[0], placeB[2] - placeB[0]);
    // A triangle of no area is a segment or point, which is not for here.
    auto known = areaA.known & areaB.known & (Magnitude(areaA.value) > zero) &
                 (Magnitude(areaB.value) > zero);
    SidesD8 ofA;
    SidesD8 ofB;
    for (std::size_t e = 0; e < 3; ++e) {
        const PlaceD8 edgeA = placeA[(e + 1) % 3] - placeA[e];
        const PlaceD8 edgeB = placeB[(e + 1) % 3] - placeB[e];
        for (std::size_t i = 0; i < 3; ++i) {
            const AreaD8 sideA = AreaOf(edgeB, placeA[i] - placeB[e]);
            const AreaD8 sideB = AreaOf(edgeA, placeB[i] - placeA[e]);
            ofA.at[e][i] = sideA.value;
            ofB.at[e][i] = sideB.value;
            known = known & sideA.known & sideB.known;
        }
    }
    auto touching = ofA.Contains(0);
    for (std::size_t i = 1; i < 3; ++i)
        touching = touching | ofA.Contains(i);
    for (std::size_t i = 0; i < 3; ++i)
        touching = touching | ofB.Contains(i);
    for (std::size_t e = 0; e < 3; ++e)
        for (std::size_t f = 0; f < 3; ++f)
            touching = touching | (ofA.Separates(f, e) & ofB.Separates(e, f));
    const unsigned decided = live & Bits(known);
    const unsigned hit = decided & Bits(touching);
    const BoxF8 common = CommonBox(BoxOf(narrowA), BoxOf(narrowB));
    const bool hasPoints = hit != 0 && wanted.Needs((hit & Bits(ReachesOut(common, region))) != 0);
    if (hasPoints) {
        PlanarPointSink sink(common, wanted.forCallback, points);
        for (std::size_t i = 0; i < 3; ++i)
            sink.Add(ofA.Contains(i), a.v[i]);
        for (std::size_t i = 0; i < 3; ++i)
            sink.Add(ofB.Contains(i), b.v[i]);
        for (std::size_t e = 0; e < 3; ++e) {
            for (std::size_t f = 0; f < 3; ++f) {
                const auto crossing = ofA.Separates(f, e) & ofB.Separates(e, f);
                if (!Any(crossing)) {
                    sink.Skip();
                    continue;
                }
                const std::size_t next = (e + 1) % 3;
                const D8 atStart = Magnitude(ofA.at[f][e]);
                const D8 t = atStart / (atStart + Magnitude(ofA.at[f][next]));
                const D8x3 edge = a.v[next] - a.v[e];
                sink.Add(crossing,
                         {a.v[e].x + t * edge.x, a.v[e].y + t * edge.y, a.v[e].z + t * edge.z});
            }
        }
        if (wanted.forRegion) sink.IncludeIn(hit, region);
    }
    return {hit, 0, live & ~decided, live & ~decided, hasPoints};
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
