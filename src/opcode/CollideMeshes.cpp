// SPDX-License-Identifier: Apache-2.0
// The descent of two trees, compiled once for each instruction set.
// Sets that bring nothing over their neighbours would only cost size.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL)
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "opcode/CollideMeshes.cpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include <hwy/cache_control.h>
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "opcode/Grow-inl.h"
#include "opcode/Lanes-inl.h"
#include "opcode/PairBatch-inl.h"
#include "opcode/Query.h"
#include "opcode/TriangleContact.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

/// The boxes that a box meets, one bit each.
HWY_INLINE unsigned Meeting(const Boxes& boxes, const float* low, const float* high) {
    const auto x = (Load<8>(boxes.low[0]) <= Broadcast<8>(high[0])) &
                   (Broadcast<8>(low[0]) <= Load<8>(boxes.high[0]));
    const auto y = (Load<8>(boxes.low[1]) <= Broadcast<8>(high[1])) &
                   (Broadcast<8>(low[1]) <= Load<8>(boxes.high[1]));
    const auto z = (Load<8>(boxes.low[2]) <= Broadcast<8>(high[2])) &
                   (Broadcast<8>(low[2]) <= Load<8>(boxes.high[2]));
    return Bits(x & y & z);
}

/// The same for a box inside a set of boxes.
HWY_INLINE unsigned Meeting(const Boxes& boxes, const Boxes& others, unsigned place) {
    const float low[3] = {others.low[0][place], others.low[1][place], others.low[2][place]};
    const float high[3] = {others.high[0][place], others.high[1][place], others.high[2][place]};
    return Meeting(boxes, low, high);
}

/// The triangles of `leaf` that the plane of another leaf's triangle does not keep wholly on one
/// side, as far as single precision can tell.
HWY_INLINE unsigned CutByPlaneOf(const Leaf& other, unsigned place, const Leaf& leaf, float reach) {
    const F8x3 n = {Broadcast<8>(other.normal[0][place]), Broadcast<8>(other.normal[1][place]),
                    Broadcast<8>(other.normal[2][place])};
    const F8 offset = Broadcast<8>(other.offset[place]);
    F8 side[3];
    for (std::size_t k = 0; k < 3; ++k)
        side[k] = Dot(n, F8x3{Load<8>(leaf.vertex[k][0]), Load<8>(leaf.vertex[k][1]),
                              Load<8>(leaf.vertex[k][2])});
    const float slack = other.slack[place] * reach;
    return Bits((LeastOf(side) <= offset + Broadcast<8>(slack)) &
                (MostOf(side) >= offset - Broadcast<8>(slack)));
}

/// The triangles of `leaf` whose planes do not keep another leaf's triangle wholly on one side.
HWY_INLINE unsigned PlanesCutting(const Leaf& other, unsigned place, const Leaf& leaf,
                                  float reach) {
    const F8x3 n = {Load<8>(leaf.normal[0]), Load<8>(leaf.normal[1]), Load<8>(leaf.normal[2])};
    const F8 offset = Load<8>(leaf.offset);
    const F8 slack = Load<8>(leaf.slack) * Broadcast<8>(reach);
    F8 side[3];
    for (std::size_t k = 0; k < 3; ++k)
        side[k] = Dot(n, F8x3{Broadcast<8>(other.record[place].corner[k][0]),
                              Broadcast<8>(other.record[place].corner[k][1]),
                              Broadcast<8>(other.record[place].corner[k][2])});
    return Bits((LeastOf(side) <= offset + slack) & (MostOf(side) >= offset - slack));
}

HWY_INLINE Point PointOf(const float* corner) {
    return {corner[0], corner[1], corner[2]};
}

HWY_INLINE Triangle TriangleOf(const TriangleRecord& record) {
    return {{PointOf(record.corner[0]), PointOf(record.corner[1]), PointOf(record.corner[2])}};
}

struct NodePair {
    ChildRef a;
    ChildRef b;
};

/// Memory that all queries of a thread use again.
struct Scratch {
    std::vector<NodePair> stack;
    GrowScratch grow;
};

inline Scratch& ThreadScratch() {
    thread_local Scratch scratch;
    return scratch;
}

