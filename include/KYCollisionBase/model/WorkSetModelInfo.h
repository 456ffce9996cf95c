// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/ICollisionModel.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace KYCOLLISION::MODEL {

class AttCategoryModelInfo;
class FloorModelInfo;
class ProjectModelInfo;

/// The root of the model tree: all projects of the work set, in ascending id order.
///
/// A host builds the tree from the top down: a work set, its projects, their floors, each floor's
/// components, and, after a floor's last component, FloorModelInfo::BuildQuadTree. What was
/// appended belongs to its parent and is deleted with it. The tree cannot be copied.
class KYCB_API WorkSetModelInfo : public ICollisionModel {
  public:
    WorkSetModelInfo();
    ~WorkSetModelInfo() override;
    WorkSetModelInfo(const WorkSetModelInfo&) = delete;
    WorkSetModelInfo& operator=(const WorkSetModelInfo&) = delete;

    /// Stores `project` under `id` and takes it over; a project is appended once only. Another
    /// project that stood under the id is deleted. Lookups by floor key find the project only when
    /// `id` is its own id.
    void AppendProject(int id, ProjectModelInfo* project);

    /// The project stored under `id`, or null.
    ProjectModelInfo* GetProject(int id) const;

    /// All projects by the id they were stored under.
    const std::map<int, ProjectModelInfo*>& GetProjects() const { return projects_; }

    /// Replaces the host's description as a whole; the library only stores it.
    void SetModelInfo(const SKyModelInfo& info);

    // The operations of the root act on all projects, or on the one that the key names.

    void ReleaseModel() override;
    /// Neighbours are sought across floors and projects, in ascending order of their keys.
    void QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                     std::vector<ObjectModelInfo*>& found) override;
    /// Null at once for an empty `guid`.
    ObjectModelInfo* GetObjectModelInfo(const FloorKey& floorKey, std::wstring guid) const override;
    void AnalyseBoxRelated(const FloorKey& floorKey) override;
    void AnalyseBoxRelated() override;
    void CollisionCheck(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                        int& checkedCount) override;
    int GetAllObjectNum(const FloorKey& floorKey) override;
    void ClearCollisionResultData() override;
    void ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules) override;
    void GetFloorCollisionResult(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                 std::vector<RESULT::KyResultItem*>& items) override;
    void GetFloorExistingHoles(
        LOGIC::IModelDataSource* source, const FloorKey& floorKey,
        std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const override;
    int GetFloorResultTempNum(LOGIC::IModelDataSource* source, const FloorKey& floorKey) override;
    const SKyModelInfo& GetModelInfo() const override;
    bool IsSupportHole() const override;

  private:
    friend class AttCategoryModelInfo;
    friend class FloorModelInfo;
    friend class ProjectModelInfo;

    void ForgetComponentsOf(const std::set<const AttCategoryModelInfo*>& leaving);

    std::map<int, ProjectModelInfo*> projects_;
    SKyModelInfo modelInfo_;
};

}  // namespace KYCOLLISION::MODEL
