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

/// A triangle while it is sorted into children: its box, and its number in the mesh.
struct alignas(16) Primitive {
    float low[4];
    float high[4];
    std::uint32_t Id() const {
        std::uint32_t id;
        std::memcpy(&id, &idBits, sizeof(id));
        return id;
    }
    std::uint32_t idBits;
    std::uint32_t spare[3];
};

struct Bounds4 {
    F4 low;
    F4 high;

    HWY_INLINE void Include(const Bounds4& other) {
        low = Least(low, other.low);
        high = Most(high, other.high);
    }
};

HWY_INLINE Bounds4 EmptyBounds() {
    const float largest = std::numeric_limits<float>::max();
    return {Broadcast<4>(largest), Broadcast<4>(-largest)};
}

HWY_INLINE Bounds4 BoundsOf(const Primitive& p) {
    return {Load<4>(p.low), Load<4>(p.high)};
}

/// The middle of a box, without overflow.
HWY_INLINE F4 Middle(const Bounds4& b) {
    const F4 half = Broadcast<4>(0.5F);
    return b.low * half + b.high * half;
}

HWY_INLINE float HalfArea(const Bounds4& b) {
    alignas(16) float e[4];
    Store(b.high - b.low, e);
    return e[0] * e[1] + e[1] * e[2] + e[2] * e[0];
}

struct Part {
    std::uint32_t begin;
    std::uint32_t end;
    Bounds4 bounds;
    Bounds4 middles;
    float area;

    std::uint32_t Count() const { return end - begin; }
};

HWY_INLINE Part MeasurePart(const Primitive* primitives, std::uint32_t begin, std::uint32_t end) {
    Part part = {begin, end, EmptyBounds(), EmptyBounds(), 0.0F};
    for (std::uint32_t i = begin; i < end; ++i) {
        const Bounds4 b = BoundsOf(primitives[i]);
        const F4 middle = Middle(b);
        part.bounds.Include(b);
        part.middles.Include({middle, middle});
    }
    part.area = HalfArea(part.bounds);
    return part;
}

constexpr std::size_t kBins = 16;

/// Maps middles to bins along one axis.
struct Binning {
    std::size_t axis;
    float origin;
    float scale;

    HWY_INLINE std::size_t BinOf(const Primitive& p) const {
        const float middle = p.low[axis] * 0.5F + p.high[axis] * 0.5F;
        const float place = (middle - origin) * scale;
        return std::min(static_cast<std::size_t>(place), kBins - 1);
    }
};

/// Leaves that so many triangles fill, as a float.
HWY_INLINE float LeavesFor(std::uint32_t count) {
    return static_cast<float>((count + kWidth - 1) / kWidth);
}

/// The cheapest boundary between bins: the first bin of the upper half, or 0 when nothing divides.
HWY_INLINE std::size_t FindBoundary(const Primitive* primitives, const Part& part,
                                    const Binning& binning) {
    Bounds4 bounds[kBins];
    std::uint32_t count[kBins] = {};
    for (std::size_t i = 0; i < kBins; ++i)
        bounds[i] = EmptyBounds();
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        const std::size_t bin = binning.BinOf(primitives[i]);
        bounds[bin].Include(BoundsOf(primitives[i]));
        ++count[bin];
    }
    float lowerCost[kBins];
    Bounds4 sum = EmptyBounds();
    std::uint32_t below = 0;
    for (std::size_t i = 0; i + 1 < kBins; ++i) {
        sum.Include(bounds[i]);
        below += count[i];
        lowerCost[i + 1] = below == 0 ? 0.0F : HalfArea(sum) * LeavesFor(below);
    }
    sum = EmptyBounds();
    std::uint32_t above = 0;
    std::size_t best = 0;
    float bestCost = std::numeric_limits<float>::max();
    for (std::size_t i = kBins - 1; i > 0; --i) {
        sum.Include(bounds[i]);
        above += count[i];
        if (above == 0 || above == part.Count()) continue;
        const float cost = lowerCost[i] + HalfArea(sum) * LeavesFor(above);
        if (cost < bestCost) {
            bestCost = cost;
            best = i;
        }
    }
    return best;
}

