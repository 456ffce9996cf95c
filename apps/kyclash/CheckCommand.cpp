// SPDX-License-Identifier: Apache-2.0
#include "kyclash/CheckCommand.h"

#include "KYCollisionBase/KYCollisionBase.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <iostream>
#include <map>
#include <memory>
#include <set>
#include <unordered_set>

#include "ifchost/BuiltinRules.h"
#include "ifchost/HostText.h"
#include "ifchost/IfcDataSource.h"
#include "kyclash/Interrupt.h"
#include "kyclash/ModelLoading.h"
#include "kyclash/Progress.h"
#include "platform/ProcessInfo.h"

namespace kyclash {
namespace {

using ifchost::FromUtf8;
using ifchost::IfcWorkset;
using ifchost::ToUtf8;
using KYCOLLISION::LOGIC::CCollisionCheck;
using KYCOLLISION::MODEL::ObjectModelInfo;
using KYCOLLISION::RESULT::KyResultItem;
using FloorKey = std::pair<int, std::wstring>;

// How often a run is asked how far it is.
constexpr std::chrono::milliseconds kPollInterval{100};

class Stopwatch {
  public:
    /// Seconds since construction or the last call.
    double Lap() {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> lap = now - start_;
        start_ = now;
        return lap.count();
    }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The floors that were asked for; nothing, after an error message, when a name is unknown.
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
        chosen.push_back(*found);
    }
    return chosen;
}

// Runs the check on a thread of its own, as the library's other hosts do, and shows its progress.
KYCOLLISION::LOGIC::ECheckReturn RunWithProgress(CCollisionCheck& check,
                                                 const std::vector<SCollisionFloor>& floors,
                                                 Progress& progress) {
    auto run = std::async(std::launch::async, [&] { return check.CollisionCheck(floors); });
    while (run.wait_for(kPollInterval) != std::future_status::ready) {
        progress.Show("check", "floor " + ToUtf8(check.GetCurCheckFloor()),
                      static_cast<std::size_t>(check.GetCheckedObjectNum()),
                      static_cast<std::size_t>(check.GetAllCheckObjectNum()));
    }
    progress.Clear();
    return run.get();
}

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

ReportedComponent Describe(const IfcWorkset& workset, int projectId, const std::wstring& guid,
                           const SObjAttInfo& attributes) {
    ReportedComponent reported;
    reported.name = ToUtf8(attributes.Name);
    KYCOLLISION::MODEL::AttCategory category(attributes.Specialty, attributes.Category,
                                             attributes.Subcategory);
    reported.category = ToUtf8(category.categoryIndex());
    const auto* component = workset.FindComponent(projectId, guid);
    if (component == nullptr) return reported;
    reported.guid = workset.GlobalId(*component);
    reported.ifcClass = workset.Product(*component).ifcClass;
    reported.file = workset.Project(projectId)->file.filename().string();
    return reported;
}

ReportedClash Describe(const IfcWorkset& workset, const KyResultItem& item) {
    ReportedClash clash;
    clash.main = Describe(workset, item.GetProjectA(), item.GetObjGuidA(), item.GetAttInfoA());
    clash.second = Describe(workset, item.GetProjectB(), item.GetObjGuidB(), item.GetAttInfoB());
    const auto [x, y, z] = item.GetClashPoint();
    clash.point = workset.ToWorld({x, y, z});
    clash.bodyOffsets = ToUtf8(item.GetClashModel());
    return clash;
}

// The clashes of all floors. A run over some floors records clashes on components of others too,
// and a pair is listed on the floor of its main component, wherever that is.
std::map<FloorKey, std::vector<std::unique_ptr<KyResultItem>>> CollectResults(
    CCollisionCheck& check, const std::vector<SCollisionFloor>& allFloors) {
    std::map<FloorKey, std::vector<KyResultItem*>> borrowed;
    check.GetCollisionResult(allFloors, borrowed);
    std::map<FloorKey, std::vector<std::unique_ptr<KyResultItem>>> results;
    for (const auto& [key, items] : borrowed) {
        for (KyResultItem* item : items)
            results[key].emplace_back(item);
    }
    return results;
}

std::vector<ReportedFloor> ReportFloors(CCollisionCheck& check, const IfcWorkset& workset,
                                        const std::vector<SCollisionFloor>& allFloors,
                                        const std::set<std::wstring>& checkedNames) {
    auto& root = dynamic_cast<KYCOLLISION::MODEL::WorkSetModelInfo&>(*check.GetCollisionModel());
    const auto results = CollectResults(check, allFloors);
    CandidateCounter candidates;
    std::vector<ReportedFloor> reported;
    for (const SCollisionFloor& floor : allFloors) {
        ReportedFloor entry;
        entry.name = ToUtf8(floor.name);
        for (const FloorKey& key : floor.floorKeys) {
            const auto* project = root.GetProject(key.first);
            const auto* model = project != nullptr ? project->GetFloorModel(key.second) : nullptr;
            if (model == nullptr) continue;
            entry.components += static_cast<std::size_t>(root.GetAllObjectNum(key));
            entry.candidatePairs += candidates.Count(*model);
            const auto found = results.find(key);
            if (found == results.end()) continue;
            for (const auto& item : found->second) {
                entry.clashes.push_back(Describe(workset, *item));
            }
        }
        const bool checked = checkedNames.count(floor.name) != 0;
        if (checked || !entry.clashes.empty()) reported.push_back(std::move(entry));
    }
    return reported;
}

ReportedModel ReportModel(const IfcWorkset& workset, const ifchost::WorksetProject& project) {
    ReportedModel reported;
    reported.file = project.file.string();
    reported.schema = project.package.File().schema;
    reported.products = project.accounts.size();
    for (std::size_t i = 0; i < project.fateCounts.size(); ++i) {
        const auto fate = static_cast<ifchost::ProductFate>(i);
        if (fate == ifchost::ProductFate::Checked) {
            reported.checked = project.fateCounts[i];
        } else if (project.fateCounts[i] > 0) {
            reported.skipped[std::string(ifchost::FateText(fate))] = project.fateCounts[i];
        }
    }
    for (const auto& instance : project.package.Instances()) {
        reported.triangles += project.package.Geometry(instance.geometry).TriangleCount();
    }
    for (const auto& warning : project.package.Warnings()) {
        reported.warnings.push_back(warning.text);
    }
    for (const auto& warning : workset.Warnings()) {
        if (warning.projectId == project.id) reported.warnings.push_back(warning.text);
    }
    return reported;
}

void ReportModels(const IfcWorkset& workset, CheckReport& report) {
    for (const auto& project : workset.Projects()) {
        report.models.push_back(ReportModel(workset, project));
    }
    for (const auto& unmapped : workset.Unmapped()) {
        report.unmapped[unmapped.ifcClass] += unmapped.count;
    }
    report.localOrigin = workset.Origin().origin;
}

// Bodies that could not be offset are only known after the run.
void ReportBodies(const ifchost::IfcDataSource& source, CheckReport& report) {
    for (const auto& note : source.BodyNotes()) {
        const auto& component = source.Workset().Components()[note.component];
        report.models[static_cast<std::size_t>(component.projectId) - 1].warnings.push_back(
            source.Workset().GlobalId(component) + ": " + note.text);
    }
}

}  // namespace

