// SPDX-License-Identifier: Apache-2.0
#include "kyclash/ReportBuilding.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"
#include "kyclash/GlobalIdOf.h"

namespace kyclash {
namespace {

using ifchost::IfcWorkset;
using ifchost::ToUtf8;
using KYCOLLISION::RESULT::KyResultItem;

// What the library says of a clash that no axis is near.
constexpr const wchar_t* kNoAxisNear = L"其他位置";

ReportedComponent Describe(const IfcWorkset& workset, int projectId, const std::wstring& guid,
                           const SObjAttInfo& attributes) {
    ReportedComponent reported;
    reported.name = ToUtf8(attributes.Name);
    KYCOLLISION::MODEL::AttCategory category(attributes.Specialty, attributes.Category,
                                             attributes.Subcategory);
    reported.category = ToUtf8(category.categoryIndex());
    const auto* component = workset.FindComponent(projectId, guid);
    if (component == nullptr) {
        reported.guid = GlobalIdOf(guid).value_or(ToUtf8(guid));
        return reported;
    }
    reported.guid = workset.GlobalId(*component);
    reported.ifcClass = workset.Product(*component).ifcClass;
    reported.file = ifchost::PathText(workset.Project(projectId)->file.filename());
    return reported;
}

ReportedClash Describe(const IfcWorkset& workset, const TrackedClash& tracked) {
    const KyResultItem& item = *tracked.item;
    ReportedClash clash;
    clash.main = Describe(workset, item.GetProjectA(), item.GetObjGuidA(), item.GetAttInfoA());
    clash.second = Describe(workset, item.GetProjectB(), item.GetObjGuidB(), item.GetAttInfoB());
    const auto [x, y, z] = item.GetClashPoint();
    clash.point = {x, y, z};
    clash.bodyOffsets = ToUtf8(item.GetClashModel());
    if (item.GetAxisPos() != kNoAxisNear) clash.axisPosition = ToUtf8(item.GetAxisPos());
    clash.status = tracked.status;
    return clash;
}

std::vector<ReportedKindPair> CountKindPairs(const std::vector<ReportedClash>& clashes) {
    std::map<std::pair<std::string, std::string>, std::size_t> counts;
    for (const ReportedClash& clash : clashes)
        ++counts[{clash.main.category, clash.second.category}];
    std::vector<ReportedKindPair> pairs;
    for (const auto& [kinds, count] : counts)
        pairs.push_back({kinds.first, kinds.second, count});
    std::stable_sort(pairs.begin(), pairs.end(),
                     [](const auto& a, const auto& b) { return a.count > b.count; });
    return pairs;
}

// `IfcWall "north" 2O2Fr$t4X7Zf8NOew3FLOH`, with as much of it as the file gives.
std::string ProductText(const ifchost::SceneProduct& product) {
    std::string text = product.ifcClass;
    if (!product.name.empty()) text += " \"" + product.name + "\"";
    text += " ";
    return text + (product.guid.empty() ? "#" + std::to_string(product.expressId) : product.guid);
}

ReportedWarning Describe(const ifchost::ScenePackage& package,
                         const ifchost::SceneWarning& warning) {
    if (warning.product == ifchost::kNoIndex) return {warning.code, warning.text};
    const auto& product = package.Products()[static_cast<std::size_t>(warning.product)];
    return {warning.code, ProductText(product) + ": " + warning.text};
}

ReportedModel ReportModel(const IfcWorkset& workset, const ifchost::WorksetProject& project) {
    ReportedModel reported;
    reported.file = ifchost::PathText(project.file);
    reported.schema = project.package.File().schema;
    reported.contentHash = ifchost::HashFile(project.file).value_or("");
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
        reported.warnings.push_back(Describe(project.package, warning));
    }
    for (const auto& warning : workset.Warnings()) {
        if (warning.projectId == project.id) {
            reported.warnings.push_back({warning.text, warning.text});
        }
    }
    return reported;
}

std::string BodyDefectSort(ifchost::BodyDefect defect) {
    return "body " + std::to_string(static_cast<int>(defect));
}

// Every component of a file that was given twice clashes with itself.
void WarnAboutEqualFiles(CheckReport& report) {
    std::map<std::string, std::string> fileOf;
    for (const ReportedModel& model : report.models) {
        if (model.contentHash.empty()) continue;
        const auto [first, isNew] = fileOf.try_emplace(model.contentHash, model.file);
        if (isNew) continue;
        report.warnings.push_back(model.file + " has the same content as " + first->second);
    }
}

bool WasFound(const TrackedClash& clash) {
    return clash.status != ClashStatus::Gone && clash.status != ClashStatus::NotRetested;
}

}  // namespace

void ReportModels(const CheckRun& run, CheckReport& report) {
    const IfcWorkset& workset = run.Workset();
    for (const auto& project : workset.Projects())
        report.models.push_back(ReportModel(workset, project));
    for (const auto& unmapped : workset.Unmapped())
        report.unmapped[unmapped.ifcClass] += unmapped.count;
    report.localOrigin = workset.Origin().origin;
    for (const auto& note : run.BodyNotes()) {
        const auto& component = workset.Components()[note.component];
        report.models[static_cast<std::size_t>(component.projectId) - 1].warnings.push_back(
            {BodyDefectSort(note.defect),
             ProductText(workset.Product(component)) + ": " + note.text});
    }
    for (const auto& warning : workset.Warnings()) {
        if (warning.projectId == 0) report.warnings.push_back(warning.text);
    }
    WarnAboutEqualFiles(report);
}

void ReportFloors(const IfcWorkset& workset, const std::vector<CheckRun::FloorSize>& sizes,
                  const std::vector<SCollisionFloor>& checkedFloors,
                  const std::vector<TrackedClash>& clashes, CheckReport& report) {
    std::set<std::wstring> checkedNames;
    for (const SCollisionFloor& floor : checkedFloors)
        checkedNames.insert(floor.name);
    std::map<FloorKey, std::vector<ReportedClash>> found;
    for (const TrackedClash& clash : clashes) {
        if (!WasFound(clash)) continue;
        found[{clash.item->GetProjectA(), clash.item->GetFloorA()}].push_back(
            Describe(workset, clash));
    }
    const auto floors = workset.CollisionFloors();
    for (std::size_t i = 0; i < floors.size(); ++i) {
        ReportedFloor entry;
        entry.name = ToUtf8(floors[i].name);
        entry.components = sizes[i].components;
        entry.candidatePairs = sizes[i].candidatePairs;
        for (const FloorKey& key : floors[i].floorKeys) {
            auto& list = found[key];
            std::move(list.begin(), list.end(), std::back_inserter(entry.clashes));
        }
        entry.kindPairs = CountKindPairs(entry.clashes);
        const bool isChecked = checkedNames.count(floors[i].name) != 0;
        if (isChecked || !entry.clashes.empty()) report.floors.push_back(std::move(entry));
    }
}

void ReportHistory(const IfcWorkset& workset, const std::string& previousFile,
                   const std::vector<TrackedClash>& clashes, CheckReport& report) {
    report.history = {previousFile, CountStatuses(clashes), {}};
    for (const TrackedClash& clash : clashes) {
        if (clash.status == ClashStatus::Gone) {
            report.history->gone.push_back(Describe(workset, clash));
        }
    }
}

}  // namespace kyclash
