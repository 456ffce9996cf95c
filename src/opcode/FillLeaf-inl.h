// SPDX-License-Identifier: Apache-2.0
// Filling a leaf of the hierarchy, when a query gets there.

#if defined(KYCB_OPCODE_FILL_LEAF_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef KYCB_OPCODE_FILL_LEAF_INL_H_
#undef KYCB_OPCODE_FILL_LEAF_INL_H_
#else
#define KYCB_OPCODE_FILL_LEAF_INL_H_
#endif

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include <hwy/highway.h>

#include "opcode/Lanes-inl.h"
#include "opcode/MeshTree.h"

HWY_BEFORE_NAMESPACE();
namespace kycb::opcode::HWY_NAMESPACE {

/// Which corner each triangle starts with: the one opposite its longest edge. Products of the
/// edges at that corner lose the least to rounding, above all in slivers.
HWY_INLINE TriangleF8 StartedOppositeLongestEdge(const TriangleF8& t) {
    const auto squared = [](const F8x3& v) { return Dot(v, v); };
    const F8 a = squared(t.v[2] - t.v[1]);
    const F8 b = squared(t.v[0] - t.v[2]);
    const F8 c = squared(t.v[1] - t.v[0]);
    const auto second = (b > a) & (b >= c);
    const auto third = (c > a) & (c > b);
    return {{Choose(third, t.v[2], Choose(second, t.v[1], t.v[0])),
             Choose(third, t.v[0], Choose(second, t.v[2], t.v[1])),
             Choose(third, t.v[1], Choose(second, t.v[0], t.v[2]))}};
}

/// The planes, from double precision.
HWY_INLINE void StorePlanes(const TriangleF8& t, Leaf& leaf) {
    const D8x3 from = Widened(t.v[0]);
    const D8x3 u = Widened(t.v[1]) - from;
    const D8x3 w = Widened(t.v[2]) - from;
    const D8x3 normal = Cross(u, w);
    // Six roundings to float at most meet each term of normal . x - offset, and each is bounded by
    // half an ulp, 2^-24; the normal itself is off by some units of double precision of the product
    // of the edges. The last term covers underflow.
    const D8 slack = (Magnitude(normal.x) + Magnitude(normal.y) + Magnitude(normal.z)) *
                         Broadcast<8>(8 * 0x1p-24) +
                     Norm(u) * Norm(w) * Broadcast<8>(0x1p-48) + Broadcast<8>(0x1p-120);
    StoreVector(Narrowed(normal), leaf.normal);
    Store(Narrowed(Dot(normal, from)), leaf.offset);
    Store(Narrowed(slack), leaf.slack);
}

/// Reads the corners of eight triangles side by side.
HWY_INLINE TriangleF8 LoadTriangles(const Opcode::MeshInterface& mesh, const std::uint32_t* ids) {
    alignas(32) float corner[3][3][kWidth];
    for (std::size_t i = 0; i < kWidth; ++i) {
        const auto& refs = mesh.GetTris()[ids[i]].mVRef;
        for (std::size_t k = 0; k < 3; ++k) {
            const IceMaths::Point& p = mesh.GetVerts()[refs[k]];
            corner[k][0][i] = p.x;
            corner[k][1][i] = p.y;
            corner[k][2][i] = p.z;
        }
    }
    return {{LoadVector(corner[0]), LoadVector(corner[1]), LoadVector(corner[2])}};
}

/// The mean direction of the planes, whichever way each triangle winds; 0 when there is none. Added
/// up in one order on every instruction set.
inline void FindPatchNormal(const Leaf& leaf, std::uint32_t count, float (&normal)[3]) {
    float sum[3] = {0.0F, 0.0F, 0.0F};
    for (std::uint32_t i = 0; i < count; ++i) {
        const float n[3] = {leaf.normal[0][i], leaf.normal[1][i], leaf.normal[2][i]};
        const float along = sum[0] * n[0] + sum[1] * n[1] + sum[2] * n[2];
        for (std::size_t axis = 0; axis < 3; ++axis)
            sum[axis] += along < 0.0F ? -n[axis] : n[axis];
    }
    const float largest = std::max({std::fabs(sum[0]), std::fabs(sum[1]), std::fabs(sum[2])});
    const bool usable = largest >= std::numeric_limits<float>::min() && std::isfinite(largest);
    for (std::size_t axis = 0; axis < 3; ++axis)
        normal[axis] = usable ? sum[axis] / largest : 0.0F;
}

/// Whether something so thick is thin beside the second largest extent of a leaf: a piece of a
/// curved wall is, a box or a profile is not.
inline bool IsThin(float thickness, const BoxF8& boxes) {
    const float x = MostLane(boxes.high.x) - LeastLane(boxes.low.x);
    const float y = MostLane(boxes.high.y) - LeastLane(boxes.low.y);
    const float z = MostLane(boxes.high.z) - LeastLane(boxes.low.z);
    const float second = std::max(std::min(x, y), std::min(std::max(x, y), z));
    return 4 * thickness <= second;
}

inline void StorePatch(const TriangleF8& t, std::uint32_t count, Leaf& leaf) {
    FindPatchNormal(leaf, count, leaf.patchNormal);
    const F8x3 n = {Broadcast<8>(leaf.patchNormal[0]), Broadcast<8>(leaf.patchNormal[1]),
                    Broadcast<8>(leaf.patchNormal[2])};
    // Places not in use repeat a triangle here, which changes nothing.
    const F8 along[3] = {Dot(n, t.v[0]), Dot(n, t.v[1]), Dot(n, t.v[2])};
    leaf.patchLow = LeastLane(LeastOf(along));
    leaf.patchHigh = MostLane(MostOf(along));
    leaf.hasPatch = IsThin(leaf.patchHigh - leaf.patchLow, BoxOf(t));
}

inline void FillLeaf(MeshTree& tree, std::uint32_t index) {
    Leaf& leaf = tree.LeafAt(index);
    const std::uint32_t count = tree.TriangleCount(index);
    const std::uint32_t* triangles = tree.TrianglesOf(index);
    std::uint32_t ids[kWidth];
    for (std::uint32_t i = 0; i < kWidth; ++i)
        ids[i] = triangles[i < count ? i : 0];
    std::memcpy(leaf.id, ids, sizeof(ids));
    const TriangleF8 t = StartedOppositeLongestEdge(LoadTriangles(tree.Mesh(), ids));
    const auto used = MaskOf<kWidth>((1U << count) - 1);
    const F8 none = Broadcast<8>(std::numeric_limits<float>::quiet_NaN());
    for (std::size_t k = 0; k < 3; ++k)
        StoreVector(Choose(used, t.v[k], {none, none, none}), leaf.vertex[k]);
    StorePlanes(t, leaf);
    StorePatch(t, count, leaf);
    tree.SetFilled(index);
}

HWY_INLINE const Leaf& FilledLeaf(MeshTree& tree, std::uint32_t index) {
    if (HWY_UNLIKELY(!tree.IsFilled(index))) FillLeaf(tree, index);
    return tree.LeafAt(index);
}

}  // namespace kycb::opcode::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