ExitCode RunCheck(const CheckOptions& options) {
    const Interrupt interrupt;
    Progress progress(options.quiet ? ProgressMode::Off : DetectProgressMode());
    CheckReport report;
    Stopwatch watch;

    const auto workset = LoadWorkset(
        {options.models, options.mapping, options.cacheDir, options.circleSegments}, progress);
    if (!workset) return Interrupt::Requested() ? kExitStopped : kExitUnreadable;
    report.cost.readSeconds = watch.Lap();

    const std::vector<SCollisionFloor> allFloors = workset->CollisionFloors();
    const auto floors = ChooseFloors(allFloors, options.floors);
    if (!floors) return kExitWrongUse;

    progress.Show("build", "neighbours");
    CCollisionCheck check;
    auto* source = new ifchost::IfcDataSource(workset);  // the driver takes it over
    check.SetDataSource(source);
    check.SetCollisionRule(ifchost::MakeBuiltinRules(workset->CheckedKinds()).release());
    check.InitCollisionModel();
    report.cost.buildSeconds = watch.Lap();

    const auto outcome = RunWithProgress(check, *floors, progress);
    report.stopped = outcome == KYCOLLISION::LOGIC::CHECK_STOPPED;
    report.cost.checkSeconds = watch.Lap();

    std::set<std::wstring> checkedNames;
    for (const SCollisionFloor& floor : *floors)
        checkedNames.insert(floor.name);
    ReportModels(*workset, report);
    ReportBodies(*source, report);
    report.floors = ReportFloors(check, *workset, allFloors, checkedNames);
    report.cost.resultSeconds = watch.Lap();
    report.cost.peakMegabytes = PeakMemoryMegabytes();
    WriteReport(report, options.format, options.listing, std::cout);
    return report.stopped ? kExitStopped : kExitDone;
}

}  // namespace kyclash
