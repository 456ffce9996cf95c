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

HWY_INLINE float SquaredLength(const IceMaths::Point& p, const IceMaths::Point& q) {
    const float x = p.x - q.x;
    const float y = p.y - q.y;
    const float z = p.z - q.z;
    return x * x + y * y + z * z;
}

/// Copies a triangle so that it starts opposite its longest edge: products of the edges at that
/// vertex lose the least to rounding, above all in slivers.
HWY_INLINE void CopyTurned(const Opcode::MeshInterface& mesh, std::uint32_t id,
                           float (*corner)[4]) {
    const auto& refs = mesh.GetTris()[id].mVRef;
    const IceMaths::Point* v[3] = {mesh.GetVerts() + refs[0], mesh.GetVerts() + refs[1],
                                   mesh.GetVerts() + refs[2]};
    const float a = SquaredLength(*v[1], *v[2]);
    const float b = SquaredLength(*v[2], *v[0]);
    const float c = SquaredLength(*v[0], *v[1]);
    std::size_t first = 0;
    if (!(a >= b && a >= c)) first = b >= c ? 1 : 2;
    for (std::size_t k = 0; k < 3; ++k) {
        const IceMaths::Point& p = *v[(first + k) % 3];
        corner[k][0] = p.x;
        corner[k][1] = p.y;
        corner[k][2] = p.z;
        corner[k][3] = 0.0F;
    }
}

/// The planes of four triangles, from double precision.
HWY_INLINE void StorePlanes(Leaf& leaf, std::size_t first) {
    D4x3 v[3];
    for (std::size_t k = 0; k < 3; ++k)
        v[k] = {LoadWidened(&leaf.vertex[k][0][first]), LoadWidened(&leaf.vertex[k][1][first]),
                LoadWidened(&leaf.vertex[k][2][first])};
    const D4x3 u = v[1] - v[0];
    const D4x3 w = v[2] - v[0];
    const D4x3 n = Cross(u, w);
    StoreRounded(n.x, &leaf.normal[0][first]);
    StoreRounded(n.y, &leaf.normal[1][first]);
    StoreRounded(n.z, &leaf.normal[2][first]);
    StoreRounded(Dot(n, v[0]), &leaf.offset[first]);
    // Six roundings to float at most meet each term of normal . x - offset, and each is bounded by
    // half an ulp, 2^-24; the normal itself is off by some units of double precision of the product
    // of the edges. The last term covers underflow.
    const D4 sum = Magnitude(n.x) + Magnitude(n.y) + Magnitude(n.z);
    const D4 slack = sum * Broadcast<4>(8 * 0x1p-24) + Norm(u) * Norm(w) * Broadcast<4>(0x1p-48) +
                     Broadcast<4>(0x1p-120);
    StoreRounded(slack, &leaf.slack[first]);
}

HWY_INLINE void FillLeaf(const Opcode::MeshInterface& mesh, const std::uint32_t* ids,
                         std::uint32_t count, Leaf& leaf) {
    const float* corners[kWidth];
    leaf.count = count;
    for (std::uint32_t i = 0; i < kWidth; ++i) {
        leaf.id[i] = ids[std::min(i, count - 1)];
        CopyTurned(mesh, leaf.id[i], leaf.corner[i]);
        corners[i] = leaf.corner[i][0];
    }
    F8x3 low;
    F8x3 high;
    for (std::size_t k = 0; k < 3; ++k) {
        const F8x3 v = Gather(corners, 4 * k);
        Store(v.x, leaf.vertex[k][0]);
        Store(v.y, leaf.vertex[k][1]);
        Store(v.z, leaf.vertex[k][2]);
        low = k == 0 ? v : F8x3{Least(low.x, v.x), Least(low.y, v.y), Least(low.z, v.z)};
        high = k == 0 ? v : F8x3{Most(high.x, v.x), Most(high.y, v.y), Most(high.z, v.z)};
    }
    Store(low.x, leaf.boxes.low[0]);
    Store(low.y, leaf.boxes.low[1]);
    Store(low.z, leaf.boxes.low[2]);
    Store(high.x, leaf.boxes.high[0]);
    Store(high.y, leaf.boxes.high[1]);
    Store(high.z, leaf.boxes.high[2]);
    for (std::size_t axis = 0; axis < 3; ++axis) {
        leaf.low[axis] = *std::min_element(leaf.boxes.low[axis], leaf.boxes.low[axis] + kWidth);
        leaf.high[axis] = *std::max_element(leaf.boxes.high[axis], leaf.boxes.high[axis] + kWidth);
    }
    StorePlanes(leaf, 0);
    StorePlanes(leaf, 4);
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
