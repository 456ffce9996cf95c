// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/platform/BoundingBox3d.h"
#include "KYCollisionBase/platform/HoopsModelType.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace KYCOLLISION::LOGIC {
class IModelDataSource;
}
namespace KYCOLLISION::Rule {
class KyCollisionRuleMgr;
}
namespace KYCOLLISION::RESULT {
class KyResultItem;
struct CExistingHole;
}  // namespace KYCOLLISION::RESULT

namespace KYCOLLISION::MODEL {

class FloorModelInfo;
class ObjectModelInfo;
class WorkSetModelInfo;

/// One project (model) of a work set: its floors, in ascending name order.
///
/// An operation that takes a floor key acts on the floor of that name, and only when the key's id
/// is this project's own; otherwise it does nothing and returns 0 or null.
class KYCB_API ProjectModelInfo {
  public:
    using FloorKey = std::pair<int, std::wstring>;

    /// The name is accepted for the host's convenience and not kept.
    ProjectModelInfo(int id, std::wstring name);
    virtual ~ProjectModelInfo();
    ProjectModelInfo(const ProjectModelInfo&) = delete;
    ProjectModelInfo& operator=(const ProjectModelInfo&) = delete;

    int GetProjId() const { return id_; }

    /// The work set that holds this project, or null; a plain back pointer.
    WorkSetModelInfo* GetBelongWorkSetModel() const { return workSet_; }
    void SetBelongWorkSetModel(WorkSetModelInfo* workSet) { workSet_ = workSet; }

    /// Stores `floor` under `name` (compared exactly) and takes it over; a floor is appended once
    /// only. Another floor that stood under the name is deleted.
    void AppendFloor(std::wstring name, FloorModelInfo* floor);

    /// The floor stored under `name`, or null.
    FloorModelInfo* GetFloorModel(std::wstring name) const;

    /// All floors by the name they were stored under.
    const std::map<std::wstring, FloorModelInfo*>& GetFloors() const { return floors_; }

    BASECORE::HOOPS::HoopsModelType GetModelType() const { return modelType_; }
    void SetModelType(BASECORE::HOOPS::HoopsModelType type) { modelType_ = type; }

    /// Whether the host can report existing openings of this project; true at first.
    bool IsSupportHole() const { return supportHole_; }
    void SetSupportHole(bool support) { supportHole_ = support; }

    /// Deletes all floors. Components of other projects forget those of this one.
    void ReleaseModel();

    // What the work set hands down and the floors do; see ICollisionModel and FloorModelInfo.

    /// Appends the components of all floors that are near `box`.
    void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                     std::vector<ObjectModelInfo*>& found);
    ObjectModelInfo* GetObjectModelInfo(const FloorKey& floorKey, std::wstring guid) const;
    /// Lets the components of one floor, or of all, list their neighbours anew.
    void AnalyseBoxRelated(const FloorKey& floorKey);
    void AnalyseBoxRelated();
    void CollisionCheck(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                        int& checkedCount);
    int GetAllObjectNum(const FloorKey& floorKey);
    void ClearCollisionResultData();
    void ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules);
    /// The caller owns the items.
    void GetFloorCollisionResult(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                 std::vector<RESULT::KyResultItem*>& items);
    void GetFloorExistingHoles(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                               std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const;
    int GetFloorResultTempNum(LOGIC::IModelDataSource* source, const FloorKey& floorKey);

  private:
    void DeleteFloors();
    FloorModelInfo* FindFloor(const FloorKey& floorKey) const;

    int id_;
    WorkSetModelInfo* workSet_ = nullptr;
    std::map<std::wstring, FloorModelInfo*> floors_;
    BASECORE::HOOPS::HoopsModelType modelType_ = BASECORE::HOOPS::HoopsModelTypeDefault;
    bool supportHole_ = true;
};

}  // namespace KYCOLLISION::MODEL
