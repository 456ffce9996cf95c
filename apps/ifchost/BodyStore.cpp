// SPDX-License-Identifier: Apache-2.0
#include "BodyStore.h"

#include <cmath>
#include <string>

namespace ifchost {
namespace {

// Rotations read from files keep their unit length to about this.
constexpr double kRigidSlack = 1e-9;
// Marks keys of products apart from keys of geometries.
constexpr std::uint64_t kProductBit = std::uint64_t{1} << 32;

// Offsets commute with turning, moving and mirroring, but not with scaling.
bool KeepsLengths(const std::array<double, 16>& t) {
    for (std::size_t i = 0; i < 3; ++i) {
        for (std::size_t j = i; j < 3; ++j) {
            const double dot = t[i] * t[j] + t[4 + i] * t[4 + j] + t[8 + i] * t[8 + j];
            if (std::abs(dot - (i == j ? 1.0 : 0.0)) > kRigidSlack) return false;
        }
    }
    return true;
}

std::size_t BytesOf(const BodyMesh& mesh) {
    return mesh.positions.size() * sizeof(Vec3) + mesh.triangles.size() * sizeof(BodyTriangle);
}

}  // namespace

BodyStore::Key BodyStore::SharedKey(const WorksetComponent& component, std::uint32_t geometry,
                                    int offset) {
    return {component.projectId, geometry, offset};
}

BodyStore::Key BodyStore::OwnKey(const WorksetComponent& component, int offset) {
    return {component.projectId, kProductBit | component.product, offset};
}

BodyMesh BodyStore::ShapeOf(const ScenePackage& package, std::uint32_t index) const {
    const SceneGeometry geometry = package.Geometry(index);
    BodyMesh mesh;
    mesh.positions.reserve(geometry.VertexCount());
    mesh.triangles.reserve(geometry.TriangleCount());
    for (std::size_t i = 0; i < geometry.VertexCount(); ++i) {
        const double* p = &geometry.positions[3 * i];
        mesh.positions.push_back({p[0], p[1], p[2]});
    }
    for (std::size_t i = 0; i < geometry.TriangleCount(); ++i) {
        const std::uint32_t* t = &geometry.indices[3 * i];
        mesh.triangles.push_back({t[0], t[1], t[2]});
    }
    return mesh;
}

BodyMesh BodyStore::Body(ComponentId id, int offset) {
    const WorksetComponent& component = workset_.Components()[id];
    const ScenePackage& package = workset_.Project(component.projectId)->package;
    const auto instances = package.Instances(package.Products()[component.product]);
    const bool isShared = instances.size() == 1 && KeepsLengths(instances[0].transform);
    const Key key =
        isShared ? SharedKey(component, instances[0].geometry, offset) : OwnKey(component, offset);
    const OffsetResult* result = Find(key);
    if (result == nullptr) {
        BodyMesh plain;
        for (const SceneInstance& instance : instances) {
            BodyMesh shape = ShapeOf(package, instance.geometry);
            Append(plain, isShared ? shape : Transformed(shape, instance.transform));
        }
        result = &Keep(key, OffsetBody(plain, offset));
    }
    Note(id, *result, offset);
    return isShared ? Transformed(result->mesh, instances[0].transform) : result->mesh;
}

const OffsetResult* BodyStore::Find(const Key& key) {
    const auto found = index_.find(key);
    if (found == index_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, found->second);
    return &found->second->result;
}

const OffsetResult& BodyStore::Keep(const Key& key, OffsetResult result) {
    ++madeBodies_;
    const std::size_t bytes = sizeof(Entry) + BytesOf(result.mesh);
    entries_.push_front({key, std::move(result), bytes});
    index_[key] = entries_.begin();
    cachedBytes_ += bytes;
    // The new one stays even when it alone is above the limit: it is about to be used.
    while (cachedBytes_ > cacheBytes_ && entries_.size() > 1) {
        cachedBytes_ -= entries_.back().bytes;
        index_.erase(entries_.back().key);
        entries_.pop_back();
    }
    return entries_.front().result;
}

void BodyStore::Note(ComponentId component, const OffsetResult& result, int offset) {
    const auto add = [&](BodyDefect defect, std::string text) {
        if (noted_.insert({component, defect}).second) {
            notes_.push_back({component, defect, std::move(text)});
        }
    };
    switch (result.outcome) {
        case OffsetOutcome::Offset:
            break;
        case OffsetOutcome::OpenKept:
            add(BodyDefect::Open, "its surface is open at " +
                                      std::to_string(result.repair.openEdges) +
                                      " edges; open parts are tested as they are, without "
                                      "clearance or tolerance");
            break;
        case OffsetOutcome::Vanished:
            add(BodyDefect::Vanished, "nothing is left of it when it is shrunk by " +
                                          std::to_string(-offset) + " mm; it cannot clash then");
            break;
        case OffsetOutcome::NoTriangles:
            add(BodyDefect::NoVolume, "its body has no triangle with an area; it cannot clash");
            break;
    }
}

}  // namespace ifchost
