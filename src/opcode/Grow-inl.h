// SPDX-License-Identifier: Apache-2.0
// Building the hierarchy, one node at a time, when a query gets there. Binned surface-area
// heuristic after I. Wald, "On fast construction of SAH-based bounding volume hierarchies" (2007).

#if defined(KYCB_OPCODE_GROW_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KYCB_OPCODE_GROW_INL_H_
#undef KYCB_OPCODE_GROW_INL_H_
#else
#define KYCB_OPCODE_GROW_INL_H_
#endif

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include <hwy/highway.h>

#include "opcode/Lanes-inl.h"
#include "opcode/MeshTree.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

/// A box as its low ends and its negated high ends (the fourth place of each is idle), so that one
/// minimum unites two boxes.
using Bounds = F8;

HWY_INLINE Bounds EmptyBounds() {
    return Broadcast<8>(std::numeric_limits<float>::max());
}

struct alignas(32) Item {
    float bounds[8];
};

/// The triangles of a range while they are sorted into children, each as its bounds and its number
/// in the mesh; twice, because parts are divided by copying.
struct Items {
    Item* HWY_RESTRICT items;
    Item* HWY_RESTRICT otherItems;
    std::uint32_t* HWY_RESTRICT ids;
    std::uint32_t* HWY_RESTRICT otherIds;
    std::uint8_t* HWY_RESTRICT bins;
};

/// The memory behind them, reused by all trees of a thread.
class GrowScratch {
  public:
    Items Reserve(std::size_t count) {
        if (items_.size() < 2 * count) {
            items_.resize(2 * count);
            ids_.resize(2 * count);
            bins_.resize(count);
        }
        return {items_.data(), items_.data() + count, ids_.data(), ids_.data() + count,
                bins_.data()};
    }

  private:
    std::vector<Item> items_;
    std::vector<std::uint32_t> ids_;
    std::vector<std::uint8_t> bins_;
};

HWY_INLINE Bounds BoundsOf(const Item& item) {
    return Load<8>(item.bounds);
}

/// Twice the middle of the box along an axis; infinite when that is too large.
HWY_INLINE float TwiceMiddle(const Item& item, std::size_t axis) {
    return item.bounds[axis] - item.bounds[4 + axis];
}

HWY_INLINE float HalfArea(const Bounds& bounds) {
    alignas(32) float e[8];
    Store(bounds, e);
    const float x = e[0] + e[4];
    const float y = e[1] + e[5];
    const float z = e[2] + e[6];
    return x * y + y * z + z * x;
}

struct Part {
    std::uint32_t begin;
    std::uint32_t end;
    Bounds bounds;
    float area;

    std::uint32_t Count() const { return end - begin; }
};

HWY_INLINE Part MakePart(std::uint32_t begin, std::uint32_t end, const Bounds& bounds) {
    return {begin, end, bounds, HalfArea(bounds)};
}

constexpr std::size_t kBins = 16;
// Parts that become a handful of leaves are divided by count alone.
constexpr std::uint32_t kFewTriangles = 64;

/// Maps middles to bins along one axis.
struct Binning {
    std::size_t axis;
    float origin;
    float scale;
    std::size_t count;

    HWY_INLINE std::size_t BinOf(const Item& item) const {
        const float place = (TwiceMiddle(item, axis) - origin) * scale;
        return std::min(static_cast<std::size_t>(static_cast<std::int32_t>(place)), count - 1);
    }
};

/// Bins along the axis on which the middles spread the most; none (0 bins) when they are in one
/// place, or so close or far that their bins would be no numbers.
HWY_INLINE Binning FindBinning(const Items& all, const Part& part) {
    F4 low = Broadcast<4>(std::numeric_limits<float>::max());
    F4 high = -low;
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        const float* bounds = all.items[i].bounds;
        const F4 middle = Load<4>(bounds) - Load<4>(bounds + 4);
        low = Least(low, middle);
        high = Most(high, middle);
    }
    alignas(16) float origin[4];
    alignas(16) float extent[4];
    Store(low, origin);
    Store(high - low, extent);
    std::size_t axis = 0;
    for (std::size_t k = 1; k < 3; ++k)
        if (extent[k] > extent[axis]) axis = k;
    const float scale = static_cast<float>(kBins) / extent[axis];
    const bool usable = extent[axis] > 0.0F && std::isfinite(scale) && std::isfinite(extent[axis]);
    return {axis, origin[axis], scale, usable ? kBins : 0};
}

