// SPDX-License-Identifier: Apache-2.0
// Our neighbour search as a participant of the comparison with other libraries.
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "common.h"

namespace {

using namespace KYCOLLISION::MODEL;

constexpr double kMillimetresPerMetre = 1000.0;
// A neighbour overlaps by 1 mm in height, while the benchmark counts touching boxes: each box is
// raised by half of that at both ends.
constexpr double kHalfInset = 0.5;

/// The host's part: a work set with the boxes as components of seven kinds, in millimetres.
class Building {
  public:
    Building(const std::vector<bench::Box>& boxes, const std::vector<int>& floors) {
        auto* project = new ProjectModelInfo(1, L"project");
        workSet_.AppendProject(1, project);
        for (std::uint32_t i = 0; i < boxes.size(); ++i) {
            FloorAt(*project, floors[i])
                .AppendObject(L"mep", kKinds[i % kKinds.size()], L"", Component(i, boxes[i]));
        }
    }

    /// What is compared: from components with boxes to their lists of neighbours.
    void FindNeighbours() {
        for (const auto& [name, floor] : workSet_.GetProject(1)->GetFloors()) {
            floor->BuildQuadTree();
        }
        workSet_.AnalyseBoxRelated();
    }

    /// Hands every pair out once, the lower number first, as the benchmark asks for it.
    void CollectPairs(std::vector<std::pair<std::uint32_t, std::uint32_t>>& pairs) const {
        for (const auto& [name, floor] : workSet_.GetProject(1)->GetFloors()) {
            for (const auto& [path, kind] : floor->GetCategories()) {
                for (const auto& [guid, component] : kind->GetObjects()) {
                    const std::uint32_t own = NumberOf(*component);
                    for (const ObjectModelInfo* neighbour : component->GetBoxRelatedObjs()) {
                        const std::uint32_t other = NumberOf(*neighbour);
                        if (own < other) pairs.emplace_back(own, other);
                    }
                }
            }
        }
    }

  private:
    static constexpr std::array<const wchar_t*, 7> kKinds = {L"wall", L"column", L"slab",   L"duct",
                                                             L"pipe", L"tray",   L"fitting"};

    static FloorModelInfo& FloorAt(ProjectModelInfo& project, int number) {
        const std::wstring name = std::to_wstring(number);
        FloorModelInfo* floor = project.GetFloorModel(name);
        if (floor == nullptr) {
            floor = new FloorModelInfo(name);
            project.AppendFloor(name, floor);
        }
        return *floor;
    }

    ObjectModelInfo* Component(std::uint32_t number, const bench::Box& box) {
        auto* component = new ObjectModelInfo(boost::any(number));
        component->SetObjGuid(NextGuid());
        std::array<double, 3> low{};
        std::array<double, 3> high{};
        for (std::size_t axis = 0; axis < 3; ++axis) {
            low[axis] = static_cast<double>(box.lo[axis]) * kMillimetresPerMetre;
            high[axis] = static_cast<double>(box.hi[axis]) * kMillimetresPerMetre;
        }
        component->SetBoundingBox(
            {low[0], low[1], low[2] - kHalfInset, high[0], high[1], high[2] + kHalfInset});
        return component;
    }

    // As hosts have them: 36 characters, and no order in which they came.
    std::wstring NextGuid() {
        constexpr std::wstring_view kDigits = L"0123456789abcdef";
        std::wstring guid(36, L'-');
        for (std::size_t i = 0; i < guid.size(); ++i) {
            if (i != 8 && i != 13 && i != 18 && i != 23) guid[i] = kDigits[random_() % 16];
        }
        return guid;
    }

    static std::uint32_t NumberOf(const ObjectModelInfo& component) {
        return *boost::any_cast<std::uint32_t>(&component.GetObjectId());
    }

    std::minstd_rand random_{1};
    WorkSetModelInfo workSet_;
};

/// The benchmark's clock also counts the building of the model, which is the host's and not part of
/// the search. So every run is timed here too: a line "boxes floors seconds" goes to the file that
/// KYCB_BROAD_TIMES names.
class OwnPeer : public bench::BroadPeer {
  public:
    OwnPeer() {
        name = "own";
        const char* file = std::getenv("KYCB_BROAD_TIMES");
        if (file != nullptr) times_.reset(std::fopen(file, "w"));
    }

    void run(const std::vector<bench::Box>& boxes, const std::vector<int>& floors,
             std::vector<std::pair<std::uint32_t, std::uint32_t>>& pairs) override {
        // As in a program that has just begun: what the run before left behind would scatter the
        // lists over the memory.
        malloc_trim(0);
        Building building(boxes, floors);
        const double start = bench::now();
        building.FindNeighbours();
        const double seconds = bench::now() - start;
        const int highest = *std::max_element(floors.begin(), floors.end());
        if (times_) std::fprintf(times_.get(), "%zu %d %.9f\n", boxes.size(), highest + 1, seconds);
        building.CollectPairs(pairs);
    }

  private:
    struct Closing {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closing> times_;
};

const bench::RegisterBroad<OwnPeer> registered;

}  // namespace
