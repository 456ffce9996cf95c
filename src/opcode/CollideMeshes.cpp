// SPDX-License-Identifier: Apache-2.0
// The descent of two trees, compiled once for each instruction set.
#include "opcode/Targets.h"
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "opcode/CollideMeshes.cpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "opcode/CoplanarBatch-inl.h"
#include "opcode/FillLeaf-inl.h"
#include "opcode/Lanes-inl.h"
#include "opcode/PairBatch-inl.h"
#include "opcode/Query.h"
#include "opcode/TriangleContact.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

/// The triangles of one leaf, or of two side by side in memory.
template <std::size_t kLeaves>
class LeafRows {
  public:
    static constexpr std::size_t kLanes = kLeaves * kWidth;
    static constexpr bool kIsOneLeaf = kLeaves == 1;
    using Values = Pack<float, kLanes>;
    using Vectors = Vector3<Values>;

    explicit HWY_INLINE LeafRows(const Leaf* leaves) : leaves_(leaves) {}

    const Leaf& First() const { return leaves_[0]; }
    /// The leaf of a triangle.
    const Leaf& LeafOf(unsigned place) const { return leaves_[place / kWidth]; }

    HWY_INLINE Vectors Corner(std::size_t k) const {
        return {Row([k](const Leaf& leaf) { return leaf.vertex[k][0]; }),
                Row([k](const Leaf& leaf) { return leaf.vertex[k][1]; }),
                Row([k](const Leaf& leaf) { return leaf.vertex[k][2]; })};
    }
    HWY_INLINE Vectors Normal() const {
        return {Row([](const Leaf& leaf) { return leaf.normal[0]; }),
                Row([](const Leaf& leaf) { return leaf.normal[1]; }),
                Row([](const Leaf& leaf) { return leaf.normal[2]; })};
    }
    HWY_INLINE Values Offset() const {
        return Row([](const Leaf& leaf) { return leaf.offset; });
    }
    HWY_INLINE Values Slack() const {
        return Row([](const Leaf& leaf) { return leaf.slack; });
    }
    HWY_INLINE BoxLanes<Values> Boxes() const {
        return BoxOf(TriangleLanes<Values>{{Corner(0), Corner(1), Corner(2)}});
    }

  private:
    template <class RowOf>
    HWY_INLINE Values Row(RowOf rowOf) const {
        if constexpr (kIsOneLeaf)
            return Load<kWidth>(rowOf(leaves_[0]));
        else
            return LoadRows(rowOf(leaves_[0]), rowOf(leaves_[1]));
    }

    const Leaf* leaves_;
};

/// The triangles of `rows` that the plane of another leaf's triangle does not keep wholly on one
/// side, as far as single precision can tell.
template <class Rows>
HWY_INLINE auto CutByPlaneOf(const Leaf& other, unsigned place, const Rows& rows, float reach) {
    constexpr std::size_t kLanes = Rows::kLanes;
    const auto n = BroadcastLane<kLanes>(other.normal, place);
    const auto offset = Broadcast<kLanes>(other.offset[place]);
    const auto slack = Broadcast<kLanes>(other.slack[place] * reach);
    const typename Rows::Values side[3] = {Dot(n, rows.Corner(0)), Dot(n, rows.Corner(1)),
                                           Dot(n, rows.Corner(2))};
    return (LeastOf(side) <= offset + slack) & (MostOf(side) >= offset - slack);
}

/// The triangles of `rows` whose planes do not keep another leaf's triangle wholly on one side.
template <class Rows>
HWY_INLINE auto PlanesCutting(const Leaf& other, unsigned place, const Rows& rows, float reach) {
    constexpr std::size_t kLanes = Rows::kLanes;
    const auto n = rows.Normal();
    const auto offset = rows.Offset();
    const auto slack = rows.Slack() * Broadcast<kLanes>(reach);
    const typename Rows::Values side[3] = {Dot(n, BroadcastLane<kLanes>(other.vertex[0], place)),
                                           Dot(n, BroadcastLane<kLanes>(other.vertex[1], place)),
                                           Dot(n, BroadcastLane<kLanes>(other.vertex[2], place))};
    return (LeastOf(side) <= offset + slack) & (MostOf(side) >= offset - slack);
}

