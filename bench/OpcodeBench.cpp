// SPDX-License-Identifier: Apache-2.0
// The mesh collider on named scenes. `warm` queries models whose trees stand, as when a component
// has many neighbours; `cold` builds both models for each query; `build` makes whole trees, and
// reports time and memory for each triangle. A scene whose number of touching
// triangle pairs is not the known one is reported as an error.
#include "KYCollisionBase/opcode/AABBTreeCollider.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"

#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "HeapCount.h"
#include "OpcodeScenes.h"

namespace {

using kycb::bench::Scene;
using kycb::bench::SceneMesh;

class BuiltModel {
  public:
    explicit BuiltModel(const SceneMesh& source) {
        mesh_.SetPointers(source.triangles.data(), source.vertices.data());
        mesh_.SetNbTriangles(static_cast<std::uint32_t>(source.triangles.size()));
        mesh_.SetNbVertices(static_cast<std::uint32_t>(source.vertices.size()));
        Opcode::OPCODECREATE create;
        create.mIMesh = &mesh_;
        model_.Build(create);
    }
    BuiltModel(const BuiltModel&) = delete;
    BuiltModel& operator=(const BuiltModel&) = delete;

    const Opcode::Model& Model() const { return model_; }
    Opcode::Model& Model() { return model_; }

  private:
    Opcode::MeshInterface mesh_;
    Opcode::Model model_;
};

using Models = std::vector<std::unique_ptr<BuiltModel>>;

Models Build(const std::vector<SceneMesh>& meshes) {
    Models models;
    for (const SceneMesh& mesh : meshes)
        models.push_back(std::make_unique<BuiltModel>(mesh));
    return models;
}

/// Keeps the contact region, as a host does.
void Include(const IceMaths::Point& point, void* sum) {
    *static_cast<float*>(sum) += point.x + point.y + point.z;
}

std::size_t QueryAll(Opcode::AABBTreeCollider& collider, const Models& a, const Models& b) {
    std::size_t pairs = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        Opcode::BVTCache cache;
        cache.Model0 = &a[i]->Model();
        cache.Model1 = &b[i]->Model();
        collider.Collide(cache);
        pairs += collider.GetNbPairs();
    }
    return pairs;
}

void Report(benchmark::State& state, const Scene& scene, std::size_t pairs) {
    if (pairs != scene.touchingPairs)
        state.SkipWithError((std::to_string(pairs) + " touching pairs instead of " +
                             std::to_string(scene.touchingPairs))
                                .c_str());
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(scene.a.size()));
    state.counters["touching"] = static_cast<double>(pairs);
}

void Warm(benchmark::State& state, const Scene& scene) {
    const Models a = Build(scene.a);
    const Models b = Build(scene.b);
    Opcode::AABBTreeCollider collider;
    float sum = 0;
    collider.SetContactCallback(&Include, &sum);
    std::size_t pairs = QueryAll(collider, a, b);
    for (auto _ : state)
        pairs = QueryAll(collider, a, b);
    benchmark::DoNotOptimize(sum);
    Report(state, scene, pairs);
}

void Cold(benchmark::State& state, const Scene& scene) {
    Opcode::AABBTreeCollider collider;
    float sum = 0;
    collider.SetContactCallback(&Include, &sum);
    std::size_t pairs = 0;
    for (auto _ : state)
        pairs = QueryAll(collider, Build(scene.a), Build(scene.b));
    benchmark::DoNotOptimize(sum);
    Report(state, scene, pairs);
}

double TrianglesOf(const Scene& scene) {
    std::size_t count = 0;
    for (const auto* meshes : {&scene.a, &scene.b})
        for (const SceneMesh& mesh : *meshes)
            count += mesh.triangles.size();
    return static_cast<double>(count);
}

Models BuildWhole(const std::vector<SceneMesh>& meshes) {
    Models models = Build(meshes);
    for (const auto& model : models)
        model->Model().BuildWholeTree();
    return models;
}

void WholeTrees(benchmark::State& state, const Scene& scene) {
    // Once before counting, for the memory that builds share.
    BuildWhole(scene.a);
    BuildWhole(scene.b);
    const std::size_t before = kycb::bench::LiveHeapBytes();
    std::size_t held = 0;
    for (auto _ : state) {
        const Models a = BuildWhole(scene.a);
        const Models b = BuildWhole(scene.b);
        held = kycb::bench::LiveHeapBytes() - before;
    }
    const double triangles = TrianglesOf(scene);
    state.counters["bytes/triangle"] = static_cast<double>(held) / triangles;
    state.counters["s/triangle"] = benchmark::Counter(
        triangles, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    const std::vector<Scene> scenes = kycb::bench::OpcodeScenes();
    for (const Scene& scene : scenes) {
        benchmark::RegisterBenchmark((scene.name + "/warm").c_str(), Warm, scene);
        benchmark::RegisterBenchmark((scene.name + "/cold").c_str(), Cold, scene);
        benchmark::RegisterBenchmark((scene.name + "/build").c_str(), WholeTrees, scene);
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
