// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyFloorResultData.h"

#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <utility>

#include "result/FloorAxes.h"
#include "result/ItemPool.h"

namespace KYCOLLISION::RESULT {

KyFloorResultData::KyFloorResultData(std::wstring floorName)
    : floorName_(std::move(floorName)), pool_(std::make_shared<kycb::ItemPool>()) {}

KyFloorResultData::~KyFloorResultData() = default;
KyFloorResultData::KyFloorResultData(const KyFloorResultData& other) = default;
KyFloorResultData& KyFloorResultData::operator=(const KyFloorResultData& other) = default;

std::wstring KyFloorResultData::GetFloorName() const {
    return floorName_;
}

void KyFloorResultData::ReleaseResults() {
    items_.clear();
    pool_ = std::make_shared<kycb::ItemPool>();
}

void KyFloorResultData::AppendNewResults(std::vector<KyResultItem*> items) {
    std::erase(items, nullptr);
    pool_ = kycb::ItemPool::Replace(std::move(pool_), items);
    items_ = std::move(items);
}

bool KyFloorResultData::AppendResultItem(KyResultItem* item) {
    if (!item) return false;
    pool_->Reserve();
    items_.push_back(item);
    pool_->Add(item);
    return true;
}

void KyFloorResultData::GetResultItems_byAtt(std::vector<KyResultItem*>& items) const {
    items = items_;
}

void KyFloorResultData::GetResultItems_byHeight(double lower, double upper,
                                                std::vector<KyResultItem*>& items) const {
    for (KyResultItem* item : items_) {
        const double height = std::get<2>(item->GetClashPoint());
        if (lower < height && height <= upper) items.push_back(item);
    }
}

void KyFloorResultData::InitResultItemAttHeightInfo(const LOGIC::IModelDataSource* source,
                                                    const MODEL::ICollisionModel* model) {
    for (KyResultItem* item : items_)
        item->InitResultItemAttHeightInfo(source, model);
}

void KyFloorResultData::ReCatulateAxisInfo(const LOGIC::IModelDataSource* source, int projectId) {
    if (!source) return;
    kycb::FloorAxes axes;
    source->GetFloorAxisInfo(projectId, floorName_, axes.items, axes.tree);
    for (KyResultItem* item : items_)
        item->ReCatulateAxisInfo(axes.tree);
}

}  // namespace KYCOLLISION::RESULT