class Descent {
  public:
    Descent(MeshTree& a, MeshTree& b, const Query& query)
        : a_(a), b_(b), query_(query), reach_(std::max(a.Reach(), b.Reach())) {
        const F8 largest = Broadcast<8>(std::numeric_limits<float>::max());
        for (std::size_t axis = 0; axis < 3; ++axis) {
            Store(largest, regionLanes_.low[axis]);
            Store(-largest, regionLanes_.high[axis]);
        }
    }

    void Run() {
        std::vector<NodePair>& stack = scratch_.stack;
        stack.clear();
        stack.push_back({RootOf(a_, scratch_.grow), RootOf(b_, scratch_.grow)});
        while (!stack.empty() && !full_) {
            const NodePair pair = stack.back();
            stack.pop_back();
            if (!CanBePassedOver(BoxOf(a_, pair.a), BoxOf(b_, pair.b))) Visit(pair, stack);
        }
        if (!full_) Decide();
        if (!full_) DecideTouching();
        if (KeepsRegion()) GatherRegion();
    }

  private:
    // The largest coordinate for which no product of three differences overflows, with room to
    // spare for the sums of such products.
    static constexpr float kLargestForSingle = 1e12F;

    void Visit(const NodePair& pair, std::vector<NodePair>& stack) {
        if (pair.a.IsLeaf() && pair.b.IsLeaf()) {
            VisitLeaves(a_.leaves[pair.a.Index()], b_.leaves[pair.b.Index()]);
        } else if (pair.a.IsLeaf()) {
            const Leaf& x = a_.leaves[pair.a.Index()];
            Node& y = b_.nodes[pair.b.Index()];
            for (unsigned m = Meeting(y.boxes, x.low, x.high); m != 0; m &= m - 1)
                stack.push_back({pair.a, ChildOf(b_, y, FirstBit(m), scratch_.grow)});
        } else if (pair.b.IsLeaf()) {
            Node& x = a_.nodes[pair.a.Index()];
            const Leaf& y = b_.leaves[pair.b.Index()];
            for (unsigned m = Meeting(x.boxes, y.low, y.high); m != 0; m &= m - 1)
                stack.push_back({ChildOf(a_, x, FirstBit(m), scratch_.grow), pair.b});
        } else {
            VisitNodes(a_.nodes[pair.a.Index()], b_.nodes[pair.b.Index()], stack);
        }
    }

    /// The low and high ends of what a child holds.
    struct Ends3 {
        const float* low;
        const float* high;
    };

    static HWY_INLINE Ends3 BoxOf(MeshTree& tree, ChildRef child) {
        if (child.IsLeaf())
            return {tree.leaves[child.Index()].low, tree.leaves[child.Index()].high};
        return {tree.nodes[child.Index()].low, tree.nodes[child.Index()].high};
    }

    /// Whether all contact between two boxes would lie in the region found so far, and only that
    /// is asked for.
    HWY_INLINE bool CanBePassedOver(const Ends3& x, const Ends3& y) const {
        if (query_.regionMode != Opcode::ContactRegion::kOnly || query_.pairs->empty())
            return false;
        bool inside = true;
        for (std::size_t axis = 0; axis < 3; ++axis)
            inside &= std::max(x.low[axis], y.low[axis]) >= query_.region->low[axis] &&
                      std::min(x.high[axis], y.high[axis]) <= query_.region->high[axis];
        return inside;
    }

    /// Asks for what the visit of a child reads first: its boxes, and the corners of a leaf.
    static HWY_INLINE void Prefetch(MeshTree& tree, ChildRef child) {
        constexpr std::size_t kLine = 64;
        if (!child.IsLeaf()) {
            const auto* node = reinterpret_cast<const char*>(&tree.nodes[child.Index()]);
            for (std::size_t i = 0; i < sizeof(Boxes) + kLine; i += kLine)
                hwy::Prefetch(node + i);
            return;
        }
        const auto* leaf = reinterpret_cast<const char*>(&tree.leaves[child.Index()]);
        for (std::size_t i = 0; i < offsetof(Leaf, record); i += kLine)
            hwy::Prefetch(leaf + i);
    }

