// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "scenes/Outcome.h"
#include "scenes/Scene.h"
#include "scenes/reference/Kinds.h"
#include "scenes/reference/Plan.h"

namespace kycb::scenes::reference {

/// The reference implementation of a whole check: what the library must answer for a scene.
///
/// It goes the way of the library step by step and as plainly as can be: neighbours by comparing
/// every pair, meshes by testing every triangle against every other in whole numbers, categories
/// and rules by reading tables from the top. It takes nothing from the library but plain data
/// types, and nothing is kept from one step to the next that the library's behaviour does not keep.
/// Speed plays no part; scenes are small.
class Reference {
  public:
    /// The scene must outlive the reference. Lists all neighbours.
    explicit Reference(const Scene& scene);
    Reference(const Reference&) = delete;
    Reference& operator=(const Reference&) = delete;

    /// The neighbours of each component, in their order.
    Neighbours GetNeighbours() const;

    /// One check run, from forgetting the clashes of the last one to the stop or the last floor.
    CheckOutcome Check(const SceneRun& run);

    /// The results of the floors of a run.
    ResultOutcome GetResults(const SceneRun& run);

    /// What a new item for the same two components takes from the model.
    Refreshed Refresh(const ResultFields& item) const;

    /// The openings of the floors of a run.
    HoleOutcome GetHoles(const SceneRun& run) const;

  private:
    struct Kind;
    struct Floor;

    /// A component of the scene as it stands in the model.
    struct Component {
        const SceneComponent* input = nullptr;
        std::size_t index = 0;
        Kind* kind = nullptr;  ///< null for one without a category path, which is in no model
        std::vector<Component*> neighbours;
        std::vector<Record> records;
        std::set<int> meshesKept;  ///< body offsets
    };

    /// A kind on a floor: the components under one path.
    struct Kind {
        std::wstring path;
        AttCategory category;  ///< that of the component that came first
        Floor* floor = nullptr;
        std::vector<Component*> components;  ///< by GUID, then as they came
        const SceneRule* rule = nullptr;
    };

    struct Floor {
        FloorKey key;
        std::map<std::wstring, Kind> kinds;  ///< by path
        Rect plan;
        double minZ = 0.0;
        double maxZ = 0.0;
    };

    void Append(Component& component);
    static std::vector<Component*> ComponentsOf(const Floor& floor);
    const Floor* FindFloor(const FloorKey& key) const;
    std::vector<const Floor*> FloorsOf(const SceneRun& run) const;

    std::vector<Component*> FindNear(const Floor& floor, const SceneComponent& around) const;
    void ListNeighbours(Component& component) const;

    void CheckRequested(const SCollisionFloor& floor, CheckOutcome& outcome);
    void CheckFloor(const FloorKey& key, CheckOutcome& outcome);
    void CheckComponent(Component& a, CheckOutcome& outcome);
    bool IsToBeTested(const Component& a, const Component& b) const;
    void Test(Component& a, Component& b, CheckOutcome& outcome);
    std::optional<test::TestMesh> AskForMesh(Component& component, int bodyOffset,
                                             CheckOutcome& outcome);
    bool ShallStop(const CheckOutcome& outcome) const;

    bool IsPriorityHigher(const Component& a, const Component& b) const;
    bool IsMain(const Component& a, const AttCategory& kindA, const Component& b,
                const AttCategory& kindB) const;
    int PriorityOf(const AttCategory& kind) const;
    int CountMainRecords(const Floor& floor) const;
    std::wstring InlineMinor(const Floor& floor, const std::wstring& guid) const;
    std::vector<ResultFields> ResultsOf(const Floor& floor);
    ResultFields MakeResult(const Floor& floor, const Component& a, const Record& record,
                            const AttCategory& kindB) const;
    bool DisplacesStored(const ResultFields& stored, const AttCategory& kindA,
                         const AttCategory& kindB, const Point& point) const;
    int PrioritySum(const ResultFields& item) const;
    void RefreshSide(const FloorKey& key, const std::wstring& guid, SObjAttInfo& info,
                     std::wstring& height) const;
    Records AllRecords() const;
    static std::vector<KYCOLLISION::RESULT::CExistingHole> HolesOf(const Floor& floor);

    const Scene& scene_;
    std::deque<Component> components_;
    std::map<FloorKey, Floor> floors_;
    std::vector<SceneRule> rules_;
    const SceneRun* run_ = nullptr;
};

}  // namespace kycb::scenes::reference
