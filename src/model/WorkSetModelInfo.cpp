// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/ProjectModelInfo.h"

#include <utility>

namespace KYCOLLISION::MODEL {

WorkSetModelInfo::WorkSetModelInfo() = default;

WorkSetModelInfo::~WorkSetModelInfo() {
    WorkSetModelInfo::ReleaseModel();
}

void WorkSetModelInfo::AppendProject(int id, ProjectModelInfo* project) {
    ProjectModelInfo*& slot = projects_[id];
    ProjectModelInfo* replaced = std::exchange(slot, project);
    if (project) project->SetBelongWorkSetModel(this);
    if (!replaced || replaced == project) return;
    replaced->ReleaseModel();  // while the rest of the tree can be told
    delete replaced;
}

ProjectModelInfo* WorkSetModelInfo::GetProject(int id) const {
    const auto found = projects_.find(id);
    return found == projects_.end() ? nullptr : found->second;
}

void WorkSetModelInfo::SetModelInfo(const SKyModelInfo& info) {
    modelInfo_ = info;
}

void WorkSetModelInfo::ReleaseModel() {
    for (const auto& [id, project] : std::exchange(projects_, {})) {
        delete project;  // everything goes, so nobody is left to be told
    }
}

void WorkSetModelInfo::QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                                   std::vector<ObjectModelInfo*>& found) {
    for (const auto& [id, project] : projects_) {
        if (project) project->QueryEntity(box, found);
    }
}

ObjectModelInfo* WorkSetModelInfo::GetObjectModelInfo(const FloorKey& floorKey,
                                                      std::wstring guid) const {
    if (guid.empty()) return nullptr;
    const ProjectModelInfo* project = GetProject(floorKey.first);
    return project ? project->GetObjectModelInfo(floorKey, std::move(guid)) : nullptr;
}

void WorkSetModelInfo::AnalyseBoxRelated(const FloorKey& floorKey) {
    if (ProjectModelInfo* project = GetProject(floorKey.first)) {
        project->AnalyseBoxRelated(floorKey);
    }
}

void WorkSetModelInfo::AnalyseBoxRelated() {
    for (const auto& [id, project] : projects_) {
        if (project) project->AnalyseBoxRelated();
    }
}

void WorkSetModelInfo::CollisionCheck(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                      int& checkedCount) {
    if (ProjectModelInfo* project = GetProject(floorKey.first)) {
        project->CollisionCheck(source, floorKey, checkedCount);
    }
}

int WorkSetModelInfo::GetAllObjectNum(const FloorKey& floorKey) {
    ProjectModelInfo* project = GetProject(floorKey.first);
    return project ? project->GetAllObjectNum(floorKey) : 0;
}

void WorkSetModelInfo::ClearCollisionResultData() {
    for (const auto& [id, project] : projects_) {
        if (project) project->ClearCollisionResultData();
    }
}

void WorkSetModelInfo::ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules) {
    for (const auto& [id, project] : projects_) {
        if (project) project->ResetModelByCollisionRule(rules);
    }
}

void WorkSetModelInfo::GetFloorCollisionResult(LOGIC::IModelDataSource* source,
                                               const FloorKey& floorKey,
                                               std::vector<RESULT::KyResultItem*>& items) {
    if (ProjectModelInfo* project = GetProject(floorKey.first)) {
        project->GetFloorCollisionResult(source, floorKey, items);
    }
}

void WorkSetModelInfo::GetFloorExistingHoles(
    LOGIC::IModelDataSource* source, const FloorKey& floorKey,
    std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const {
    if (const ProjectModelInfo* project = GetProject(floorKey.first)) {
        project->GetFloorExistingHoles(source, floorKey, holes);
    }
}

int WorkSetModelInfo::GetFloorResultTempNum(LOGIC::IModelDataSource* source,
                                            const FloorKey& floorKey) {
    ProjectModelInfo* project = GetProject(floorKey.first);
    return project ? project->GetFloorResultTempNum(source, floorKey) : 0;
}

const SKyModelInfo& WorkSetModelInfo::GetModelInfo() const {
    return modelInfo_;
}

bool WorkSetModelInfo::IsSupportHole() const {
    for (const auto& [id, project] : projects_) {
        if (project && !project->IsSupportHole()) return false;
    }
    return true;
}

// Neighbour lists and clash records hold plain pointers, also across floors and projects. They must
// not outlive a part of the tree that is deleted while the rest stays.
void WorkSetModelInfo::ForgetComponentsOf(const std::set<const AttCategoryModelInfo*>& leaving) {
    for (const auto& [id, project] : projects_) {
        if (!project) continue;
        for (const auto& [floorName, floor] : project->GetFloors()) {
            if (!floor) continue;
            for (const auto& [path, category] : floor->GetCategories()) {
                for (const auto& [guid, obj] : category->GetObjects()) {
                    obj->ForgetComponentsOf(leaving);
                }
            }
        }
    }
}

}  // namespace KYCOLLISION::MODEL
