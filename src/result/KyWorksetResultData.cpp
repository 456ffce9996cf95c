// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyWorksetResultData.h"

#include "KYCollisionBase/result/KyResultItem.h"

#include <algorithm>
#include <utility>

#include "result/ComponentRank.h"
#include "result/ResultXml.h"

namespace KYCOLLISION::RESULT {

std::unique_ptr<KyWorksetResultData> KyWorksetResultData::Create(KyModelType modelType,
                                                                 int modelId) {
    return std::unique_ptr<KyWorksetResultData>(new KyWorksetResultData(modelType, modelId));
}

KyWorksetResultData::KyWorksetResultData(KyModelType modelType, int modelId)
    : modelInfo_{modelType, modelId} {}

KyWorksetResultData::~KyWorksetResultData() = default;
KyWorksetResultData::KyWorksetResultData(const KyWorksetResultData&) = default;
KyWorksetResultData& KyWorksetResultData::operator=(const KyWorksetResultData&) = default;

void KyWorksetResultData::ReleaseResults() {
    projects_.clear();
    timeStamp_.clear();
}

const SKyModelInfo& KyWorksetResultData::GetModelInfo() const {
    return modelInfo_;
}

void KyWorksetResultData::SetModelInfo(const SKyModelInfo& modelInfo) {
    modelInfo_ = modelInfo;
}

void KyWorksetResultData::GetResultItems(const FloorKey& floorKey,
                                         std::vector<KyResultItem*>& items) {
    const KyProjectResultData* project = GetProjectResults(floorKey.first);
    if (!project) return;
    std::vector<KyResultItem*> floorItems;
    project->GetResultItems_byAtt(floorKey, floorItems);
    items.insert(items.end(), floorItems.begin(), floorItems.end());
}

void KyWorksetResultData::GetResultItems(const std::vector<SWorkSetFloorInfo>& selectors,
                                         bool byFloorList, std::vector<ResultGroup>& groups,
                                         bool sortByPriority) {
    for (const SWorkSetFloorInfo& selector : selectors) {
        std::vector<KyResultItem*> items;
        if (byFloorList) {
            for (const FloorKey& floorKey : selector.floorList)
                GetResultItems(floorKey, items);
        } else {
            SelectByHeight(selector, items);
        }
        if (sortByPriority) kycb::SortByPriority(items);
        groups.emplace_back(selector, std::move(items));
    }
}

void KyWorksetResultData::GetAllResultItems(std::map<FloorKey, std::vector<KyResultItem*>>& all) {
    for (const auto& [id, project] : projects_)
        project->GetAllResultItems(all);
}

void KyWorksetResultData::RemoveOldResults(const FloorKey& floorKey) {
    if (KyProjectResultData* project = GetProjectResults(floorKey.first)) {
        project->RemoveOldResults(floorKey);
    }
}

void KyWorksetResultData::AppendNewResults(const FloorKey& floorKey,
                                           std::vector<KyResultItem*> items) {
    GetOrCreateProject(floorKey.first).AppendNewResults(floorKey, std::move(items));
}

void KyWorksetResultData::InitByResults(const std::vector<KyResultItem*>& items) {
    for (KyResultItem* item : items)
        AppendResultItem(item);
}

void KyWorksetResultData::InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                                      const MODEL::ICollisionModel* model) {
    for (const auto& [id, project] : projects_)
        project->InitResultItemAttHeightInfo(source, model);
}

void KyWorksetResultData::ReCatulateAxisInfo(const LOGIC::IModelDataSource* source) {
    if (!source) return;
    for (const auto& [id, project] : projects_)
        project->ReCatulateAxisInfo(source);
}

bool KyWorksetResultData::SerializeToXml(std::wstring path) {
    kycb::ResultXmlWriter writer(path);
    std::vector<KyResultItem*> items;
    for (const auto& [id, project] : projects_) {
        writer.BeginProject(id);
        for (const auto& [name, floor] : project->floors_) {
            writer.BeginFloor(name);
            floor->GetResultItems_byAtt(items);
            for (const KyResultItem* item : items)
                writer.WriteItem(*item);
        }
    }
    errorText_ = writer.Commit().text;
    return errorText_.empty();
}

bool KyWorksetResultData::InitByXml(std::wstring path) {
    kycb::ResultXmlReader reader;
    try {
        errorText_ = reader
                         .Read(path,
                               [this](std::unique_ptr<KyResultItem> item) {
                                   AppendResultItem(item.get());
                                   static_cast<void>(item.release());
                               })
                         .text;
    } catch (...) {
        errorText_ = reader.GetErrorText();
        throw;
    }
    return errorText_.empty();
}

void KyWorksetResultData::SetTimeStamp(std::wstring timeStamp) {
    timeStamp_ = std::move(timeStamp);
}

std::wstring KyWorksetResultData::GetTimeStamp() {
    return timeStamp_;
}

KyProjectResultData* KyWorksetResultData::GetProjectResults(int projectId) const {
    const auto found = projects_.find(projectId);
    return found == projects_.end() ? nullptr : found->second.get();
}

bool KyWorksetResultData::AppendResultItem(KyResultItem* item) {
    if (!item) return false;
    return GetOrCreateProject(item->GetProjectA()).AppendResultItem(item);
}

const std::wstring& KyWorksetResultData::GetErrorText() const {
    return errorText_;
}

KyProjectResultData& KyWorksetResultData::GetOrCreateProject(int projectId) {
    std::shared_ptr<KyProjectResultData>& project = projects_[projectId];
    if (!project) project.reset(new KyProjectResultData(projectId));
    return *project;
}

void KyWorksetResultData::SelectByHeight(const SWorkSetFloorInfo& selector,
                                         std::vector<KyResultItem*>& items) const {
    for (const auto& [id, project] : projects_) {
        if (std::find(selector.projectIds.begin(), selector.projectIds.end(), id) ==
            selector.projectIds.end()) {
            continue;
        }
        project->GetResultItems_byHeight(selector.lowerHeight, selector.upperHeight, items);
    }
}

}  // namespace KYCOLLISION::RESULT
