// SPDX-License-Identifier: Apache-2.0
// A whole run over a synthetic building of the given number of components, phase by phase. Prints
// one figure a line, "name value"; times are CPU seconds. bench/whole_run reads it.
#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/CollisionAlgorithm.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/opcode/AABBTreeCollider.h"
#include "KYCollisionBase/opcode/Model.h"
#include "KYCollisionBase/platform/HostServices.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <malloc.h>

#include "SyntheticBuilding.h"
#include "platform/ProcessInfo.h"

namespace {

using namespace KYCOLLISION;
using kycb::bench::BuildingSource;
using kycb::bench::SyntheticBuilding;
using MODEL::ObjectModelInfo;

void Print(const char* name, double value) {
    std::cout << name << ' ' << value << std::endl;
}

// Larger files (in bytes) are refused by the library's reader. This holds 1.8 million results, six
// times those of 100,000 components of this building.
constexpr std::uintmax_t kLargestLoaded = std::uintmax_t{1} << 30;

class ResultData : public RESULT::KyWorksetResultData {
  public:
    ResultData() : KyWorksetResultData(KyModelType(1), 1) {}
};

/// Times what is done between two marks.
class PhaseClock {
  public:
    void Mark(const char* phase) {
        const std::clock_t now = std::clock();
        Print(phase, static_cast<double>(now - last_) / CLOCKS_PER_SEC);
        last_ = std::clock();
    }
    void Skip() { last_ = std::clock(); }

  private:
    std::clock_t last_ = std::clock();
};

double HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

/// FNV-1a over what was found, in its order.
class Checksum {
  public:
    void Add(const std::wstring& text) {
        for (const wchar_t c : text) {
            Add(static_cast<std::uint64_t>(c));
        }
        Add(std::uint64_t{0xFFFF});
    }
    void Add(std::uint64_t value) { sum_ = (sum_ ^ value) * 0x100000001B3U; }
    std::uint64_t Sum() const { return sum_; }