/// Leaves that so many triangles fill, as a float.
HWY_INLINE float LeavesFor(std::uint32_t count) {
    return static_cast<float>((count + kWidth - 1) / kWidth);
}

/// How a part is divided: at the first bin of the upper half, or 0 when nothing divides it.
struct Division {
    std::size_t boundary;
    Bounds lower;
    Bounds upper;
};

/// The boundary between bins with the least sum of area times leaves. Remembers the bins.
HWY_INLINE Division FindDivision(const Items& all, const Part& part, const Binning& binning) {
    // Neighbours in the mesh fall into one bin: with two sets, they need not wait for each other.
    alignas(32) float bounds[2][kBins][8];
    std::uint32_t count[kBins];
    for (std::size_t i = 0; i < binning.count; ++i) {
        Store(EmptyBounds(), bounds[0][i]);
        Store(EmptyBounds(), bounds[1][i]);
        count[i] = 0;
    }
    const Items local = all;
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        const std::size_t bin = binning.BinOf(local.items[i]);
        local.bins[i] = static_cast<std::uint8_t>(bin);
        float* sum = bounds[i & 1U][bin];
        Store(Least(Load<8>(sum), BoundsOf(local.items[i])), sum);
        ++count[bin];
    }
    for (std::size_t i = 0; i < binning.count; ++i)
        Store(Least(Load<8>(bounds[0][i]), Load<8>(bounds[1][i])), bounds[0][i]);
    Bounds below[kBins];
    std::uint32_t countBelow[kBins];
    below[0] = EmptyBounds();
    countBelow[0] = 0;
    for (std::size_t i = 1; i < binning.count; ++i) {
        below[i] = Least(below[i - 1], Load<8>(bounds[0][i - 1]));
        countBelow[i] = countBelow[i - 1] + count[i - 1];
    }
    Division best = {0, EmptyBounds(), EmptyBounds()};
    float bestCost = std::numeric_limits<float>::max();
    Bounds above = EmptyBounds();
    for (std::size_t i = binning.count - 1; i > 0; --i) {
        above = Least(above, Load<8>(bounds[0][i]));
        const std::uint32_t countAbove = part.Count() - countBelow[i];
        if (countAbove == 0 || countBelow[i] == 0) continue;
        const float cost =
            HalfArea(below[i]) * LeavesFor(countBelow[i]) + HalfArea(above) * LeavesFor(countAbove);
        if (cost >= bestCost) continue;
        bestCost = cost;
        best = {i, below[i], above};
    }
    return best;
}

/// Moves the chosen triangles to the front, without branches: each is written to both places it
/// may go to. Returns where the others begin.
template <class IsLower>
HWY_INLINE std::uint32_t MoveToFront(const Items& all, const Part& part, const IsLower& isLower) {
    const Items local = all;
    std::uint32_t low = part.begin;
    std::uint32_t high = 0;
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        const Bounds item = BoundsOf(local.items[i]);
        const std::uint32_t id = local.ids[i];
        const std::uint32_t step = isLower.Of(local, i);
        Store(item, local.items[low].bounds);
        Store(item, local.otherItems[high].bounds);
        local.ids[low] = id;
        local.otherIds[high] = id;
        low += step;
        high += 1 - step;
    }
    std::copy_n(local.otherItems, high, local.items + low);
    std::copy_n(local.otherIds, high, local.ids + low);
    return low;
}

struct IsInLowerBins {
    std::size_t boundary;

    HWY_INLINE std::uint32_t Of(const Items& all, std::uint32_t i) const {
        return all.bins[i] < boundary ? 1 : 0;
    }
};

struct IsBelowMiddle {
    std::size_t axis;
    float twiceMiddle;

    HWY_INLINE std::uint32_t Of(const Items& all, std::uint32_t i) const {
        return TwiceMiddle(all.items[i], axis) < twiceMiddle ? 1 : 0;
    }
};

HWY_INLINE Bounds MeasureBounds(const Items& all, std::uint32_t begin, std::uint32_t end) {
    Bounds bounds = EmptyBounds();
    for (std::uint32_t i = begin; i < end; ++i)
        bounds = Least(bounds, BoundsOf(all.items[i]));
    return bounds;
}

// Above this, a division at the middle of the range is as good as the best one, and costs half.
constexpr std::uint32_t kManyTriangles = 512;

