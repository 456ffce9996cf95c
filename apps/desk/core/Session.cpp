// SPDX-License-Identifier: Apache-2.0
#include "desk/core/Session.h"

#include "KYCollisionBase/logic/CCollisionCheck.h"
#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/result/KyWorksetResultData.h"
#include "KYCollisionBase/rule/KyCollisionRule.h"
#include "KYCollisionBase/rule/KyCollisionRuleItem.h"
#include "KYCollisionBase/rule/KyCollisionRuleMgr.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <set>
#include <stdexcept>
#include <utility>

#include "desk/core/ModelList.h"
#include "ifchost/HostText.h"
#include "ifchost/IfcDataSource.h"
#include "ifchost/IfcWorkset.h"
#include "kyclash/RuleChoice.h"

namespace desk {
namespace {

using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::LOGIC::ECheckReturn;
using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::RESULT::KyResultItem;
using KYCOLLISION::RESULT::KyWorksetResultData;
using Holes = std::map<FloorKey, std::vector<std::shared_ptr<Session::Hole>>>;

void SetStopFlag(bool stop) {
    std::atomic_ref(CCollisionCheck::s_bStopCheck).store(stop);
}

std::unique_ptr<KyWorksetResultData> NewResults() {
    return KyWorksetResultData::Create(KyModelTypeDefault, 0);
}

std::string PathText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::wstring WidePath(const std::filesystem::path& path) {
    return ifchost::FromUtf8(PathText(path));
}

std::wstring PathOf(AttCategory kind) {
    return kind.categoryIndex();
}

// Switches off what the user left out; the rule file itself stays as it is.
void KeepKinds(KYCOLLISION::Rule::KyCollisionRuleMgr& rules,
               const std::vector<std::wstring>& kinds) {
    const std::set<std::wstring> wanted(kinds.begin(), kinds.end());
    auto kept = std::unique_ptr<KYCOLLISION::Rule::KyCollisionRule>(rules.GetRule()->Clone(true));
    for (const std::wstring& specialty : kept->GetSpecArray()) {
        const auto* items = kept->GetRuleItemArray(specialty);
        if (items == nullptr) continue;
        // A copy: switching off takes items out of the list.
        for (const auto* item : std::vector(*items)) {
            if (wanted.count(item->GetAttName()) == 0) kept->DeleteRuleItem(item);
        }
    }
    rules.SetRule(kept.release(), true);
}

std::vector<FloorKey> KeysOf(const std::vector<SCollisionFloor>& floors) {
    std::vector<FloorKey> keys;
    for (const SCollisionFloor& floor : floors)
        keys.insert(keys.end(), floor.floorKeys.begin(), floor.floorKeys.end());
    return keys;
}

std::vector<SCollisionFloor> Choose(std::vector<SCollisionFloor> floors,
                                    const std::vector<std::wstring>& names) {
    std::erase_if(floors, [&](const SCollisionFloor& floor) {
        return std::find(names.begin(), names.end(), floor.name) == names.end();
    });
    return floors;
}

// Clash points come in the model's coordinates; users and files have those of the world.
void MoveToWorld(const ifchost::IfcWorkset& workset, KyResultItem& item) {
    if (!workset.Origin().moved) return;
    const auto [x, y, z] = item.GetClashPoint();
    const auto world = workset.ToWorld({x, y, z});
    item.SetBaseInfo(item.GetProjectA(), item.GetFloorA(), item.GetObjGuidA(), item.GetProjectB(),
                     item.GetFloorB(), item.GetObjGuidB(),
                     ifchost::FormatMillimetres(world[0]) + L"," +
                         ifchost::FormatMillimetres(world[1]) + L"," +
                         ifchost::FormatMillimetres(world[2]));
}

// Which floors a run went through: after a stop, those before the one it was at.
CheckedFloors SplitFloors(const std::vector<SCollisionFloor>& floors, ECheckReturn outcome,
                          const std::wstring& current) {
    CheckedFloors split;
    const auto end = outcome == KYCOLLISION::LOGIC::CHECK_SUCCESS
                         ? floors.end()
                         : std::find_if(floors.begin(), floors.end(),
                                        [&](const auto& floor) { return floor.name == current; });
    split.complete = KeysOf({floors.begin(), end});
    split.incomplete = KeysOf({end, floors.end()});
    return split;
}

}  // namespace

// What reading leaves for the owner's thread.
struct Session::OpenedModels {
    std::vector<std::filesystem::path> models;
    LoadedModels loaded;
    std::shared_ptr<const SceneMeshes> meshes;
    std::unique_ptr<CCollisionCheck> driver;
    const ifchost::IfcDataSource* source = nullptr;  // the driver's
    Holes holes;
};

// What reading results leaves for the owner's thread.
struct Session::ReadResults {
    std::filesystem::path file;
    std::unique_ptr<KyWorksetResultData> results;  // none when there is an error
    std::string error;
    bool stopped = false;
};

// What a run leaves for the owner's thread.
struct Session::CheckedModels {
    CheckedModels() = default;
    CheckedModels(const CheckedModels&) = delete;
    CheckedModels& operator=(const CheckedModels&) = delete;
    // A run that failed half-way leaves results that nobody took.
    ~CheckedModels() {
        for (const auto& [floor, items] : results) {
            for (const KyResultItem* item : items)
                delete item;
        }
    }