struct PlacePair {
    TreePlace a;
    TreePlace b;
};

/// Memory that all queries of a thread use again.
struct Scratch {
    std::vector<PlacePair> stack;
    CandidateList candidates;
    PairQueue touching;
    PairQueue coplanar;
    PairQueue outermost;
    UnplacedEnds unplaced;
};

inline Scratch& ThreadScratch() {
    thread_local Scratch scratch;
    return scratch;
}

/// A box by its ends along each axis.
struct EndsOfBox {
    float low[3];
    float high[3];
};

/// Of boxes side by side in memory, the one at a place.
template <class T>
HWY_INLINE EndsOfBox BoxAt(const T& boxes, std::size_t place) {
    return {{boxes.low[0][place], boxes.low[1][place], boxes.low[2][place]},
            {boxes.high[0][place], boxes.high[1][place], boxes.high[2][place]}};
}

HWY_INLINE EndsOfBox BoxOf(const MeshTree& tree, TreePlace place) {
    return BoxAt(tree.ChildBoxes(place.Parent()), place.index % kWidth);
}

HWY_INLINE EndsOfBox EndsOf(const Box& box) {
    return {{box.low[0], box.low[1], box.low[2]}, {box.high[0], box.high[1], box.high[2]}};
}

/// The boxes that a box meets.
template <std::size_t N>
HWY_INLINE PackMask<float, N> Meeting(const BoxLanes<Pack<float, N>>& boxes, const EndsOfBox& box) {
    const auto x =
        (boxes.low.x <= Broadcast<N>(box.high[0])) & (Broadcast<N>(box.low[0]) <= boxes.high.x);
    const auto y =
        (boxes.low.y <= Broadcast<N>(box.high[1])) & (Broadcast<N>(box.low[1]) <= boxes.high.y);
    const auto z =
        (boxes.low.z <= Broadcast<N>(box.high[2])) & (Broadcast<N>(box.low[2]) <= boxes.high.z);
    return x & y & z;
}

/// One box in all lanes.
template <std::size_t N>
HWY_INLINE BoxLanes<Pack<float, N>> Everywhere(const EndsOfBox& box) {
    return {{Broadcast<N>(box.low[0]), Broadcast<N>(box.low[1]), Broadcast<N>(box.low[2])},
            {Broadcast<N>(box.high[0]), Broadcast<N>(box.high[1]), Broadcast<N>(box.high[2])}};
}

HWY_INLINE BoxF8 LoadBoxes(const Boxes& boxes) {
    return {LoadVector(boxes.low), LoadVector(boxes.high)};
}

/// One bit each.
HWY_INLINE unsigned Meeting(const Boxes& boxes, const EndsOfBox& box) {
    return Bits(Meeting(LoadBoxes(boxes), box));
}

HWY_INLINE unsigned FirstBit(unsigned bits) {
    return static_cast<unsigned>(hwy::Num0BitsBelowLS1Bit_Nonzero32(bits));
}

class Descent {
  public:
    Descent(MeshTree& a, MeshTree& b, const Query& query)
        : a_(a),
          b_(b),
          query_(query),
          reach_(std::max(a.Reach(), b.Reach())),
          wanted_{query.regionMode != Opcode::ContactRegion::kNotKept, query.callback != nullptr,
                  query.regionMode == Opcode::ContactRegion::kOnly} {}

    void Run() {
        std::vector<PlacePair>& stack = scratch_.stack;
        candidates_.Clear();
        touching_.count = 0;
        coplanar_.count = 0;
        outermost_.count = 0;
        unplaced_.Clear(reach_);
        stack.clear();
        const PlacePair roots = {a_.Root(), b_.Root()};
        if (AreBothInTwoLeaves())
            VisitEnds(roots, EndsOf(a_.BoundingBox()), EndsOf(b_.BoundingBox()));
        else
            stack.push_back(roots);
        while (!stack.empty() && !full_) {
            const PlacePair pair = stack.back();
            stack.pop_back();
            Visit(pair, stack);
        }
        while (candidates_.count != 0 && !full_)
            Decide();
        while (touching_.count != 0 && !full_)
            DecideTouching();
        while (coplanar_.count != 0 && !full_)
            DecideCoplanar();
        if (!unplaced_.IsEmpty()) SettleEnds();
    }

