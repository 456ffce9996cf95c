// SPDX-License-Identifier: Apache-2.0
// Our mesh collider as a participant of the comparison with other libraries.
#include "KYCollisionBase/opcode/AABBTreeCollider.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"

#include <cstring>

#include "common.h"

namespace {

static_assert(sizeof(IceMaths::Point) == 3 * sizeof(float));
static_assert(sizeof(IceMaths::IndexedTriangle) == 3 * sizeof(std::uint32_t));

// The tree of less is left to the first query that needs it: too little to show in its time.
constexpr std::size_t kWorthBuilding = 100;

/// A host's mesh: the collider borrows the arrays of the benchmark.
struct OwnMesh {
    Opcode::MeshInterface mesh;
    Opcode::Model model;
};

void AddToBox(const IceMaths::Point& point, bench::BBoxD& box) {
    box.add(static_cast<double>(point.x), static_cast<double>(point.y),
            static_cast<double>(point.z));
}

class OwnPeer : public bench::NarrowPeer {
  public:
    OwnPeer() {
        name = "own";
        collider_.SetContactRegion(Opcode::ContactRegion::kKept);
    }

    void* build(const bench::Mesh& source) override {
        auto* own = new OwnMesh;
        own->mesh.SetPointers(reinterpret_cast<const IceMaths::IndexedTriangle*>(source.t.data()),
                              reinterpret_cast<const IceMaths::Point*>(source.v.data()));
        own->mesh.SetNbTriangles(static_cast<std::uint32_t>(source.tris()));
        own->mesh.SetNbVertices(static_cast<std::uint32_t>(source.verts()));
        Opcode::OPCODECREATE create;
        create.mIMesh = &own->mesh;
        if (!own->model.Build(create)) std::abort();
        // The others build everything here, so a mesh that is worth it is built here too.
        if (source.tris() >= kWorthBuilding) own->model.BuildWholeTree();
        return own;
    }

    void destroy(void* own) override { delete static_cast<OwnMesh*>(own); }

    void query(void* a, void* b, bench::NarrowResult& out) override {
        Opcode::BVTCache cache;
        cache.Model0 = &static_cast<OwnMesh*>(a)->model;
        cache.Model1 = &static_cast<OwnMesh*>(b)->model;
        out.has_box = true;
        if (!collider_.Collide(cache)) std::abort();
        IceMaths::Point low;
        IceMaths::Point high;
        if (collider_.GetContactRegion(low, high)) {
            AddToBox(low, out.box);
            AddToBox(high, out.box);
        }
        const Opcode::Pair* pairs = collider_.GetPairs();
        for (std::uint32_t i = 0; i < collider_.GetNbPairs(); ++i)
            out.add(pairs[i].id0, pairs[i].id1);
    }

  private:
    Opcode::AABBTreeCollider collider_;
};

const bench::RegisterNarrow<OwnPeer> registered;

}  // namespace