    void VisitNodes(Node& x, Node& y, std::vector<NodePair>& stack) {
        const unsigned columns = Meeting(y.boxes, x.low, x.high);
        for (unsigned m = Meeting(x.boxes, y.low, y.high); m != 0; m &= m - 1) {
            const unsigned i = FirstBit(m);
            unsigned k = columns & Meeting(y.boxes, x.boxes, i);
            if (k == 0) continue;
            const ChildRef child = ChildOf(a_, x, i, scratch_.grow);
            Prefetch(a_, child);
            for (; k != 0; k &= k - 1) {
                const ChildRef partner = ChildOf(b_, y, FirstBit(k), scratch_.grow);
                Prefetch(b_, partner);
                stack.push_back({child, partner});
            }
        }
    }

    void VisitLeaves(const Leaf& x, const Leaf& y) {
        const unsigned rows = Meeting(x.boxes, y.low, y.high);
        const unsigned columns = Meeting(y.boxes, x.low, x.high);
        if (rows == 0 || columns == 0) return;
        if (hwy::PopCount(rows) <= hwy::PopCount(columns))
            Sweep<Side::kA>(x, rows, y, columns);
        else
            Sweep<Side::kB>(y, columns, x, rows);
    }

    enum class Side { kA, kB };

    /// One triangle of `x` after the other against all of `y`.
    template <Side kSideOfX>
    HWY_INLINE void Sweep(const Leaf& x, unsigned rows, const Leaf& y, unsigned columns) {
        for (; rows != 0 && !full_; rows &= rows - 1) {
            const unsigned i = FirstBit(rows);
            unsigned m = columns & Meeting(y.boxes, x.boxes, i);
            if (m != 0 && reach_ <= kLargestForSingle) {
                m &= CutByPlaneOf(x, i, y, reach_);
                if (m != 0) m &= PlanesCutting(x, i, y, reach_);
            }
            for (; m != 0; m &= m - 1) {
                const unsigned k = FirstBit(m);
                if (kSideOfX == Side::kA)
                    candidates_.Add(x.record[i], y.record[k]);
                else
                    candidates_.Add(y.record[k], x.record[i]);
                if (candidates_.count == kWidth) Decide();
                if (full_) return;
            }
        }
    }

    bool KeepsRegion() const { return query_.regionMode != Opcode::ContactRegion::kNotKept; }

    void Decide() {
        if (candidates_.count == 0) return;
        candidates_.Pad();
        Verdict verdict = {0, 0, (1U << candidates_.count) - 1, 0};
        if (reach_ <= kLargestForSingle)
            verdict = query_.callback != nullptr || KeepsRegion()
                          ? TestInSingle<Ends::kWanted>(candidates_, ends_, regionLanes_)
                          : TestInSingle<Ends::kNotWanted>(candidates_, ends_, regionLanes_);
        for (unsigned m = verdict.hit; m != 0 && !full_; m &= m - 1)
            EmitSegment(candidates_, FirstBit(m), false);
        if (verdict.hit != 0 && query_.regionMode == Opcode::ContactRegion::kOnly) GatherRegion();
        for (unsigned m = verdict.doubt; m != 0 && !full_; m &= m - 1) {
            const unsigned i = FirstBit(m);
            touching_.Add(*candidates_.a[i], *candidates_.b[i]);
            if (touching_.count == kWidth) DecideTouching();
        }
        candidates_.count = 0;
    }

    void DecideTouching() {
        if (touching_.count == 0) return;
        touching_.Pad();
        const Verdict verdict = TestInDouble(touching_, ends_);
        for (unsigned m = verdict.hit | verdict.doubt; m != 0 && !full_; m &= m - 1) {
            const unsigned i = FirstBit(m);
            if ((verdict.hit >> i & 1U) == 0) {
                DecideExactly(*touching_.a[i], *touching_.b[i], (verdict.flat >> i & 1U) != 0);
                continue;
            }
            EmitSegment(touching_, i, (verdict.single >> i & 1U) != 0);
            if (!KeepsRegion()) continue;
            Include(StartOf(i));
            Include(EndOf(i));
        }
        touching_.count = 0;
    }

