// SPDX-License-Identifier: Apache-2.0
// One small scene, of which bench/guard counts the instructions: those of RunGuardedPart alone.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/AABBTreeCollider.h"
#include "KYCollisionBase/opcode/MeshInterface.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <cmath>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <hwy/targets.h>

#include "SyntheticBuilding.h"

namespace {
volatile bool partIsOver = false;
}

/// What is counted; its name is what the counter looks for. It comes back from the part, because a
/// function that a jump leaves is not counted.
extern "C" [[gnu::noinline]] void RunGuardedPart(const std::function<void()>& part) {
    part();
    partIsOver = true;
}

namespace {

using namespace KYCOLLISION;
using kycb::bench::BuildingSource;
using kycb::bench::SyntheticBuilding;
using MODEL::ObjectModelInfo;

class ResultData : public RESULT::KyWorksetResultData {
  public:
    ResultData() : KyWorksetResultData(KyModelType(1), 1) {}
};

/// A building with a driver around it.
struct Run {
    explicit Run(std::size_t components) : building(components), floors(building.Floors()) {
        source = new BuildingSource(building);
        driver.SetDataSource(source);
        auto* rules = new Rule::KyCollisionRuleMgr;
        driver.SetCollisionRule(rules);
        rules->InitByXmlString(BuildingSource::RuleText());
        driver.InitCollisionModel();
    }

    MODEL::WorkSetModelInfo& Model() {
        return dynamic_cast<MODEL::WorkSetModelInfo&>(*driver.GetCollisionModel());
    }

    SyntheticBuilding building;
    std::vector<SCollisionFloor> floors;
    LOGIC::CCollisionCheck driver;
    BuildingSource* source;
    std::map<std::pair<int, std::wstring>, std::vector<RESULT::KyResultItem*>> found;
};

void Neighbours() {
    Run run(SyntheticBuilding::kComponentsPerFloor);
    RunGuardedPart([&] {
        for (const auto& [id, project] : run.Model().GetProjects()) {
            for (const auto& [name, floor] : project->GetFloors()) {
                floor->BuildQuadTree();
            }
        }
        run.driver.AnalyseBoxRelated();
    });
}

void Check() {
    Run run(1000);
    RunGuardedPart([&] { run.driver.CollisionCheck(run.floors); });
}

void Results() {
    Run run(1000);
    run.driver.CollisionCheck(run.floors);
    ResultData results;
    RunGuardedPart([&] {
        run.driver.GetCollisionResult(run.floors, run.found);
        for (auto& [key, items] : run.found) {
            results.AppendNewResults(key, std::move(items));
        }
    });
}

void SaveAndLoad() {
    Run run(1000);
    run.driver.CollisionCheck(run.floors);
    run.driver.GetCollisionResult(run.floors, run.found);
    ResultData results;
    for (auto& [key, items] : run.found) {
        results.AppendNewResults(key, std::move(items));
    }
    RunGuardedPart([&] {
        ResultData loaded;
        results.SerializeToXml(L"guard.results.xml");
        loaded.InitByXml(L"guard.results.xml");
    });
}

/// Borrowed by a model.
struct RingMesh {
    static constexpr unsigned kAround = 64;
    static constexpr unsigned kAcross = 32;

    RingMesh(double x, bool upright) {
        for (unsigned i = 0; i < kAround; ++i) {
            for (unsigned j = 0; j < kAcross; ++j) {
                AddPoint(2.0 * std::numbers::pi * i / kAround, 2.0 * std::numbers::pi * j / kAcross,
                         x, upright);
                const unsigned right = (i + 1) % kAround * kAcross;
                const unsigned above = (j + 1) % kAcross;
                triangles.emplace_back(i * kAcross + j, right + j, right + above);
                triangles.emplace_back(i * kAcross + j, right + above, i * kAcross + above);
            }
        }
        mesh.SetPointers(triangles.data(), points.data());
        mesh.SetNbTriangles(static_cast<std::uint32_t>(triangles.size()));
        mesh.SetNbVertices(static_cast<std::uint32_t>(points.size()));
        Opcode::OPCODECREATE create;
        create.mIMesh = &mesh;
        model.Build(create);
    }

    void AddPoint(double turn, double tilt, double x, bool upright) {
        const double radius = 500.0 + 150.0 * std::cos(tilt);
        const double across = radius * std::sin(turn);
        const double away = 150.0 * std::sin(tilt);
        points.push_back({static_cast<float>(x + radius * std::cos(turn)),
                          static_cast<float>(upright ? away : across),
                          static_cast<float>(upright ? across : away)});
    }

    std::vector<IceMaths::Point> points;
    std::vector<IceMaths::IndexedTriangle> triangles;
    Opcode::MeshInterface mesh;
    Opcode::Model model;
};

/// Two rings of 4096 triangles that run through each other.
void Rings() {
    RingMesh a(0.0, false);
    RingMesh b(800.0, true);
    Opcode::BVTCache cache;
    cache.Model0 = &a.model;
    cache.Model1 = &b.model;
    Opcode::AABBTreeCollider collider;
    collider.SetFirstContact(false);
    RunGuardedPart([&] {
        for (int i = 0; i < 10; ++i) {
            collider.Collide(cache);
        }
    });
    if (collider.GetNbPairs() == 0) std::abort();
}

const std::map<std::string, void (*)()> kScenes = {{"neighbours", &Neighbours},
                                                   {"check", &Check},
                                                   {"results", &Results},
                                                   {"save_and_load", &SaveAndLoad},
                                                   {"rings", &Rings}};

}  // namespace

int main(int argc, char** argv) {
    const auto scene = kScenes.find(argc == 2 ? argv[1] : "");
    if (scene == kScenes.end()) {
        // Without a scene: what the counts depend on, and the scenes that there are.
#ifdef __clang__
        std::cout << "clang " << __VERSION__ << '\n';
#else
        std::cout << "g++ " << __VERSION__ << '\n';
#endif
        for (const auto& [name, run] : kScenes) {
            std::cout << name << '\n';
        }
        return EXIT_SUCCESS;
    }
    // One instruction set for all machines, which every one of them has.
    hwy::SetSupportedTargetsForTest(HWY_SSE4);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    BASETOOLS::SetSysRoot(KYCB_SYSTEM_ROOT);
    scene->second();
    return EXIT_SUCCESS;
}