/// Marks, in the bins, the lower half of a small part with 0 and the rest with 1, so that the lower
/// half fills whole leaves: half-filled ones cost as much to visit as full ones.
HWY_INLINE void MarkLowerLeaves(const Items& all, const Part& part, std::size_t axis) {
    struct Place {
        float middle;
        std::uint32_t index;

        bool operator<(const Place& other) const {
            return middle != other.middle ? middle < other.middle : index < other.index;
        }
    };
    Place places[kFewTriangles];
    for (std::uint32_t i = 0; i < part.Count(); ++i) {
        places[i] = {TwiceMiddle(all.items[part.begin + i], axis), part.begin + i};
        all.bins[part.begin + i] = 1;
    }
    const std::uint32_t lower = (part.Count() / 2 + kWidth - 1) / kWidth * kWidth;
    std::nth_element(places, places + lower, places + part.Count());
    for (std::uint32_t i = 0; i < lower; ++i)
        all.bins[places[i].index] = 0;
}

/// Divides a part in two, neither empty.
inline void SplitPart(const Items& all, const Part& part, Part& lower, Part& upper) {
    const Binning binning = FindBinning(all, part);
    std::uint32_t middle = part.begin;
    if (part.Count() <= kFewTriangles) {
        MarkLowerLeaves(all, part, binning.axis);
        middle = MoveToFront(all, part, IsInLowerBins{1});
    } else if (binning.count != 0 && part.Count() > kManyTriangles) {
        const float halfway =
            binning.origin + 0.5F * static_cast<float>(binning.count) / binning.scale;
        middle = MoveToFront(all, part, IsBelowMiddle{binning.axis, halfway});
    } else if (binning.count != 0) {
        const Division division = FindDivision(all, part, binning);
        if (division.boundary != 0) {
            middle = MoveToFront(all, part, IsInLowerBins{division.boundary});
            lower = MakePart(part.begin, middle, division.lower);
            upper = MakePart(middle, part.end, division.upper);
            return;
        }
    }
    // Nothing to tell the triangles apart by: their order is as good as any.
    if (middle == part.begin || middle == part.end) middle = part.begin + part.Count() / 2;
    lower = MakePart(part.begin, middle, MeasureBounds(all, part.begin, middle));
    upper = MakePart(middle, part.end, MeasureBounds(all, middle, part.end));
}

HWY_INLINE void StoreBoxIn(Boxes& boxes, std::size_t place, const float* low, const float* high) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
        boxes.low[axis][place] = low[axis];
        boxes.high[axis][place] = high[axis];
    }
}

HWY_INLINE void StoreEmptyBoxIn(Boxes& boxes, std::size_t place) {
    const float low[3] = {HUGE_VALF, HUGE_VALF, HUGE_VALF};
    const float high[3] = {-HUGE_VALF, -HUGE_VALF, -HUGE_VALF};
    StoreBoxIn(boxes, place, low, high);
}

HWY_INLINE F8 SquaredLength(const F8x3& v) {
    return Dot(v, v);
}

/// A vertex in the first three lanes. Reads one float more than the vertex where the array goes
/// on.
HWY_INLINE F4 LoadVertex(const Opcode::MeshInterface& mesh, std::uint32_t ref) {
    F4 r;
    const float* from = &mesh.GetVerts()[ref].x;
    alignas(16) float last[4];
    if (ref + 1 == mesh.GetNbVertices()) {
        last[3] = 0.0F;
        std::memcpy(last, from, sizeof(IceMaths::Point));
        from = last;
    }
    for (std::size_t i = 0; i < r.kParts; ++i)
        r.part[i] = hn::LoadU(F4::Tag(), from + i * r.kLanes);
    return r;
}

HWY_INLINE void CopyCorners(const Opcode::MeshInterface& mesh, std::uint32_t id,
                            float (*corner)[4]) {
    const auto& refs = mesh.GetTris()[id].mVRef;
    for (std::size_t k = 0; k < 3; ++k)
        Store(LoadVertex(mesh, refs[k]), corner[k]);
}

/// The planes of four triangles, from double precision.
template <Half kHalf>
HWY_INLINE void FindPlanes(const F8x3 (&vertex)[3], D4x3& normal, D4& offset, D4& slack) {
    const D4x3 v[3] = {Widened<kHalf>(vertex[0]), Widened<kHalf>(vertex[1]),
                       Widened<kHalf>(vertex[2])};
    const D4x3 u = v[1] - v[0];
    const D4x3 w = v[2] - v[0];
    normal = Cross(u, w);
    offset = Dot(normal, v[0]);
    // Six roundings to float at most meet each term of normal . x - offset, and each is bounded by
    // half an ulp, 2^-24; the normal itself is off by some units of double precision of the product
    // of the edges. The last term covers underflow.
    slack = (Magnitude(normal.x) + Magnitude(normal.y) + Magnitude(normal.z)) *
                Broadcast<4>(8 * 0x1p-24) +
            Norm(u) * Norm(w) * Broadcast<4>(0x1p-48) + Broadcast<4>(0x1p-120);
}