    void DecideExactly(const TriangleRecord& a, const TriangleRecord& b, bool coplanar) {
        ContactPoints points;
        const bool touch = coplanar ? FindCoplanarContact(TriangleOf(a), TriangleOf(b), points)
                                    : FindContact(TriangleOf(a), TriangleOf(b), points);
        if (!touch) return;
        EmitPair(a, b);
        for (std::size_t k = 0; k < points.count; ++k) {
            if (query_.callback != nullptr) query_.callback(points.p[k], query_.userData);
            if (KeepsRegion()) Include(points.p[k]);
        }
    }

    Point StartOf(unsigned i) const {
        return {ends_.at[0][0][i], ends_.at[0][1][i], ends_.at[0][2][i]};
    }
    Point EndOf(unsigned i) const {
        return {ends_.at[1][0][i], ends_.at[1][1][i], ends_.at[1][2][i]};
    }

    HWY_INLINE void EmitSegment(const PairQueue& queue, unsigned i, bool single) {
        EmitPair(*queue.a[i], *queue.b[i]);
        if (query_.callback == nullptr) return;
        const Point start = StartOf(i);
        const Point end = EndOf(i);
        query_.callback(start, query_.userData);
        if (!single && (start.x != end.x || start.y != end.y || start.z != end.z))
            query_.callback(end, query_.userData);
    }

    HWY_INLINE void EmitPair(const TriangleRecord& a, const TriangleRecord& b) {
        query_.pairs->push_back({a.Id(), b.Id()});
        full_ = query_.pairs->size() >= query_.maxPairs;
    }

    HWY_INLINE void Include(const Point& point) {
        const float at[3] = {point.x, point.y, point.z};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            query_.region->low[axis] = std::min(query_.region->low[axis], at[axis]);
            query_.region->high[axis] = std::max(query_.region->high[axis], at[axis]);
        }
    }

    /// Adds what the lanes hold to the region.
    void GatherRegion() {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const float* low = regionLanes_.low[axis];
            const float* high = regionLanes_.high[axis];
            float& regionLow = query_.region->low[axis];
            float& regionHigh = query_.region->high[axis];
            regionLow = std::min(regionLow, *std::min_element(low, low + kWidth));
            regionHigh = std::max(regionHigh, *std::max_element(high, high + kWidth));
        }
    }

    static HWY_INLINE unsigned FirstBit(unsigned bits) {
        return static_cast<unsigned>(hwy::Num0BitsBelowLS1Bit_Nonzero32(bits));
    }

    MeshTree& a_;
    MeshTree& b_;
    const Query& query_;
    Scratch& scratch_ = ThreadScratch();
    const float reach_;
    bool full_ = false;
    PairQueue candidates_;
    PairQueue touching_;
    SegmentEnds ends_;
    RegionLanes regionLanes_;
};

void Descend(MeshTree& a, MeshTree& b, const Query& query) {
    Descent(a, b, query).Run();
}

void GrowAll(MeshTree& tree) {
    GrowScratch& grow = ThreadScratch().grow;
    std::vector<ChildRef> open = {RootOf(tree, grow)};
    while (!open.empty()) {
        const ChildRef next = open.back();
        open.pop_back();
        if (next.IsLeaf()) continue;
        Node& node = tree.nodes[next.Index()];
        for (unsigned i = 0; i < kWidth && node.range[i].count != 0; ++i)
            open.push_back(ChildOf(tree, node, i, grow));
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
HWY_EXPORT(GrowAll);
HWY_EXPORT(ThisTarget);

std::int64_t QueryTarget() {
    return HWY_DYNAMIC_DISPATCH(ThisTarget)();
}

void BuildWholeTree(MeshTree& tree) {
    tree.Bounds();
    if (!tree.Order().empty()) HWY_DYNAMIC_DISPATCH(GrowAll)(tree);
}

void CollideMeshes(MeshTree& a, MeshTree& b, const Query& query) {
    if (query.maxPairs == 0 || !a.BoundingBox().Meets(b.BoundingBox())) return;
    if (a.Bounds().IsApartFrom(b.Bounds())) return;
    if (a.Order().empty() || b.Order().empty()) return;
    HWY_DYNAMIC_DISPATCH(Descend)(a, b, query);
}

}  // namespace kycb::opcode
#endif