/// Reorders the part and returns where its upper half begins, strictly inside.
HWY_INLINE std::uint32_t SplitPart(Primitive* primitives, const Part& part) {
    const std::uint32_t half = part.begin + part.Count() / 2;
    alignas(16) float origin[4];
    alignas(16) float extent[4];
    Store(part.middles.low, origin);
    Store(part.middles.high - part.middles.low, extent);
    std::size_t axis = 0;
    for (std::size_t k = 1; k < 3; ++k)
        if (extent[k] > extent[axis]) axis = k;
    const float scale = static_cast<float>(kBins) / extent[axis];
    // Middles in one place, or so close or far that their bins would be no numbers.
    if (!(extent[axis] > 0.0F) || !std::isfinite(scale) || !std::isfinite(extent[axis]))
        return half;
    const Binning binning = {axis, origin[axis], scale};
    const std::size_t boundary = FindBoundary(primitives, part, binning);
    if (boundary == 0) return half;
    std::uint32_t low = part.begin;
    std::uint32_t high = part.end;
    while (low < high) {
        if (binning.BinOf(primitives[low]) < boundary)
            ++low;
        else
            std::swap(primitives[low], primitives[--high]);
    }
    return low;
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

HWY_INLINE void CopyCorners(const Opcode::MeshInterface& mesh, std::uint32_t id,
                            float (*corner)[4]) {
    const auto& refs = mesh.GetTris()[id].mVRef;
    for (std::size_t k = 0; k < 3; ++k)
        std::memcpy(corner[k], mesh.GetVerts() + refs[k], sizeof(IceMaths::Point));
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
    alignas(32) float corners[kWidth][3][4] = {};
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

HWY_INLINE void LoadPrimitive(const Opcode::MeshInterface& mesh, std::uint32_t id,
                              Primitive& primitive) {
    const auto& refs = mesh.GetTris()[id].mVRef;
    const IceMaths::Point& a = mesh.GetVerts()[refs[0]];
    const IceMaths::Point& b = mesh.GetVerts()[refs[1]];
    const IceMaths::Point& c = mesh.GetVerts()[refs[2]];
    primitive.low[0] = std::min(std::min(a.x, b.x), c.x);
    primitive.low[1] = std::min(std::min(a.y, b.y), c.y);
    primitive.low[2] = std::min(std::min(a.z, b.z), c.z);
    primitive.low[3] = 0.0F;
    primitive.high[0] = std::max(std::max(a.x, b.x), c.x);
    primitive.high[1] = std::max(std::max(a.y, b.y), c.y);
    primitive.high[2] = std::max(std::max(a.z, b.z), c.z);
    primitive.high[3] = 0.0F;
    primitive.idBits = id;
}

/// Divides a range of triangles among up to eight children, largest part first.
inline std::uint32_t DividePrimitives(Primitive* primitives, std::uint32_t count, Part* parts) {
    parts[0] = MeasurePart(primitives, 0, count);
    std::uint32_t used = 1;
    while (used < kWidth) {
        std::uint32_t largest = kWidth;
        for (std::uint32_t i = 0; i < used; ++i)
            if (parts[i].Count() > kWidth &&
                (largest == kWidth || parts[i].area > parts[largest].area))
                largest = i;
        if (largest == kWidth) break;
        const Part whole = parts[largest];
        const std::uint32_t middle = SplitPart(primitives, whole);
        parts[largest] = MeasurePart(primitives, whole.begin, middle);
        parts[used++] = MeasurePart(primitives, middle, whole.end);
    }
    return used;
}

/// Reused by all trees that a thread builds.
inline std::vector<Primitive>& Scratch() {
    thread_local std::vector<Primitive> scratch;
    return scratch;
}

inline ChildRef GrowNode(MeshTree& tree, TriangleRange range) {
    std::vector<Primitive>& primitives = Scratch();
    if (primitives.size() < range.count) primitives.resize(range.count);
    std::uint32_t* order = tree.Order().data() + range.begin;
    for (std::uint32_t i = 0; i < range.count; ++i)
        LoadPrimitive(tree.Mesh(), order[i], primitives[i]);
    Part parts[kWidth];
    const std::uint32_t used = DividePrimitives(primitives.data(), range.count, parts);
    for (std::uint32_t i = 0; i < range.count; ++i)
        order[i] = primitives[i].Id();

    const std::uint32_t index = tree.nodes.Add();
    Node& node = tree.nodes[index];
    node.count = used;
    Bounds4 bounds = EmptyBounds();
    for (std::uint32_t i = 0; i < kWidth; ++i) {
        node.child[i] = ChildRef::Pending();
        StoreEmptyBoxIn(node.boxes, i);
        if (i >= used) continue;
        node.range[i] = {range.begin + parts[i].begin, parts[i].Count()};
        bounds.Include(parts[i].bounds);
        alignas(16) float low[4];
        alignas(16) float high[4];
        Store(parts[i].bounds.low, low);
        Store(parts[i].bounds.high, high);
        StoreBoxIn(node.boxes, i, low, high);
    }
    Store(bounds.low, node.low);
    Store(bounds.high, node.high);
    return ChildRef::OfNode(index);
}

inline ChildRef Grow(MeshTree& tree, TriangleRange range) {
    if (range.count > kWidth) return GrowNode(tree, range);
    const std::uint32_t index = tree.leaves.Add();
    FillLeaf(tree.Mesh(), tree.Order().data() + range.begin, range.count, tree.leaves[index]);
    return ChildRef::OfLeaf(index);
}

/// The root, built when this is the first query that needs it; the tree must hold triangles.
inline ChildRef RootOf(MeshTree& tree) {
    if (tree.root.IsPending())
        tree.root = Grow(tree, {0, static_cast<std::uint32_t>(tree.Order().size())});
    return tree.root;
}

HWY_INLINE ChildRef ChildOf(MeshTree& tree, Node& node, unsigned place) {
    if (node.child[place].IsPending()) node.child[place] = Grow(tree, node.range[place]);
    return node.child[place];
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