  private:
    // The largest coordinate for which no product of three differences overflows, with room to
    // spare for the sums of such products.
    static constexpr float kLargestForSingle = 1e12F;
    // To ask the planes of a row of triangles costs one, and each triangle that they keep apart
    // gives one back. A query that has none left asks no more: in solids that pass through each
    // other planes keep hardly anything apart. What was gained lasts for so many rows without gain.
    static constexpr int kFirstPlaneCredit = 2;
    static constexpr int kMostPlaneCredit = 16;
    // The least for which no term along the normal of a patch underflows enough to matter.
    static constexpr float kLeastForPatch = 1e-30F;
    // Three roundings meet each of three terms on either side, and one the sum with the slack; each
    // is half an ulp (2^-24) of the largest coordinate. The rest is room to spare.
    static constexpr float kPatchSlack = 3 * 10 * 0x1p-24F;
    // The batches of a small query with pairs that touch: their ends are placed without waiting.
    static constexpr unsigned kPlacedAtOnce = 2;

    bool AreBothInTwoLeaves() const { return endsOfA_ != 0 && endsOfB_ != 0; }

    /// Two small meshes make so few batches that planes hardly ever save one.
    int FirstPlaneCredit() const {
        return reach_ > kLargestForSingle || AreBothInTwoLeaves() ? 0 : kFirstPlaneCredit;
    }

    HWY_INLINE void Visit(const PlacePair& pair, std::vector<PlacePair>& stack) {
        const EndsOfBox boxA = BoxOf(a_, pair.a);
        const EndsOfBox boxB = BoxOf(b_, pair.b);
        if (CanBePassedOver(boxA, boxB)) return;
        if (HWY_LIKELY(pair.a.IsLeaf() && pair.b.IsLeaf())) {
            VisitTriangles(LeafRows<1>(&FilledLeaf(a_, pair.a.index)), boxA,
                           LeafRows<1>(&FilledLeaf(b_, pair.b.index)), boxB);
            return;
        }
        const bool isEndOfA = pair.a.level == endsOfA_;
        const bool isEndOfB = pair.b.level == endsOfB_;
        if (isEndOfA && isEndOfB) {
            VisitEnds(pair, boxA, boxB);
        } else if (isEndOfA) {
            for (unsigned m = Meeting(b_.ChildBoxes(pair.b), boxA); m != 0; m &= m - 1)
                stack.push_back({pair.a, pair.b.Child(FirstBit(m))});
        } else if (isEndOfB) {
            for (unsigned m = Meeting(a_.ChildBoxes(pair.a), boxB); m != 0; m &= m - 1)
                stack.push_back({pair.a.Child(FirstBit(m)), pair.b});
        } else {
            VisitBlocks(pair, boxA, boxB, stack);
        }
    }

    /// Whether contact that lies in the region found so far is of no interest.
    HWY_INLINE bool OnlyRegionCounts() const {
        return wanted_.onlyToGrowRegion && !query_.pairs->empty();
    }

    /// Whether all contact between two boxes would lie in the region found so far, and only that
    /// is asked for.
    HWY_INLINE bool CanBePassedOver(const EndsOfBox& x, const EndsOfBox& y) const {
        if (!OnlyRegionCounts()) return false;
        bool inside = true;
        for (std::size_t axis = 0; axis < 3; ++axis)
            inside &= std::max(x.low[axis], y.low[axis]) >= query_.region->low[axis] &&
                      std::min(x.high[axis], y.high[axis]) <= query_.region->high[axis];
        return inside;
    }

    template <class T>
    static HWY_INLINE void Prefetch(const T& what) {
        constexpr std::size_t kLine = 64;
        for (std::size_t i = 0; i < sizeof(T); i += kLine)
            hwy::Prefetch(reinterpret_cast<const char*>(&what) + i);
    }

    /// Asks for what the visit of a place reads.
    static HWY_INLINE void Prefetch(MeshTree& tree, TreePlace place) {
        if (place.IsLeaf())
            Prefetch(tree.LeafAt(place.index));
        else
            Prefetch(tree.ChildBoxes(place));
    }

