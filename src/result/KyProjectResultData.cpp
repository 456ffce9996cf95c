// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyProjectResultData.h"

#include "KYCollisionBase/result/KyResultItem.h"

#include <utility>

namespace KYCOLLISION::RESULT {

KyProjectResultData::KyProjectResultData(int projectId) : projectId_(projectId) {}
KyProjectResultData::~KyProjectResultData() = default;
KyProjectResultData::KyProjectResultData(const KyProjectResultData&) = default;
KyProjectResultData& KyProjectResultData::operator=(const KyProjectResultData&) = default;

int KyProjectResultData::GetProjectId() const {
    return projectId_;
}

void KyProjectResultData::ReleaseResults() {
    floors_.clear();
}

void KyProjectResultData::RemoveOldResults(const FloorKey& floorKey) {
    if (floorKey.first == projectId_) floors_.erase(floorKey.second);
}

void KyProjectResultData::AppendNewResults(const FloorKey& floorKey,
                                           std::vector<KyResultItem*> items) {
    if (floorKey.first != projectId_) return;
    GetOrCreateFloor(floorKey.second).AppendNewResults(std::move(items));
}

void KyProjectResultData::GetAllResultItems(
    std::map<FloorKey, std::vector<KyResultItem*>>& all) const {
    for (const auto& [name, floor] : floors_) {
        floor->GetResultItems_byAtt(all[FloorKey(projectId_, name)]);
    }
}

void KyProjectResultData::GetResultItems_byAtt(const FloorKey& floorKey,
                                               std::vector<KyResultItem*>& items) const {
    if (floorKey.first != projectId_) return;
    const auto found = floors_.find(floorKey.second);
    if (found != floors_.end()) found->second->GetResultItems_byAtt(items);
}

void KyProjectResultData::GetResultItems_byHeight(double lower, double upper,
                                                  std::vector<KyResultItem*>& items) const {
    for (const auto& [name, floor] : floors_)
        floor->GetResultItems_byHeight(lower, upper, items);
}

bool KyProjectResultData::AppendResultItem(KyResultItem* item) {
    if (!item) return false;
    return GetOrCreateFloor(item->GetFloorA()).AppendResultItem(item);
}

void KyProjectResultData::InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                                      const MODEL::ICollisionModel* model) {
    for (const auto& [name, floor] : floors_)
        floor->InitResultItemAttHeightInfo(source, model);
}

void KyProjectResultData::ReCatulateAxisInfo(const LOGIC::IModelDataSource* source) {
    for (const auto& [name, floor] : floors_)
        floor->ReCatulateAxisInfo(source, projectId_);
}

KyFloorResultData& KyProjectResultData::GetOrCreateFloor(const std::wstring& floorName) {
    std::shared_ptr<KyFloorResultData>& floor = floors_[floorName];
    if (!floor) floor = std::make_shared<KyFloorResultData>(floorName);
    return *floor;
}

}  // namespace KYCOLLISION::RESULT