  private:
    std::uint64_t sum_ = 0xCBF29CE484222325U;
};

template <class Visitor>
void VisitObjects(const MODEL::WorkSetModelInfo& model, const Visitor& visit) {
    for (const auto& [id, project] : model.GetProjects()) {
        for (const auto& [name, floor] : project->GetFloors()) {
            for (const auto& [path, category] : floor->GetCategories()) {
                for (const auto& [guid, obj] : category->GetObjects()) {
                    visit(*obj);
                }
            }
        }
    }
}

/// A pair that the check tests, with the body offsets.
struct TestedPair {
    ObjectModelInfo* a;
    ObjectModelInfo* b;
    int offsetA = 0;
    int offsetB = 0;
};

/// A pair of meshes that the check tests.
struct MeshPair {
    Opcode::Model* a;
    Opcode::Model* b;
};

Rule::KyCollisionRuleItem* RuleOf(const ObjectModelInfo& obj) {
    return obj.GetBelongCategoryModel()->GetCollisionRuleItem();
}

bool IsFilteredOut(const ObjectModelInfo& obj, const ObjectModelInfo& asker,
                   LOGIC::IModelDataSource& source) {
    const auto* filter = dynamic_cast<const Rule::KyAttrRangeFilter*>(RuleOf(asker)->GetFilter());
    double diameter = 0.0;
    return filter && obj.GetBelongCategoryModel()->IsDiameterFiltered() &&
           obj.GetPipeGCZJ(&source, diameter) && !filter->IsMeetCondition(diameter);
}

/// Whether `a` holds a clash with `b` already when its turn comes: then `b` had its turn before.
bool IsRecordedBefore(const ObjectModelInfo& a, const ObjectModelInfo& b,
                      const std::map<const ObjectModelInfo*, std::size_t>& turns) {
    QNIM::GeometryPrimitiveResource::CQNIMPosition point;
    return turns.at(&b) < turns.at(&a) &&
           a.IsHadCollisionWith(const_cast<ObjectModelInfo*>(&b), point);
}

/// The pairs that the check has tested, by its rules read literally; the building has no related
/// components, and its rules exclude no kind.
std::vector<TestedPair> TestedPairs(const MODEL::WorkSetModelInfo& model,
                                    LOGIC::IModelDataSource& source) {
    std::map<const ObjectModelInfo*, std::size_t> turns;
    VisitObjects(model, [&](ObjectModelInfo& obj) { turns.emplace(&obj, turns.size()); });
    std::vector<TestedPair> pairs;
    VisitObjects(model, [&](ObjectModelInfo& a) {
        if (IsFilteredOut(a, a, source)) return;
        for (ObjectModelInfo* b : a.GetBoxRelatedObjs()) {
            if (IsRecordedBefore(a, *b, turns) || IsFilteredOut(*b, a, source)) continue;
            MODEL::CollisionAlgorithm algorithm(&a, b);
            algorithm.SetDataSource(&source);
            algorithm.SetCollisionMode(RuleOf(a)->GetMode(), RuleOf(*b)->GetMode());
            QNIM::GeometryPrimitiveResource::CQNIMPosition ignored;
            algorithm.CollisionCheck(ignored, ignored);
            TestedPair& pair = pairs.emplace_back(TestedPair{&a, b});
            algorithm.GetBodyOffset(pair.offsetA, pair.offsetB);
        }
    });
    return pairs;
}

void Count(const IceMaths::Point&, void* points) {
    ++*static_cast<std::size_t*>(points);
}

/// How many of the pairs touch.
std::size_t TestMeshes(const std::vector<MeshPair>& pairs) {
    std::size_t touching = 0;
    std::size_t points = 0;
    for (const MeshPair& pair : pairs) {
        Opcode::BVTCache cache;
        cache.Model0 = pair.a;
        cache.Model1 = pair.b;
        Opcode::AABBTreeCollider collider;
        collider.SetFirstContact(false);
        collider.SetTemporalCoherence(false);
        collider.SetContactRegion(Opcode::ContactRegion::kOnly);
        collider.SetContactCallback(&Count, &points);
        if (collider.Collide(cache) && collider.GetContactStatus()) ++touching;
    }
    return touching;
}

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// How long the check of all floors takes beside its mesh tests and the data source's answers.
void CompareCheckWithItsParts(LOGIC::CCollisionCheck& driver, BuildingSource& source,
                              const MODEL::WorkSetModelInfo& model,
                              const std::vector<SCollisionFloor>& floors) {
    const auto releaseMeshes = [&] {
        VisitObjects(model, [](ObjectModelInfo& obj) { obj.ReleaseOpcodeModel(); });
    };
    releaseMeshes();
    const double before = source.SecondsInCheck();
    const auto start = Clock::now();
    driver.CollisionCheck(floors);
    // The driver pauses for 10 ms after each floor.
    const double check = SecondsSince(start) - 0.010 * static_cast<double>(floors.size());
    const double answers = source.SecondsInCheck() - before;
    releaseMeshes();
    const std::vector<TestedPair> tested = TestedPairs(model, source);
    // Search trees are built by the first test that needs them, in the check as well as here.
    releaseMeshes();
    std::vector<MeshPair> pairs;
    for (const TestedPair& pair : tested) {
        pairs.push_back({pair.a->GetOpcodeModel(&source, pair.offsetA),
                         pair.b->GetOpcodeModel(&source, pair.offsetB)});
    }
    const auto startTests = Clock::now();
    const std::size_t touching = TestMeshes(pairs);
    const double tests = SecondsSince(startTests);
    Print("mesh_tests", static_cast<double>(pairs.size()));
    Print("touching", static_cast<double>(touching));
    Print("check_wall", check);
    Print("check_answers", answers);
    Print("check_tests", tests);
}

int Run(std::size_t components) {
    BASETOOLS::SetSysRoot(KYCB_SYSTEM_ROOT);
    const SyntheticBuilding building(components);
    const std::vector<SCollisionFloor> floors = building.Floors();
    const double heapAtStart = HeapBytes();

    LOGIC::CCollisionCheck driver;
    auto* source = new BuildingSource(building);
    driver.SetDataSource(source);
    auto* rules = new Rule::KyCollisionRuleMgr;
    driver.SetCollisionRule(rules);
    if (!rules->InitByXmlString(BuildingSource::RuleText())) return EXIT_FAILURE;

    PhaseClock clock;
    if (!driver.InitCollisionModel()) return EXIT_FAILURE;
    clock.Mark("build_and_neighbours");
    driver.AnalyseBoxRelated();
    clock.Mark("neighbours_again");
    const auto& model = dynamic_cast<const MODEL::WorkSetModelInfo&>(*driver.GetCollisionModel());
    Checksum sum;
    double neighbours = 0;
    VisitObjects(model, [&](const ObjectModelInfo& obj) {
        sum.Add(obj.GetBoxRelatedObjs().size());
        neighbours += static_cast<double>(obj.GetBoxRelatedObjs().size());
    });
    Print("neighbours", neighbours);

    clock.Skip();
    if (driver.CollisionCheck(floors) != LOGIC::CHECK_SUCCESS) return EXIT_FAILURE;
    clock.Mark("check");
    Print("peak_after_check_mb", static_cast<double>(kyclash::PeakMemoryMegabytes()));
    const double heapWithMeshes = HeapBytes();
    VisitObjects(model, [](ObjectModelInfo& obj) { obj.ReleaseOpcodeModel(); });
    const double heapBesideMeshes = HeapBytes();
    Print("heap_beside_meshes", heapBesideMeshes - heapAtStart);
    Print("heap_meshes", heapWithMeshes - heapBesideMeshes);

    clock.Skip();
    std::map<std::pair<int, std::wstring>, std::vector<RESULT::KyResultItem*>> found;
    driver.GetCollisionResult(floors, found);
    ResultData results;
    double items = 0;
    for (auto& [key, list] : found) {
        items += static_cast<double>(list.size());
        for (const RESULT::KyResultItem* item : list) {
            sum.Add(item->GetObjGuidA());
            sum.Add(item->GetObjGuidB());
            sum.Add(item->GetPosition());
            sum.Add(item->GetAxisPos());
        }
        results.AppendNewResults(key, std::move(list));
    }
    clock.Mark("results");
    Print("items", items);
    const std::wstring file = L"whole_run.results.xml";
    if (!results.SerializeToXml(file)) return EXIT_FAILURE;
    clock.Mark("save");
    if (std::filesystem::file_size(file) <= kLargestLoaded) {
        clock.Skip();
        ResultData loaded;
        if (!loaded.InitByXml(file)) return EXIT_FAILURE;
        clock.Mark("load");
    } else {
        Print("load", std::numeric_limits<double>::quiet_NaN());
    }
    Print("peak_mb", static_cast<double>(kyclash::PeakMemoryMegabytes()));
    std::cout << "checksum " << std::hex << sum.Sum() << std::dec << std::endl;

    CompareCheckWithItsParts(driver, *source, model, floors);
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: bench_whole_run COMPONENTS\n";
        return EXIT_FAILURE;
    }
    return Run(std::strtoul(argv[1], nullptr, 10));
}