    HWY_INLINE void VisitBlocks(const PlacePair& pair, const EndsOfBox& boxA, const EndsOfBox& boxB,
                                std::vector<PlacePair>& stack) {
        const Boxes& x = a_.ChildBoxes(pair.a);
        const BoxF8 y = LoadBoxes(b_.ChildBoxes(pair.b));
        const auto columns = Meeting(y, boxA);
        if (!Any(columns)) return;
        unsigned partners = 0;
        for (unsigned m = Meeting(x, boxB); m != 0; m &= m - 1) {
            const unsigned i = FirstBit(m);
            unsigned k = Bits(columns & Meeting(y, BoxAt(x, i)));
            if (k == 0) continue;
            const TreePlace child = pair.a.Child(i);
            Prefetch(a_, child);
            partners |= k;
            for (; k != 0; k &= k - 1)
                stack.push_back({child, pair.b.Child(FirstBit(k))});
        }
        for (; partners != 0; partners &= partners - 1)
            Prefetch(b_, pair.b.Child(FirstBit(partners)));
    }

    /// The level at which a mesh is walked down no further: the leaves, or both leaves of a mesh
    /// that has two, which nearly every wall, slab, beam and column does. Two boxes then take one
    /// visit instead of four.
    static std::uint32_t LevelOfEnds(const MeshTree& tree) { return tree.LeafCount() == 2 ? 1 : 0; }

    /// Two ends, at least one of which is a mesh of two leaves.
    HWY_NOINLINE void VisitEnds(const PlacePair& pair, const EndsOfBox& boxA,
                                const EndsOfBox& boxB) {
        if (pair.a.IsLeaf())
            VisitTriangles(LeafRows<1>(&FilledLeaf(a_, pair.a.index)), boxA, TwoLeavesOf(b_), boxB);
        else if (pair.b.IsLeaf())
            VisitTriangles(TwoLeavesOf(a_), boxA, LeafRows<1>(&FilledLeaf(b_, pair.b.index)), boxB);
        else
            VisitTriangles(TwoLeavesOf(a_), boxA, TwoLeavesOf(b_), boxB);
    }

    static HWY_INLINE LeafRows<2> TwoLeavesOf(MeshTree& tree) {
        FilledLeaf(tree, 1);
        return LeafRows<2>(&FilledLeaf(tree, 0));
    }

    /// Chooses the pairs of triangles of two ends whose boxes meet.
    template <class RowsX, class RowsY>
    HWY_INLINE void VisitTriangles(RowsX x, const EndsOfBox& boxX, RowsY y, const EndsOfBox& boxY) {
        const auto boxesX = x.Boxes();
        const auto boxesY = y.Boxes();
        auto rows = Meeting(boxesX, boxY);
        auto columns = Meeting(boxesY, boxX);
        if (!Any(rows) || !Any(columns)) return;
        if (OnlyRegionCounts()) {
            const Box& region = *query_.region;
            rows = rows & ReachesOut(CommonBox(boxesX, Everywhere<RowsX::kLanes>(boxY)), region);
            columns =
                columns & ReachesOut(CommonBox(boxesY, Everywhere<RowsY::kLanes>(boxX)), region);
        }
        if (isPatchUsable_) {
            if constexpr (RowsY::kIsOneLeaf)
                if (y.First().hasPatch) rows = rows & ReachingPatch(y.First(), x);
            if constexpr (RowsX::kIsOneLeaf)
                if (x.First().hasPatch) columns = columns & ReachingPatch(x.First(), y);
        }
        const unsigned rowBits = Bits(rows);
        const unsigned columnBits = Bits(columns);
        if (rowBits == 0 || columnBits == 0) return;
        candidates_.StartRun(x.First(), y.First());
        if (hwy::PopCount(rowBits) <= hwy::PopCount(columnBits))
            Sweep<Side::kA>(x, boxesX, rowBits, y, boxesY, columns);
        else
            Sweep<Side::kB>(y, boxesY, columnBits, x, boxesX, rows);
    }

