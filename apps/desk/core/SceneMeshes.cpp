// SPDX-License-Identifier: Apache-2.0
#include "desk/core/SceneMeshes.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

#include "desk/core/FeatureEdges.h"
#include "ifchost/IfcWorkset.h"

namespace desk {

void SceneBounds::Add(float x, float y, float z) {
    const std::array<float, 3> point{x, y, z};
    if (IsEmpty()) {
        min = max = point;
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        min[i] = std::min(min[i], point[i]);
        max[i] = std::max(max[i], point[i]);
    }
}

void SceneBounds::Add(const SceneBounds& other) {
    if (other.IsEmpty()) return;
    Add(other.min[0], other.min[1], other.min[2]);
    Add(other.max[0], other.max[1], other.max[2]);
}

namespace {

using ifchost::IfcWorkset;

class Collector {
  public:
    explicit Collector(const IfcWorkset& workset) : workset_(workset) {
        meshes_.ofComponent.resize(workset.Components().size());
        meshes_.edgesOfComponent.resize(workset.Components().size());
        meshes_.boundsOfComponent.resize(workset.Components().size());
    }

    SceneMeshes Collect() {
        for (const std::size_t component : BySpecialty()) {
            OpenGroup(workset_.Components()[component].category.specialty);
            AddComponent(component);
        }
        CloseGroup();
        return std::move(meshes_);
    }

  private:
    std::vector<std::size_t> BySpecialty() const {
        std::vector<std::size_t> order(workset_.Components().size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return workset_.Components()[a].category.specialty <
                   workset_.Components()[b].category.specialty;
        });
        return order;
    }

    std::uint32_t IndexCount() const { return static_cast<std::uint32_t>(meshes_.indices.size()); }

    void OpenGroup(const std::wstring& specialty) {
        if (!meshes_.groups.empty() && meshes_.groups.back().specialty == specialty) return;
        CloseGroup();
        meshes_.groups.push_back({specialty, {IndexCount(), 0}});
    }

    void CloseGroup() {
        if (meshes_.groups.empty()) return;
        IndexRange& range = meshes_.groups.back().range;
        range.count = IndexCount() - range.first;
    }

    void AddComponent(std::size_t index) {
        const auto& component = workset_.Components()[index];
        const auto& package = workset_.Project(component.projectId)->package;
        const std::uint32_t first = IndexCount();
        const auto firstEdge = static_cast<std::uint32_t>(meshes_.edges.size());
        for (const auto& instance : package.Instances(workset_.Product(component))) {
            const auto geometry = package.Geometry(instance.geometry);
            AddEdges(EdgesOf({component.projectId, instance.geometry}, geometry));
            AddInstance(geometry, instance, meshes_.boundsOfComponent[index]);
        }
        meshes_.ofComponent[index] = {first, IndexCount() - first};
        meshes_.edgesOfComponent[index] = {
            firstEdge, static_cast<std::uint32_t>(meshes_.edges.size()) - firstEdge};
        meshes_.bounds.Add(meshes_.boundsOfComponent[index]);
    }

    // Instances share a geometry, so its edges are looked for once.
    const std::vector<std::uint32_t>& EdgesOf(const std::pair<int, std::uint32_t>& key,
                                              const ifchost::SceneGeometry& geometry) {
        const auto [found, isNew] = edges_.try_emplace(key);
        if (isNew) found->second = FeatureEdges(geometry.positions, geometry.indices);
        return found->second;
    }

    // Of the instance whose vertices come next.
    void AddEdges(const std::vector<std::uint32_t>& edges) {
        const auto base = static_cast<std::uint32_t>(meshes_.positions.size() / 3);
        for (const std::uint32_t vertex : edges)
            meshes_.edges.push_back(base + vertex);
    }

    void AddInstance(const ifchost::SceneGeometry& geometry, const ifchost::SceneInstance& instance,
                     SceneBounds& bounds) {
        const auto base = static_cast<std::uint32_t>(meshes_.positions.size() / 3);
        for (std::size_t i = 0; i + 2 < geometry.positions.size(); i += 3) {
            const auto local = workset_.ToLocal(instance.Apply(
                geometry.positions[i], geometry.positions[i + 1], geometry.positions[i + 2]));
            const std::array<float, 3> point{static_cast<float>(local[0]),
                                             static_cast<float>(local[1]),
                                             static_cast<float>(local[2])};
            meshes_.positions.insert(meshes_.positions.end(), point.begin(), point.end());
            bounds.Add(point[0], point[1], point[2]);
        }
        for (const std::uint32_t vertex : geometry.indices)
            meshes_.indices.push_back(base + vertex);
    }

    const IfcWorkset& workset_;
    std::map<std::pair<int, std::uint32_t>, std::vector<std::uint32_t>> edges_;
    SceneMeshes meshes_;
};

}  // namespace

SceneMeshes CollectMeshes(const IfcWorkset& workset) {
    return Collector(workset).Collect();
}

}  // namespace desk
