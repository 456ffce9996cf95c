// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/logic/CCollisionCheck.h"

#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/ICollisionModel.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyResultItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <atomic>
#include <chrono>
#include <optional>
#include <set>
#include <utility>

#include "logic/StopRequest.h"
#include "model/MeshBudget.h"
#include "platform/Pause.h"

namespace kycb::logic {

bool IsStopRequested() noexcept {
    return std::atomic_ref<bool>(KYCOLLISION::LOGIC::CCollisionCheck::s_bStopCheck)
        .load(std::memory_order_relaxed);
}

}  // namespace kycb::logic

namespace KYCOLLISION::LOGIC {

namespace {

using MODEL::ICollisionModel;
using RESULT::KyResultItem;

// After each floor the host's window gets its turn.
constexpr std::chrono::milliseconds kRestAfterFloor{10};

// The polled fields stay the plain fields that the contract names; only the access is atomic. No
// order between them is promised, so none is paid for.
template <class T>
void Publish(T& field, T value) {
    std::atomic_ref<T>(field).store(value, std::memory_order_relaxed);
}
template <class T>
T Poll(T& field) {
    return std::atomic_ref<T>(field).load(std::memory_order_relaxed);
}

// Result items on their way to the caller; what does not get there is deleted.
struct ItemsInTransit {
    std::vector<KyResultItem*> items;

    ItemsInTransit() = default;
    ItemsInTransit(const ItemsInTransit&) = delete;
    ItemsInTransit& operator=(const ItemsInTransit&) = delete;
    ~ItemsInTransit() {
        for (KyResultItem* item : items) {
            delete item;
        }
    }
};

}  // namespace

bool CCollisionCheck::s_bStopCheck = false;

CCollisionCheck::CCollisionCheck() = default;

CCollisionCheck::~CCollisionCheck() {
    Release();
}

void CCollisionCheck::Release() {
    dataSource_.reset();
    model_.reset();
    rules_.reset();
    ResetCheckStatus();
}

void CCollisionCheck::SetDataSource(IModelDataSource* source) {
    dataSource_.reset();
    dataSource_.reset(source);
}

void CCollisionCheck::SetCollisionRule(Rule::KyCollisionRuleMgr* rules) {
    rules_.reset();
    rules_.reset(rules);
}

bool CCollisionCheck::InitCollisionModel() {
    if (!dataSource_) return false;
    if (model_) model_->ReleaseModel();
    ICollisionModel* created = dataSource_->CreateCollisionModel();
    // A host may hand the emptied model out again, newly filled.
    if (created != model_.get()) model_.reset(created);
    if (model_) model_->AnalyseBoxRelated();
    return model_ != nullptr;
}

bool CCollisionCheck::IsCheckEnvironmentOk() {
    return dataSource_ && model_;
}

void CCollisionCheck::AnalyseBoxRelated() {
    if (model_) model_->AnalyseBoxRelated();
}

int CCollisionCheck::GetAllObjectNum(const std::vector<FloorKey>& floorKeys) {
    if (!model_) return 0;
    int count = 0;
    for (const FloorKey& key : floorKeys) {
        count += model_->GetAllObjectNum(key);
    }
    return count;
}

void CCollisionCheck::ResetCollisionTempData() {
    if (!model_) return;
    model_->ClearCollisionResultData();
    model_->ResetModelByCollisionRule(rules_.get());
}

ECheckReturn CCollisionCheck::CollisionCheck(const std::vector<SCollisionFloor>& floors) {
    if (!model_) return CHECK_NO_MODEL;
    if (!rules_) return CHECK_NO_RULE;
    if (!dataSource_) return CHECK_NO_DATASOURCE;
    ResetCheckStatus();
    ResetCollisionTempData();
    std::optional<kycb::model::MeshBudget> budget;
    const auto* workSet = dynamic_cast<const MODEL::WorkSetModelInfo*>(model_.get());
    if (meshMemoryLimit_ != 0 && workSet) budget.emplace(*workSet, meshMemoryLimit_);
    for (const SCollisionFloor& floor : floors) {
        if (CheckFloor(floor) == CHECK_STOPPED) return CHECK_STOPPED;
    }
    Publish(successDone_, true);
    return CHECK_SUCCESS;
}

ECheckReturn CCollisionCheck::CheckFloor(const SCollisionFloor& floor) {
    const std::vector<FloorKey> keys = floor.floorKeys;
    SetCurCheckFloor(floor.name);
    Publish(allCheckObjectNum_, GetAllObjectNum(keys));
    Publish(checkedObjectNum_, 0);
    for (const FloorKey& key : keys) {
        model_->CollisionCheck(dataSource_.get(), key, checkedObjectNum_);
        if (kycb::logic::IsStopRequested()) return CHECK_STOPPED;
    }
    kycb::platform::Pause(kRestAfterFloor);
    return CHECK_SUCCESS;
}

int CCollisionCheck::GetAllCheckObjectNum() {
    return Poll(allCheckObjectNum_);
}

int CCollisionCheck::GetCheckedObjectNum() {
    return Poll(checkedObjectNum_);
}

bool CCollisionCheck::CheckIsSuccessDone() {
    return Poll(successDone_);
}

void CCollisionCheck::ResetCheckStatus() {
    Publish(successDone_, false);
    SetCurCheckFloor({});
    Publish(allCheckObjectNum_, 0);
    Publish(checkedObjectNum_, 0);
}

std::wstring CCollisionCheck::GetCurCheckFloor() {
    const std::lock_guard lock(curCheckFloorLock_);
    return curCheckFloor_;
}

void CCollisionCheck::SetCurCheckFloor(const std::wstring& name) {
    const std::lock_guard lock(curCheckFloorLock_);
    curCheckFloor_ = name;
}

void CCollisionCheck::GetCollisionResult(const std::vector<SCollisionFloor>& floors,
                                         std::map<FloorKey, std::vector<KyResultItem*>>& results) {
    if (!model_) return;
    std::set<FloorKey> filedHere;
    for (const SCollisionFloor& floor : floors) {
        for (const FloorKey& key : floor.floorKeys) {
            ItemsInTransit found;
            model_->GetFloorCollisionResult(dataSource_.get(), key, found.items);
            if (found.items.empty()) continue;
            const bool wasFiledHere = !filedHere.insert(key).second;
            results[key].swap(found.items);
            // What stood there before this call is the caller's; what this call filed, nobody has
            // seen, and it goes.
            if (!wasFiledHere) found.items.clear();
        }
    }
}

void CCollisionCheck::GetExistingHoles(
    const std::vector<SCollisionFloor>& floors,
    std::map<FloorKey, std::vector<std::shared_ptr<RESULT::CExistingHole>>>& holes) {
    if (!model_) return;
    for (const SCollisionFloor& floor : floors) {
        for (const FloorKey& key : floor.floorKeys) {
            std::vector<std::shared_ptr<RESULT::CExistingHole>> found;
            model_->GetFloorExistingHoles(dataSource_.get(), key, found);
            if (!found.empty()) holes[key] = std::move(found);
        }
    }
}

int CCollisionCheck::GetResultTempNum(const std::vector<FloorKey>& floorKeys) {
    if (!model_) return 0;
    int count = 0;
    for (const FloorKey& key : floorKeys) {
        count += model_->GetFloorResultTempNum(dataSource_.get(), key);
    }
    return count;
}

}  // namespace KYCOLLISION::LOGIC
