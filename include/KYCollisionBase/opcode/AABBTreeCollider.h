// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/opcode/BVTCache.h"
#include "KYCollisionBase/opcode/Pair.h"
#include "KYCollisionBase/opcode/Point.h"

#include <cstdint>
#include <vector>

namespace IceMaths {
class Matrix4x4;
}

namespace Opcode {

/// Whether a query keeps its contact region, the bounding box of all contact points.
enum class ContactRegion {
    kNotKept,
    /// Beside all pairs; cheaper than a callback that does the same.
    kKept,
    /// The region is all that is asked for: it and the contact status are those of `kKept`, but
    /// only some of the pairs and points are delivered. Parts of the meshes that cannot enlarge
    /// the region are passed over, which keeps deep interpenetration cheap.
    kOnly,
};

/// Receives one contact point (world coordinates, millimetres) and the registered user data. It
/// must neither throw nor use the collider that calls it.
using ContactCallback = void (*)(const IceMaths::Point& point, void* userData);

/// Finds the touching triangles of two meshes.
///
/// **What touches.** Two triangles touch when they, as closed sets, share a point. For finite
/// vertices the answer is exact: it is that of real arithmetic on the single-precision coordinates,
/// whatever their size, and does not depend on the order of the models, triangles or vertices. A
/// triangle of no area is the segment or point that it is; a triangle with a vertex that is not
/// finite touches nothing. A body that lies wholly inside another touches it only where surfaces
/// meet.
///
/// **Contact points.** For each touching pair the callback gets the end points of the common
/// segment, or the one common point, or the corners of the common polygon when both triangles lie
/// in one plane. They are computed in double precision, rounded to float, and lie in the common
/// bounding box of the two triangles.
///
/// **Order.** Pairs and points come in an order that depends on the two meshes and their order
/// alone: the same on every call, machine and instruction set. It is not sorted.
///
/// **Threads.** A collider, and the models it is given, belong to one thread at a time. The
/// floating-point environment must be the default one (round to nearest, subnormals kept).
///
/// **Sources.** O. Devillers, P. Guigue, "Faster triangle-triangle intersection tests" (2002), for
/// the sign-based test; J. R. Shewchuk, "Adaptive precision floating-point arithmetic and fast
/// robust geometric predicates" (1997), for exact signs; J. L. Bentley, "Multidimensional binary
/// search trees used for associative searching" (1975), for the halving that the hierarchy is made
/// by; S. Gottschalk et al., "OBBTree" (1996), for the oriented boxes.
class KYCB_API AABBTreeCollider {
  public:
    AABBTreeCollider();
    ~AABBTreeCollider();
    AABBTreeCollider(const AABBTreeCollider&) = delete;
    AABBTreeCollider& operator=(const AABBTreeCollider&) = delete;

    /// Accepted for hosts that ask for complete tests; the answer is complete and exact either way.
    void SetFullBoxBoxTest(bool full) { fullBoxBoxTest_ = full; }
    void SetFullPrimBoxTest(bool full) { fullPrimBoxTest_ = full; }
    /// Whether a query ends with the first touching pair. Off by default.
    void SetFirstContact(bool firstContact) { firstContact_ = firstContact; }
    /// Accepted for hosts that move meshes between queries; it never changes an answer.
    void SetTemporalCoherence(bool coherence) { temporalCoherence_ = coherence; }

    /// Not kept by default.
    void SetContactRegion(ContactRegion region) { regionMode_ = region; }
    /// A query ends once it has found this many pairs, which bounds its memory to 8 bytes each.
    /// The default is the largest 32-bit number.
    void SetMaxNbPairs(std::uint32_t count) { maxNbPairs_ = count; }
    /// Registers `callback`, or none with null; `userData` is handed through untouched.
    void SetContactCallback(ContactCallback callback, void* userData);

    /// Collides the two models of `cache`, both where their vertices say.
    ///
    /// The two placements exist for callers that pass null (the identity); their type stays
    /// incomplete, so nothing else can be passed.
    /// @return false when a model is missing or has no tree, or a placement is not null; then there
    /// are no pairs. Otherwise true, whether or not anything touches.
    /// @throws std::bad_alloc when memory runs out; the models stay usable.
    bool Collide(BVTCache& cache, const IceMaths::Matrix4x4* world0 = nullptr,
                 const IceMaths::Matrix4x4* world1 = nullptr);

    /// Whether the last query found a touching pair.
    bool GetContactStatus() const { return !pairs_.empty(); }
    std::uint32_t GetNbPairs() const { return static_cast<std::uint32_t>(pairs_.size()); }
    /// The touching pairs of the last query, valid until the next one; null when there are none.
    const Pair* GetPairs() const { return pairs_.empty() ? nullptr : pairs_.data(); }

    /// The contact region of the last query.
    /// @return false, with the corners left alone, when nothing touched or no region was kept.
    bool GetContactRegion(IceMaths::Point& low, IceMaths::Point& high) const;

  private:
    std::vector<Pair> pairs_;
    IceMaths::Point regionLow_;
    IceMaths::Point regionHigh_;
    ContactCallback callback_ = nullptr;
    void* userData_ = nullptr;
    std::uint32_t maxNbPairs_ = 0xFFFFFFFFU;
    ContactRegion regionMode_ = ContactRegion::kNotKept;
    bool hasRegion_ = false;
    bool fullBoxBoxTest_ = true;
    bool fullPrimBoxTest_ = true;
    bool firstContact_ = false;
    bool temporalCoherence_ = false;
};

}  // namespace Opcode