HWY_INLINE void StoreRows(const F8x3& v, float (*to)[kWidth]) {
    Store(v.x, to[0]);
    Store(v.y, to[1]);
    Store(v.z, to[2]);
}

HWY_INLINE void StorePlanes(const F8x3 (&vertex)[3], Leaf& leaf) {
    D4x3 normal[2];
    D4 offset[2];
    D4 slack[2];
    FindPlanes<Half::kLower>(vertex, normal[0], offset[0], slack[0]);
    FindPlanes<Half::kUpper>(vertex, normal[1], offset[1], slack[1]);
    StoreRows(Narrowed(normal[0], normal[1]), leaf.normal);
    Store(Narrowed(offset[0], offset[1]), leaf.offset);
    Store(Narrowed(slack[0], slack[1]), leaf.slack);
}

/// Which corner each triangle starts with: the one opposite its longest edge. Products of the
/// edges at that corner lose the least to rounding, above all in slivers.
struct FirstCorners {
    PackMask<float, 8> isSecond;
    PackMask<float, 8> isThird;
};

HWY_INLINE FirstCorners FindFirstCorners(const F8x3 (&v)[3]) {
    const F8 a = SquaredLength(v[2] - v[1]);
    const F8 b = SquaredLength(v[0] - v[2]);
    const F8 c = SquaredLength(v[1] - v[0]);
    return {(b > a) & (b >= c), (c > a) & (c > b)};
}

/// Writes the records with their corners turned to the first, without branches.
HWY_INLINE void StoreRecords(const float (*corners)[3][4], const std::uint32_t* ids,
                             std::uint32_t count, const FirstCorners& first, const F8& extent,
                             const F8& edges, Leaf& leaf) {
    const unsigned second = Bits(first.isSecond);
    const unsigned third = Bits(first.isThird);
    alignas(32) float extents[kWidth];
    alignas(32) float products[kWidth];
    Store(extent, extents);
    Store(edges, products);
    constexpr std::size_t kNext[5] = {0, 1, 2, 0, 1};
    for (std::size_t i = 0; i < kWidth; ++i) {
        const std::size_t start = (second >> i & 1U) + 2 * (third >> i & 1U);
        auto& corner = leaf.record[i].corner;
        for (std::size_t k = 0; k < 3; ++k)
            std::memcpy(corner[k], corners[i][kNext[start + k]], sizeof(corner[k]));
        corner[TriangleRecord::kExtent][TriangleRecord::kSpare] = extents[i];
        corner[TriangleRecord::kEdges][TriangleRecord::kSpare] = products[i];
        std::memcpy(&corner[TriangleRecord::kId][TriangleRecord::kSpare],
                    &ids[std::min<std::size_t>(i, count - 1)], sizeof(ids[0]));
    }
}

HWY_INLINE void FillLeaf(const Opcode::MeshInterface& mesh, const std::uint32_t* ids,
                         std::uint32_t count, Leaf& leaf) {
    alignas(32) float corners[kWidth][3][4];
    const float* rows[kWidth];
    for (std::uint32_t i = 0; i < kWidth; ++i) {
        CopyCorners(mesh, ids[std::min(i, count - 1)], corners[i]);
        rows[i] = corners[i][0];
    }
    const F8x3 read[3] = {Gather(rows, 0).xyz, Gather(rows, 4).xyz, Gather(rows, 8).xyz};
    const F8x3 low = Least(Least(read[0], read[1]), read[2]);
    const F8x3 high = Most(Most(read[0], read[1]), read[2]);
    StoreRows(low, leaf.boxes.low);
    StoreRows(high, leaf.boxes.high);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        leaf.low[axis] = *std::min_element(leaf.boxes.low[axis], leaf.boxes.low[axis] + kWidth);
        leaf.high[axis] = *std::max_element(leaf.boxes.high[axis], leaf.boxes.high[axis] + kWidth);
    }
    const FirstCorners first = FindFirstCorners(read);
    const auto& second = first.isSecond;
    const auto& third = first.isThird;
    const F8x3 turned[3] = {Choose(third, read[2], Choose(second, read[1], read[0])),
                            Choose(third, read[0], Choose(second, read[2], read[1])),
                            Choose(third, read[1], Choose(second, read[0], read[2]))};
    for (std::size_t k = 0; k < 3; ++k)
        StoreRows(turned[k], leaf.vertex[k]);
    StorePlanes(turned, leaf);
    StoreRecords(corners, ids, count, first, Norm(high - low),
                 Norm(turned[1] - turned[0]) * Norm(turned[2] - turned[0]), leaf);
    for (std::size_t i = count; i < kWidth; ++i)
        StoreEmptyBoxIn(leaf.boxes, i);
}