    ECheckReturn outcome = KYCOLLISION::LOGIC::CHECK_NO_MODEL;
    CheckedFloors floors;
    ResultsByFloor results;
    std::optional<kyclash::ReportedRules> rules;
    std::string error;  // without which there is no outcome
};

Session::Session(SessionOptions options) : options_(std::move(options)), results_(NewResults()) {
    // Loaded on first use, which would be in a run and in the window at the same time.
    AttCategory::InitTypePriorityMap();
}

Session::~Session() {
    RequestStop();
}

TaskProgress Session::Progress() const {
    TaskProgress progress = task_.Progress();
    if (activity_ == Activity::kChecking && progress.step == "check") {
        progress.subject = ifchost::ToUtf8(driver_->GetCurCheckFloor());
        progress.done = static_cast<std::size_t>(driver_->GetCheckedObjectNum());
        progress.total = static_cast<std::size_t>(driver_->GetAllCheckObjectNum());
    }
    return progress;
}

void Session::RequestStop() {
    task_.RequestStop();
    if (activity_ == Activity::kChecking) SetStopFlag(true);
}

std::optional<ActivityOutcome> Session::Poll() {
    if (!HasOutcome()) return std::nullopt;
    ActivityOutcome outcome;
    outcome.activity = std::exchange(activity_, Activity::kIdle);
    const auto opened = std::move(opened_);
    const auto read = std::move(read_);
    const auto checked = std::move(checked_);
    try {
        task_.Finish();
        if (opened) TakeOver(*opened, outcome);
        if (read) TakeOver(*read, outcome);
        if (checked) TakeOver(*checked, outcome);
    } catch (const std::exception& failure) {
        outcome.errors.emplace_back(failure.what());
    }
    return outcome;
}

void Session::StartOpen(std::vector<std::filesystem::path> models) {
    activity_ = Activity::kOpening;
    opened_ = std::make_unique<OpenedModels>();
    opened_->models = std::move(models);
    task_.Start([opened = opened_.get(), options = options_.loading](BackgroundTask& task) {
        opened->loaded = LoadModels(opened->models, options, task);
        const auto& workset = opened->loaded.workset;
        if (workset == nullptr) return;
        task.Report({"scene", {}, 0, 0});
        opened->meshes = std::make_shared<const SceneMeshes>(CollectMeshes(*workset));
        task.Report({"build", {}, 0, 0});
        opened->driver = std::make_unique<CCollisionCheck>();
        auto* source = new ifchost::IfcDataSource(workset);
        opened->source = source;
        opened->driver->SetDataSource(source);
        opened->driver->InitCollisionModel();
        opened->driver->GetExistingHoles(workset->CollisionFloors(), opened->holes);
    });
}

void Session::TakeOver(OpenedModels& opened, ActivityOutcome& outcome) {
    outcome.errors = std::move(opened.loaded.errors);
    outcome.modelNotes = std::move(opened.loaded.notes);
    outcome.stopped = opened.loaded.stopped;
    outcome.succeeded = opened.loaded.workset != nullptr;
    if (!outcome.succeeded) return;
    models_ = std::move(opened.models);
    workset_ = std::move(opened.loaded.workset);
    meshes_ = std::move(opened.meshes);
    driver_ = std::move(opened.driver);
    source_ = opened.source;
    openings_.clear();
    for (auto& [floor, holes] : opened.holes)
        openings_.insert(openings_.end(), holes.begin(), holes.end());
}

void Session::StartCheck(const CheckRequest& request) {
    if (driver_ == nullptr) throw std::logic_error("a check needs open models");
    activity_ = Activity::kChecking;
    driver_->ResetCheckStatus();
    SetStopFlag(false);
    checked_ = std::make_unique<CheckedModels>();
    task_.Start([checked = checked_.get(), driver = driver_.get(), workset = workset_,
                 ruleFile = options_.rules, kinds = request.kinds,
                 floors = Choose(Floors(), request.floors),
                 allFloors = Floors()](BackgroundTask& task) {
        task.Report({"rules", {}, 0, 0});
        auto chosen = kyclash::ChooseRules(ruleFile, checked->error);
        if (!chosen) return;
        kyclash::CompleteRules(*chosen, *workset);
        checked->rules = std::move(chosen->report);
        KeepKinds(*chosen->rules, kinds);
        driver->SetCollisionRule(chosen->rules.release());
        task.Report({"check", {}, 0, 0});
        checked->outcome = driver->CollisionCheck(floors);
        checked->floors = SplitFloors(floors, checked->outcome, driver->GetCurCheckFloor());
        task.Report({"collect", {}, 0, 0});
        // A clash is listed on the floor of its main component, which need not be one of those
        // that were asked for.
        driver->GetCollisionResult(allFloors, checked->results);
        for (auto& [floor, items] : checked->results) {
            for (KyResultItem* item : items)
                MoveToWorld(*workset, *item);
        }
    });
}

void Session::TakeOver(CheckedModels& checked, ActivityOutcome& outcome) {
    outcome.clashes = Results().size();
    if (!checked.error.empty()) {
        outcome.errors.push_back(std::move(checked.error));
        return;
    }
    outcome.stopped = checked.outcome == KYCOLLISION::LOGIC::CHECK_STOPPED;
    outcome.succeeded = checked.outcome == KYCOLLISION::LOGIC::CHECK_SUCCESS;
    outcome.rules = std::move(checked.rules);
    for (const auto& note : source_->BodyNotes()) {
        const auto& component = workset_->Components()[note.component];
        outcome.bodyNotes.push_back(
            PathText(workset_->Project(component.projectId)->file.filename()) + ": " +
            workset_->GlobalId(component) + ": " + note.text);
    }
    MergeResults(*results_, std::exchange(checked.results, {}), checked.floors);
    outcome.clashes = Results().size();
    modified_ = true;
}

std::vector<SCollisionFloor> Session::Floors() const {
    return workset_ == nullptr ? std::vector<SCollisionFloor>() : workset_->CollisionFloors();
}

std::vector<KindCount> Session::Kinds() const {
    std::vector<KindCount> kinds;
    if (workset_ == nullptr) return kinds;
    std::map<std::wstring, std::size_t> counts;
    for (const auto& component : workset_->Components())
        ++counts[PathOf(component.category)];
    for (const AttCategory& kind : workset_->CheckedKinds())
        kinds.push_back({kind, counts[PathOf(kind)]});
    return kinds;
}

std::optional<std::size_t> Session::ComponentIndex(int projectId, const std::wstring& guid) const {
    if (workset_ == nullptr) return std::nullopt;
    const auto* component = workset_->FindComponent(projectId, guid);
    if (component == nullptr) return std::nullopt;
    return static_cast<std::size_t>(component - workset_->Components().data());
}

std::vector<Session::Item*> Session::Results() const {
    ResultsByFloor byFloor;
    results_->GetAllResultItems(byFloor);
    std::vector<Item*> all;
    for (const auto& [floor, items] : byFloor)
        all.insert(all.end(), items.begin(), items.end());
    return all;
}

void Session::SetDisposeState(Item& item, int state) {
    if (item.GetDisposeState() == state) return;
    item.SetDisposeState(state);
    modified_ = true;
}

void Session::SetRemark(Item& item, const std::wstring& remark) {
    if (item.GetRemark() == remark) return;
    item.SetRemark(remark);
    modified_ = true;
}

void Session::SetViewport(Item& item, const std::wstring& viewport) {
    if (item.GetViewport() == viewport) return;
    item.SetViewport(viewport);
    modified_ = true;
}

bool Session::SaveResults(const std::filesystem::path& file, std::string& error) {
    if (!results_->SerializeToXml(WidePath(file))) {
        error = ifchost::ToUtf8(results_->GetErrorText());
        return false;
    }
    if (!models_.empty() && !WriteModelList(file, models_, error)) return false;
    resultFile_ = file;
    modified_ = false;
    return true;
}

void Session::StartOpenResults(const std::filesystem::path& file) {
    activity_ = Activity::kReadingResults;
    read_ = std::make_unique<ReadResults>();
    read_->file = file;
    task_.Start([read = read_.get()](BackgroundTask& task) {
        task.Report({"read", PathText(read->file.filename()), 0, 0});
        auto results = NewResults();
        try {
            if (results->InitByXml(WidePath(read->file))) {
                read->results = std::move(results);
                read->stopped = task.StopFlag();
                return;
            }
            read->error = ifchost::ToUtf8(results->GetErrorText());
        } catch (const std::exception& failure) {
            // What is wrong in the file in its reader's words, which name the place.
            read->error = ifchost::ToUtf8(results->GetErrorText());
            if (read->error.empty()) read->error = PathText(read->file) + ": " + failure.what();
        }
    });
}

void Session::TakeOver(ReadResults& read, ActivityOutcome& outcome) {
    if (!read.error.empty()) outcome.errors.push_back(std::move(read.error));
    outcome.stopped = read.stopped;
    outcome.succeeded = read.results != nullptr && !read.stopped;
    if (!outcome.succeeded) return;
    results_ = std::move(read.results);
    resultFile_ = std::move(read.file);
    modified_ = false;
    outcome.clashes = Results().size();
}

void Session::CloseResults() {
    results_->ReleaseResults();
    resultFile_.reset();
    modified_ = false;
}

}  // namespace desk
