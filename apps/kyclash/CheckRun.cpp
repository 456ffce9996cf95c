// SPDX-License-Identifier: Apache-2.0
#include "kyclash/CheckRun.h"

#include "KYCollisionBase/KYCollisionBase.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <iostream>
#include <unordered_set>

#include "ifchost/HostText.h"
#include "kyclash/FloorWorkers.h"
#include "kyclash/NumberText.h"
#include "platform/Workers.h"

namespace kyclash {
namespace {

using ifchost::FromUtf8;
using ifchost::ToUtf8;
using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::MODEL::ObjectModelInfo;
using KYCOLLISION::RESULT::KyResultItem;

// How often a run is asked how far it is.
constexpr std::chrono::milliseconds kPollInterval{100};

// Counts neighbour pairs; a pair that both components list counts once, for the floor met first.
class CandidateCounter {
  public:
    std::size_t Count(const KYCOLLISION::MODEL::FloorModelInfo& floor) {
        std::size_t pairs = 0;
        for (const auto& [path, category] : floor.GetCategories()) {
            for (const auto& [guid, component] : category->GetObjects())
                pairs += Count(*component);
        }
        return pairs;
    }

  private:
    std::size_t Count(const ObjectModelInfo& component) {
        const auto& neighbours = component.GetBoxRelatedObjs();
        const auto isNew = [&](const ObjectModelInfo* other) {
            if (seen_.count(other) == 0) return true;
            const auto& back = other->GetBoxRelatedObjs();
            return std::find(back.begin(), back.end(), &component) == back.end();
        };
        const auto count = std::count_if(neighbours.begin(), neighbours.end(), isNew);
        seen_.insert(&component);
        return static_cast<std::size_t>(count);
    }

    std::unordered_set<const ObjectModelInfo*> seen_;
};

// What is kept must mean the same whatever else was loaded, so the run's own zero goes.
void MoveToWorld(const ifchost::IfcWorkset& workset, KyResultItem& item) {
    const auto [x, y, z] = item.GetClashPoint();
    item.SetBaseInfo(item.GetProjectA(), item.GetFloorA(), item.GetObjGuidA(), item.GetProjectB(),
                     item.GetFloorB(), item.GetObjGuidB(),
                     FromUtf8(PositionText(workset.ToWorld({x, y, z}))));
}

}  // namespace

std::optional<std::vector<SCollisionFloor>> ChooseFloors(const std::vector<SCollisionFloor>& all,
                                                         const std::vector<std::string>& names) {
    if (names.empty()) return all;
    std::vector<SCollisionFloor> chosen;
    for (const std::string& name : names) {
        const auto found = std::find_if(all.begin(), all.end(), [&](const SCollisionFloor& floor) {
            return floor.name == FromUtf8(name);
        });
        if (found == all.end()) {
            std::cerr << "kyclash: no floor is named \"" << name << "\"; the models have:";
            for (const SCollisionFloor& floor : all)
                std::cerr << "\n  " << ToUtf8(floor.name);
            std::cerr << '\n';
            return std::nullopt;
        }
        const bool isNew = std::none_of(chosen.begin(), chosen.end(), [&](const auto& floor) {
            return floor.name == found->name;
        });
        if (isNew) chosen.push_back(*found);
    }
    return chosen;
}

CheckRun::CheckRun(std::shared_ptr<const ifchost::IfcWorkset> workset,
                   std::unique_ptr<KYCOLLISION::Rule::KyCollisionRuleMgr> rules)
    : workset_(std::move(workset)), source_(new ifchost::IfcDataSource(workset_)) {
    check_.SetDataSource(source_);
    check_.SetCollisionRule(rules.release());
    check_.InitCollisionModel();
}

bool CheckRun::Run(const std::vector<SCollisionFloor>& floors, std::size_t jobs,
                   Progress& progress) {
    jobs = MostWorkers(std::min(jobs, floors.size()));
    if (jobs > 1) {
        WorkersOutcome outcome = CheckInWorkers(check_, *source_, floors, jobs, progress);
        notesOfWorkers_ = std::move(outcome.notes);
        return !outcome.stopped;
    }
    auto run = std::async(std::launch::async, [&] { return check_.CollisionCheck(floors); });
    while (run.wait_for(kPollInterval) != std::future_status::ready) {
        progress.Show("check", "floor " + ToUtf8(check_.GetCurCheckFloor()),
                      static_cast<std::size_t>(check_.GetCheckedObjectNum()),
                      static_cast<std::size_t>(check_.GetAllCheckObjectNum()));
    }
    progress.Clear();
    return run.get() != KYCOLLISION::LOGIC::CHECK_STOPPED;
}

const std::vector<ifchost::BodyNote>& CheckRun::BodyNotes() const {
    return notesOfWorkers_ ? *notesOfWorkers_ : source_->BodyNotes();
}

std::vector<ResultItemPtr> CheckRun::TakeClashes() {
    std::map<FloorKey, std::vector<KyResultItem*>> borrowed;
    check_.GetCollisionResult(workset_->CollisionFloors(), borrowed);
    std::vector<ResultItemPtr> clashes;
    for (const auto& [key, items] : borrowed) {
        for (KyResultItem* item : items)
            clashes.emplace_back(item);
    }
    if (!workset_->Origin().moved) return clashes;
    for (const ResultItemPtr& clash : clashes)
        MoveToWorld(*workset_, *clash);
    return clashes;
}

std::vector<Opening> CheckRun::Openings(const std::vector<SCollisionFloor>& floors) {
    std::map<FloorKey, std::vector<std::shared_ptr<KYCOLLISION::RESULT::CExistingHole>>> holes;
    check_.GetExistingHoles(floors, holes);
    std::vector<Opening> openings;
    for (const SCollisionFloor& floor : floors) {
        for (const FloorKey& key : floor.floorKeys)
            openings.insert(openings.end(), holes[key].begin(), holes[key].end());
    }
    return openings;
}

std::vector<CheckRun::FloorSize> CheckRun::SizesOf(const std::vector<SCollisionFloor>& floors) {
    auto& root = dynamic_cast<KYCOLLISION::MODEL::WorkSetModelInfo&>(*check_.GetCollisionModel());
    CandidateCounter candidates;
    std::vector<FloorSize> sizes;
    for (const SCollisionFloor& floor : floors) {
        FloorSize& size = sizes.emplace_back();
        for (const FloorKey& key : floor.floorKeys) {
            const auto* project = root.GetProject(key.first);
            const auto* model = project != nullptr ? project->GetFloorModel(key.second) : nullptr;
            if (model == nullptr) continue;
            size.components += static_cast<std::size_t>(root.GetAllObjectNum(key));
            size.candidatePairs += candidates.Count(*model);
        }
    }
    return sizes;
}

}  // namespace kyclash
