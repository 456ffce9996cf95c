// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/ProjectModelInfo.h"

#include "KYCollisionBase/model/FloorModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"

#include <utility>

namespace KYCOLLISION::MODEL {

ProjectModelInfo::ProjectModelInfo(int id, std::wstring /*name*/) : id_(id) {}

ProjectModelInfo::~ProjectModelInfo() {
    DeleteFloors();
}

void ProjectModelInfo::AppendFloor(std::wstring name, FloorModelInfo* floor) {
    FloorModelInfo*& slot = floors_[std::move(name)];
    FloorModelInfo* replaced = std::exchange(slot, floor);
    if (floor) floor->SetBelongProject(this);
    if (!replaced || replaced == floor) return;
    replaced->ReleaseModel();  // while the rest of the tree can be told
    delete replaced;
}

FloorModelInfo* ProjectModelInfo::GetFloorModel(std::wstring name) const {
    const auto found = floors_.find(name);
    return found == floors_.end() ? nullptr : found->second;
}

FloorModelInfo* ProjectModelInfo::FindFloor(const FloorKey& floorKey) const {
    if (floorKey.first != id_) return nullptr;
    const auto found = floors_.find(floorKey.second);
    return found == floors_.end() ? nullptr : found->second;
}

void ProjectModelInfo::ReleaseModel() {
    if (workSet_) {
        std::set<const AttCategoryModelInfo*> leaving;
        for (const auto& [name, floor] : floors_) {
            if (floor) leaving.merge(floor->CategorySet());
        }
        if (!leaving.empty()) workSet_->ForgetComponentsOf(leaving);
    }
    DeleteFloors();
}

void ProjectModelInfo::DeleteFloors() {
    for (const auto& [name, floor] : std::exchange(floors_, {})) {
        delete floor;
    }
}

void ProjectModelInfo::QueryEntity(const KYTOOLS::GRAPH::BoundingBox3d& box,
                                   std::vector<ObjectModelInfo*>& found) {
    for (const auto& [name, floor] : floors_) {
        if (floor) floor->QueryEntity(box, found);
    }
}

ObjectModelInfo* ProjectModelInfo::GetObjectModelInfo(const FloorKey& floorKey,
                                                      std::wstring guid) const {
    const FloorModelInfo* floor = FindFloor(floorKey);
    return floor ? floor->GetObjectModelInfo(std::move(guid)) : nullptr;
}

void ProjectModelInfo::AnalyseBoxRelated(const FloorKey& floorKey) {
    if (FloorModelInfo* floor = FindFloor(floorKey)) floor->AnalyseBoxRelated();
}

void ProjectModelInfo::AnalyseBoxRelated() {
    for (const auto& [name, floor] : floors_) {
        if (floor) floor->AnalyseBoxRelated();
    }
}

void ProjectModelInfo::CollisionCheck(LOGIC::IModelDataSource* source, const FloorKey& floorKey,
                                      int& checkedCount) {
    if (FloorModelInfo* floor = FindFloor(floorKey)) floor->CollisionCheck(source, checkedCount);
}

int ProjectModelInfo::GetAllObjectNum(const FloorKey& floorKey) {
    FloorModelInfo* floor = FindFloor(floorKey);
    return floor ? floor->GetAllObjectNum() : 0;
}

void ProjectModelInfo::ClearCollisionResultData() {
    for (const auto& [name, floor] : floors_) {
        if (floor) floor->ClearCollisionResultData();
    }
}

void ProjectModelInfo::ResetModelByCollisionRule(Rule::KyCollisionRuleMgr* rules) {
    for (const auto& [name, floor] : floors_) {
        if (floor) floor->ResetModelByCollisionRule(rules);
    }
}

void ProjectModelInfo::GetFloorCollisionResult(LOGIC::IModelDataSource* source,
                                               const FloorKey& floorKey,
                                               std::vector<RESULT::KyResultItem*>& items) {
    if (FloorModelInfo* floor = FindFloor(floorKey)) floor->GetFloorCollisionResult(source, items);
}

void ProjectModelInfo::GetFloorExistingHoles(
    LOGIC::IModelDataSource* source, const FloorKey& floorKey,
    std::vector<std::shared_ptr<RESULT::CExistingHole>>& holes) const {
    if (const FloorModelInfo* floor = FindFloor(floorKey)) {
        floor->GetFloorExistingHoles(source, holes);
    }
}

int ProjectModelInfo::GetFloorResultTempNum(LOGIC::IModelDataSource* source,
                                            const FloorKey& floorKey) {
    FloorModelInfo* floor = FindFloor(floorKey);
    return floor ? floor->GetFloorResultTempNum(source) : 0;
}

}  // namespace KYCOLLISION::MODEL