    /// The triangles that are not wholly on one side of the patch of a leaf, which is what keeps
    /// apart the walls of pipes inside pipes.
    template <class Rows>
    HWY_INLINE PackMask<float, Rows::kLanes> ReachingPatch(const Leaf& leaf,
                                                           const Rows& rows) const {
        constexpr std::size_t kLanes = Rows::kLanes;
        const typename Rows::Vectors n = {Broadcast<kLanes>(leaf.patchNormal[0]),
                                          Broadcast<kLanes>(leaf.patchNormal[1]),
                                          Broadcast<kLanes>(leaf.patchNormal[2])};
        const typename Rows::Values along[3] = {Dot(n, rows.Corner(0)), Dot(n, rows.Corner(1)),
                                                Dot(n, rows.Corner(2))};
        return (LeastOf(along) <= Broadcast<kLanes>(leaf.patchHigh + patchSlack_)) &
               (MostOf(along) >= Broadcast<kLanes>(leaf.patchLow - patchSlack_));
    }

    /// One triangle of `x` after the other against all of `y`.
    template <Side kSideOfX, class RowsX, class RowsY>
    HWY_INLINE void Sweep(const RowsX& x, const BoxLanes<typename RowsX::Values>& boxesX,
                          unsigned rows, const RowsY& y,
                          const BoxLanes<typename RowsY::Values>& boxesY,
                          const PackMask<float, RowsY::kLanes>& columns) {
        constexpr std::size_t kLanes = RowsY::kLanes;
        struct alignas(64) {
            float low[3][RowsX::kLanes];
            float high[3][RowsX::kLanes];
        } ends;
        StoreVector(boxesX.low, ends.low);
        StoreVector(boxesX.high, ends.high);
        for (; rows != 0; rows &= rows - 1) {
            const unsigned i = FirstBit(rows);
            const EndsOfBox box = BoxAt(ends, i);
            auto chosen = columns & Meeting(boxesY, box);
            if (OnlyRegionCounts())
                chosen =
                    chosen & ReachesOut(CommonBox(boxesY, Everywhere<kLanes>(box)), *query_.region);
            if (!Any(chosen)) continue;
            if (planeCredit_ > 0) {
                const auto met = static_cast<int>(hwy::PopCount(Bits(chosen)));
                const Leaf& leaf = x.LeafOf(i);
                const unsigned place = i % kWidth;
                chosen = chosen & CutByPlaneOf(leaf, place, y, reach_);
                if (Any(chosen)) chosen = chosen & PlanesCutting(leaf, place, y, reach_);
                const auto left = static_cast<int>(hwy::PopCount(Bits(chosen)));
                planeCredit_ = std::min(planeCredit_ + met - left - 1, kMostPlaneCredit);
                if (left == 0) continue;
            }
            AddPairs<kSideOfX, kLanes>(i, Bits(chosen), candidates_);
            if (candidates_.count >= kBatch) Decide();
            if (full_) return;
        }
    }

    HWY_INLINE void CopyCandidates(PairQueue& batch) const {
        // Told apart once, so that nothing is asked for each leaf.
        if (AreBothInTwoLeaves())
            CopyBatch(candidates_, true, true, batch);
        else if (endsOfA_ == 0 && endsOfB_ == 0)
            CopyBatch(candidates_, false, false, batch);
        else
            CopyBatch(candidates_, endsOfA_ != 0, endsOfB_ != 0, batch);
    }

    HWY_NOINLINE void Decide() {
        PairQueue& batch = unplaced_.Next();
        CopyCandidates(batch);
        candidates_.DropBatch();
        Verdict verdict = {0, 0, batch.LiveLanes(kBatch), 0, false};
        if (reach_ <= kLargestForSingle)
            verdict = TestInSingle(batch, wanted_, *query_.region, ends_,
                                   hitBatches_ >= kPlacedAtOnce && mayWait_ ? &unplaced_ : nullptr);
        if (verdict.hit != 0) EmitHits(batch, verdict);
        if (verdict.flat != 0) {
            MovePairs(batch, verdict.flat, coplanar_);
            while (coplanar_.count >= kFineBatch && !full_)
                DecideCoplanar();
        }
        if (const unsigned rest = verdict.doubt & ~verdict.flat; rest != 0) {
            MovePairs(batch, rest, touching_);
            while (touching_.count >= kFineBatch && !full_)
                DecideTouching();
        }
        if (unplaced_.IsFull()) SettleEnds();
    }