HWY_INLINE void LoadItem(const Opcode::MeshInterface& mesh, std::uint32_t id, float* bounds) {
    const auto& refs = mesh.GetTris()[id].mVRef;
    const F4 a = LoadVertex(mesh, refs[0]);
    const F4 b = LoadVertex(mesh, refs[1]);
    const F4 c = LoadVertex(mesh, refs[2]);
    Store(Least(Least(a, b), c), bounds);
    Store(-Most(Most(a, b), c), bounds + 4);
}

/// Divides a range of triangles among up to eight children, the largest part first.
inline std::uint32_t DivideRange(const Items& all, std::uint32_t count, Part* parts) {
    parts[0] = MakePart(0, count, MeasureBounds(all, 0, count));
    std::uint32_t used = 1;
    while (used < kWidth) {
        std::uint32_t largest = kWidth;
        for (std::uint32_t i = 0; i < used; ++i)
            if (parts[i].Count() > kWidth &&
                (largest == kWidth || parts[i].area > parts[largest].area))
                largest = i;
        if (largest == kWidth) break;
        const Part whole = parts[largest];
        SplitPart(all, whole, parts[largest], parts[used]);
        ++used;
    }
    return used;
}

inline void StoreBounds(const Bounds& bounds, float* low, float* high) {
    alignas(32) float ends[8];
    Store(bounds, ends);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = ends[axis];
        high[axis] = -ends[4 + axis];
    }
}

inline ChildRef GrowNode(MeshTree& tree, TriangleRange range, GrowScratch& scratch) {
    const Items all = scratch.Reserve(range.count);
    std::uint32_t* order = tree.Order().data() + range.begin;
    std::copy_n(order, range.count, all.ids);
    for (std::uint32_t i = 0; i < range.count; ++i)
        LoadItem(tree.Mesh(), order[i], all.items[i].bounds);
    Part parts[kWidth];
    const std::uint32_t used = DivideRange(all, range.count, parts);
    std::copy_n(all.ids, range.count, order);

    const std::uint32_t index = tree.nodes.Add();
    Node& node = tree.nodes[index];
    Bounds bounds = EmptyBounds();
    for (std::uint32_t i = 0; i < kWidth; ++i) {
        node.child[i] = ChildRef::Pending();
        node.range[i] = {0, 0};
        StoreEmptyBoxIn(node.boxes, i);
        if (i >= used) continue;
        node.range[i] = {range.begin + parts[i].begin, parts[i].Count()};
        bounds = Least(bounds, parts[i].bounds);
        float low[3];
        float high[3];
        StoreBounds(parts[i].bounds, low, high);
        StoreBoxIn(node.boxes, i, low, high);
    }
    StoreBounds(bounds, node.low, node.high);
    return ChildRef::OfNode(index);
}

inline ChildRef Grow(MeshTree& tree, TriangleRange range, GrowScratch& scratch) {
    if (range.count > kWidth) return GrowNode(tree, range, scratch);
    const std::uint32_t index = tree.leaves.Add();
    FillLeaf(tree.Mesh(), tree.Order().data() + range.begin, range.count, tree.leaves[index]);
    return ChildRef::OfLeaf(index);
}

/// The root, built when this is the first query that needs it; the tree must hold triangles.
inline ChildRef RootOf(MeshTree& tree, GrowScratch& scratch) {
    if (tree.root.IsPending())
        tree.root = Grow(tree, {0, static_cast<std::uint32_t>(tree.Order().size())}, scratch);
    return tree.root;
}

HWY_INLINE ChildRef ChildOf(MeshTree& tree, Node& node, unsigned place, GrowScratch& scratch) {
    if (node.child[place].IsPending()) node.child[place] = Grow(tree, node.range[place], scratch);
    return node.child[place];
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
