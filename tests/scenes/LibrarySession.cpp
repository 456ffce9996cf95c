// SPDX-License-Identifier: Apache-2.0
#include "scenes/LibrarySession.h"

#include "KYCollisionBase/model/ObjectModelInfo.h"
#include "KYCollisionBase/model/WorkSetModelInfo.h"
#include "KYCollisionBase/result/KyResultItem.h"

#include <memory>
#include <stdexcept>

#include "scenes/SceneHost.h"
#include "support/SceneBuilder.h"

namespace kycb::scenes {

using namespace KYCOLLISION::LOGIC;
using namespace KYCOLLISION::MODEL;
using namespace KYCOLLISION::RESULT;

namespace {

ResultFields FieldsOf(const KyResultItem& item) {
    ResultFields fields;
    fields.projectA = item.GetProjectA();
    fields.floorA = item.GetFloorA();
    fields.guidA = item.GetObjGuidA();
    fields.projectB = item.GetProjectB();
    fields.floorB = item.GetFloorB();
    fields.guidB = item.GetObjGuidB();
    fields.position = item.GetPosition();
    fields.clashModel = item.GetClashModel();
    fields.infoA = item.GetAttInfoA();
    fields.heightA = item.GetHeightA();
    fields.infoB = item.GetAttInfoB();
    fields.heightB = item.GetHeightB();
    fields.axisPos = item.GetAxisPos();
    return fields;
}

std::vector<FloorKey> KeysOf(const SceneRun& run) {
    std::vector<FloorKey> keys;
    for (const SCollisionFloor& floor : run.floors) {
        keys.insert(keys.end(), floor.floorKeys.begin(), floor.floorKeys.end());
    }
    return keys;
}

// Every component of the model under its number, which its id ends with ("obj:7").
std::map<const ObjectModelInfo*, std::size_t> NumbersOf(const Scene& scene,
                                                        const WorkSetModelInfo& model) {
    std::map<std::wstring, std::size_t> byId;
    for (std::size_t i = 0; i < scene.components.size(); ++i) {
        byId[scene.components[i].objectId] = i;
    }
    std::map<const ObjectModelInfo*, std::size_t> numbers;
    for (const ObjectModelInfo* obj : test::ObjectsOf(model)) {
        numbers[obj] = byId.at(boost::any_cast<std::wstring>(obj->GetObjectId()));
    }
    return numbers;
}

}  // namespace

LibrarySession::LibrarySession(const Scene& scene, Walk walk)
    : scene_(scene), walk_(walk), priorities_(scene.priorities) {
    host_ = new SceneHost(scene);
    driver_.SetDataSource(host_);
    if (!driver_.InitCollisionModel()) throw std::runtime_error("no model could be built");
    numbers_ = NumbersOf(scene, dynamic_cast<WorkSetModelInfo&>(*driver_.GetCollisionModel()));
    objects_.resize(scene.components.size());
    for (const auto& [obj, number] : numbers_) {
        objects_[number] = obj;
    }
}

LibrarySession::~LibrarySession() = default;

Neighbours LibrarySession::GetNeighbours() const {
    Neighbours neighbours(objects_.size());
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (!objects_[i]) continue;
        for (const ObjectModelInfo* other : objects_[i]->GetBoxRelatedObjs()) {
            neighbours[i].push_back(numbers_.at(other));
        }
    }
    return neighbours;
}

CheckOutcome LibrarySession::Check(const SceneRun& run) {
    driver_.SetCollisionRule(MakeRules(run).release());
    stop_.Clear();
    if (run.stopAtMeshCall == 0) stop_.Set();
    int meshCalls = 0;
    host_->calls.clear();
    host_->onCall = [&](const test::RecordedCall& call) {
        if (call.call != test::HostCall::kCreateMesh) return;
        if (++meshCalls == run.stopAtMeshCall) stop_.Set();
    };
    CheckOutcome outcome;
    walk_ == Walk::kDriver ? WalkWithDriver(run, outcome) : WalkWithModel(run, outcome);
    host_->onCall = nullptr;
    stop_.Clear();
    outcome.records = ReadRecords();
    for (const test::RecordedCall& call : host_->CallsOf(test::HostCall::kCreateMesh)) {
        outcome.meshCalls.push_back({call.projectId, call.id, call.bodyOffset});
    }
    return outcome;
}

void LibrarySession::WalkWithDriver(const SceneRun& run, CheckOutcome& outcome) {
    outcome.answer = driver_.CollisionCheck(run.floors);
    outcome.done = driver_.CheckIsSuccessDone();
    outcome.floor = driver_.GetCurCheckFloor();
    outcome.total = driver_.GetAllCheckObjectNum();
    outcome.checked = driver_.GetCheckedObjectNum();
}

void LibrarySession::WalkWithModel(const SceneRun& run, CheckOutcome& outcome) {
    driver_.ResetCollisionTempData();
    for (const SCollisionFloor& floor : run.floors) {
        outcome.floor = floor.name;
        outcome.total = driver_.GetAllObjectNum(floor.floorKeys);
        outcome.checked = 0;
        for (const FloorKey& key : floor.floorKeys) {
            driver_.GetCollisionModel()->CollisionCheck(host_, key, outcome.checked);
            if (!CCollisionCheck::s_bStopCheck) continue;
            outcome.answer = CHECK_STOPPED;
            return;
        }
    }
    outcome.answer = CHECK_SUCCESS;
    outcome.done = true;
}

Records LibrarySession::ReadRecords() const {
    Records records(objects_.size());
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (!objects_[i]) continue;
        for (const SCollisionWithObj& clash : objects_[i]->GetCollisionObjs()) {
            records[i].push_back({numbers_.at(clash.other), clash.clashPoint, clash.ownBodyOffset,
                                  clash.otherBodyOffset});
        }
    }
    return records;
}

ResultOutcome LibrarySession::GetResults(const SceneRun& run) {
    ResultOutcome outcome;
    outcome.countBefore = driver_.GetResultTempNum(KeysOf(run));
    std::map<FloorKey, std::vector<KyResultItem*>> items;
    try {
        driver_.GetCollisionResult(run.floors, items);
    } catch (const std::logic_error& error) {
        outcome.error = error.what();
    }
    for (const auto& [key, ofFloor] : items) {
        for (KyResultItem* item : ofFloor) {
            const std::unique_ptr<KyResultItem> owned(item);
            outcome.items[key].push_back(FieldsOf(*owned));
        }
    }
    outcome.remaining = ReadRecords();
    return outcome;
}

Refreshed LibrarySession::Refresh(const ResultFields& item) {
    Refreshed refreshed;
    KyResultItem fresh;
    fresh.SetBaseInfo(item.projectA, item.floorA, item.guidA, item.projectB, item.floorB,
                      item.guidB, item.position);
    try {
        fresh.InitResultItemAttHeightInfo(host_, driver_.GetCollisionModel());
    } catch (const std::logic_error& error) {
        refreshed.error = error.what();
    }
    refreshed.item = FieldsOf(fresh);
    return refreshed;
}

HoleOutcome LibrarySession::GetHoles(const SceneRun& run) {
    HoleOutcome outcome;
    std::map<FloorKey, std::vector<std::shared_ptr<CExistingHole>>> holes;
    try {
        driver_.GetExistingHoles(run.floors, holes);
    } catch (const std::logic_error& error) {
        outcome.error = error.what();
    }
    for (const auto& [key, ofFloor] : holes) {
        for (const auto& hole : ofFloor) {
            outcome.items[key].push_back(*hole);
        }
    }
    return outcome;
}

}  // namespace kycb::scenes