    /// Places the ends that waited, as far as the region cannot do without them.
    void SettleEnds() {
        unplaced_.Settle(*query_.region, [this](const PairQueue& pairs, unsigned lanes) {
            MovePairs(pairs, lanes, outermost_);
            if (outermost_.count >= kBatch) PlaceOutermost();
        });
        if (outermost_.count != 0) PlaceOutermost();
    }

    void PlaceOutermost() {
        TestInSingle(outermost_, wanted_, *query_.region, ends_, nullptr);
        DropBatch<kBatch>(outermost_);
    }

    HWY_INLINE void EmitHits(const PairQueue& batch, const Verdict& verdict) {
        ++hitBatches_;
        if (!wanted_.forCallback || !verdict.hasPoints) {
            EmitPairs(batch, verdict.hit);
            return;
        }
        for (unsigned m = verdict.hit; m != 0 && !full_; m &= m - 1)
            EmitSegment(batch, FirstBit(m), verdict);
    }

    /// Hands out pairs that touch, as many as are wanted.
    HWY_INLINE void EmitPairs(const PairQueue& batch, unsigned hits) {
        std::vector<Opcode::Pair>& pairs = *query_.pairs;
        const std::size_t before = pairs.size();
        pairs.resize(before + kBatch);
        StoreNumbers(batch, hits, pairs.data() + before);
        pairs.resize(std::min(before + hwy::PopCount(hits), query_.maxPairs));
        full_ = pairs.size() >= query_.maxPairs;
    }

    HWY_NOINLINE void DecideTouching() {
        const Verdict verdict = TestInDouble(touching_, wanted_, *query_.region, ends_);
        const unsigned unsure = verdict.doubt & ~verdict.flat;
        for (unsigned m = verdict.hit | unsure; m != 0 && !full_; m &= m - 1) {
            const unsigned i = FirstBit(m);
            if ((verdict.hit >> i & 1U) != 0)
                EmitSegment(touching_, i, verdict);
            else
                DecideExactly<&FindContact>(touching_, i);
        }
        if (verdict.flat != 0) {
            MovePairs(touching_, verdict.flat, coplanar_);
            if (coplanar_.count >= kFineBatch && !full_) DecideCoplanar();
        }
        DropBatch<kFineBatch>(touching_);
    }

    HWY_NOINLINE void DecideCoplanar() {
        const Verdict verdict = TestCoplanar(coplanar_, wanted_, *query_.region, planarPoints_);
        for (unsigned m = verdict.hit | verdict.doubt; m != 0 && !full_; m &= m - 1) {
            const unsigned i = FirstBit(m);
            if ((verdict.hit >> i & 1U) != 0)
                EmitPolygon(i, verdict);
            else
                DecideExactly<&FindCoplanarContact>(coplanar_, i);
        }
        DropBatch<kFineBatch>(coplanar_);
    }

    template <bool (*kFind)(const Triangle&, const Triangle&, ContactPoints&)>
    void DecideExactly(const PairQueue& queue, unsigned i) {
        ContactPoints points;
        if (!kFind(queue.a.TriangleAt(i), queue.b.TriangleAt(i), points)) return;
        EmitPair(queue, i);
        for (std::size_t k = 0; k < points.count; ++k) {
            if (wanted_.forCallback) query_.callback(points.p[k], query_.userData);
            if (wanted_.forRegion) IncludePoint(points.p[k]);
        }
    }

    Point EndAt(std::size_t end, unsigned i) const {
        return {ends_.at[end][0][i], ends_.at[end][1][i], ends_.at[end][2][i]};
    }

    HWY_INLINE void EmitSegment(const PairQueue& queue, unsigned i, const Verdict& verdict) {
        EmitPair(queue, i);
        if (!wanted_.forCallback || !verdict.hasPoints) return;
        const Point start = EndAt(0, i);
        const Point end = EndAt(1, i);
        query_.callback(start, query_.userData);
        const bool single = (verdict.single >> i & 1U) != 0;
        if (!single && (start.x != end.x || start.y != end.y || start.z != end.z))
            query_.callback(end, query_.userData);
    }

    void EmitPolygon(unsigned i, const Verdict& verdict) {
        EmitPair(coplanar_, i);
        if (!wanted_.forCallback || !verdict.hasPoints) return;
        ContactPoints points;
        for (std::size_t k = 0; k < PlanarPoints::kMost; ++k) {
            if ((planarPoints_.lanes[k] >> i & 1U) == 0) continue;
            const auto& at = planarPoints_.at[k];
            points.Add({at[0][i], at[1][i], at[2][i]});
        }
        for (std::size_t k = 0; k < points.count; ++k)
            query_.callback(points.p[k], query_.userData);
    }

    HWY_INLINE void EmitPair(const PairQueue& queue, unsigned i) {
        query_.pairs->push_back({queue.a.IdAt(i), queue.b.IdAt(i)});
        full_ = query_.pairs->size() >= query_.maxPairs;
    }

    HWY_INLINE void IncludePoint(const Point& point) {
        const float at[3] = {point.x, point.y, point.z};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            query_.region->low[axis] = std::min(query_.region->low[axis], at[axis]);
            query_.region->high[axis] = std::max(query_.region->high[axis], at[axis]);
        }
    }

    SegmentEnds ends_;
    PlanarPoints planarPoints_;
    MeshTree& a_;
    MeshTree& b_;
    const Query& query_;
    Scratch& scratch_ = ThreadScratch();
    CandidateList& candidates_ = scratch_.candidates;
    PairQueue& touching_ = scratch_.touching;
    PairQueue& coplanar_ = scratch_.coplanar;
    PairQueue& outermost_ = scratch_.outermost;
    UnplacedEnds& unplaced_ = scratch_.unplaced;
    const float reach_;
    const float patchSlack_ = kPatchSlack * reach_;
    unsigned hitBatches_ = 0;
    const std::uint32_t endsOfA_ = LevelOfEnds(a_);
    const std::uint32_t endsOfB_ = LevelOfEnds(b_);
    int planeCredit_ = FirstPlaneCredit();
    const EndsWanted wanted_;
    const bool isPatchUsable_ = reach_ >= kLeastForPatch && reach_ <= kLargestForSingle;
    bool full_ = false;
    const bool mayWait_ = wanted_.forRegion && !wanted_.forCallback && !wanted_.onlyToGrowRegion;
};

void Descend(MeshTree& a, MeshTree& b, const Query& query) {
    Descent(a, b, query).Run();
}

void FillAll(MeshTree& tree) {
    const Opcode::MeshInterface& mesh = tree.Mesh();
    const std::uint32_t count = tree.LeafCount();
    for (std::uint32_t i = 0; i < count; ++i) {
        // The triangles lie in the order of the host, so each would be waited for.
        if (const std::uint32_t ahead = i + 2; ahead < count)
            for (std::uint32_t k = 0; k < tree.TriangleCount(ahead); ++k)
                hwy::Prefetch(&mesh.GetTris()[tree.TrianglesOf(ahead)[k]]);
        FilledLeaf(tree, i);
    }
}

std::int64_t ThisTarget() {
    return HWY_TARGET;
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kycb::opcode {

HWY_EXPORT(Descend);
HWY_EXPORT(FillAll);
HWY_EXPORT(ThisTarget);

std::int64_t QueryTarget() {
    return HWY_DYNAMIC_DISPATCH(ThisTarget)();
}

void BuildWholeTree(MeshTree& tree) {
    tree.Bounds();
    if (tree.Arrange()) HWY_DYNAMIC_DISPATCH(FillAll)(tree);
}

void CollideMeshes(MeshTree& a, MeshTree& b, const Query& query) {
    if (query.maxPairs == 0 || !a.BoundingBox().Meets(b.BoundingBox())) return;
    if (a.Bounds().IsApartFrom(b.Bounds())) return;
    if (!a.Arrange() || !b.Arrange()) return;
    HWY_DYNAMIC_DISPATCH(Descend)(a, b, query);
}

}  // namespace kycb::opcode
#endif
