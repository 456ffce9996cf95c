// SPDX-License-Identifier: Apache-2.0
#include "kyclash/ListCommand.h"

#include <algorithm>
#include <map>
#include <ostream>
#include <string>

#include <nlohmann/json.hpp>

#include "ifchost/HostText.h"
#include "ifchost/PackageCache.h"
#include "kyclash/Interrupt.h"
#include "kyclash/NumberText.h"
#include "kyclash/OutputFile.h"
#include "kyclash/Progress.h"
#include "kyclash/ResultTables.h"

namespace kyclash {
namespace {

using ifchost::IfcWorkset;
using ifchost::ToUtf8;
using ifchost::WorksetProject;
using Json = nlohmann::ordered_json;
using KindCounts = std::map<std::string, std::size_t>;

KindCounts CountKinds(const IfcWorkset& workset, int projectId) {
    KindCounts counts;
    for (const auto& component : workset.Components()) {
        if (component.projectId != projectId) continue;
        auto kind = component.category;
        ++counts[ToUtf8(kind.categoryIndex())];
    }
    return counts;
}

void WriteProject(const IfcWorkset& workset, const WorksetProject& project, std::ostream& out) {
    out << "project " << project.id << ": " << ifchost::PathText(project.file) << ", "
        << project.package.File().schema << ", " << project.accounts.size() << " products\n";
    for (const auto& floor : project.floors) {
        out << "  floor " << ToUtf8(floor.name) << ": " << WholeText(floor.under) << " to "
            << WholeText(floor.top) << " mm, " << CountText(floor.components, "component") << '\n';
    }
    const KindCounts kinds = CountKinds(workset, project.id);
    std::size_t largest = 0;
    for (const auto& [kind, count] : kinds)
        largest = std::max(largest, count);
    for (const auto& [kind, count] : kinds)
        out << "  " << ColumnText(count, largest) << "  " << kind << '\n';
    for (std::size_t i = 0; i < project.fateCounts.size(); ++i) {
        const auto fate = static_cast<ifchost::ProductFate>(i);
        const bool isComponent =
            fate == ifchost::ProductFate::Checked || fate == ifchost::ProductFate::ListedOpening;
        if (isComponent || project.fateCounts[i] == 0) continue;
        out << "  not checked: " << project.fateCounts[i] << "  " << ifchost::FateText(fate)
            << '\n';
    }
    for (const auto& unmapped : workset.Unmapped()) {
        if (unmapped.projectId != project.id) continue;
        out << "  no mapping rule for " << unmapped.count << " x " << unmapped.ifcClass
            << ", such as " << unmapped.example << '\n';
    }
}

Json ToJson(const IfcWorkset& workset, const WorksetProject& project) {
    Json floors = Json::array();
    for (const auto& floor : project.floors) {
        floors.push_back({{"name", ToUtf8(floor.name)},
                          {"under", floor.under},
                          {"top", floor.top},
                          {"components", floor.components}});
    }
    Json fates = Json::object();
    for (std::size_t i = 0; i < project.fateCounts.size(); ++i) {
        fates[std::string(ifchost::FateName(static_cast<ifchost::ProductFate>(i)))] =
            project.fateCounts[i];
    }
    Json unmapped = Json::array();
    for (const auto& kind : workset.Unmapped()) {
        if (kind.projectId != project.id) continue;
        unmapped.push_back(
            {{"ifcClass", kind.ifcClass}, {"count", kind.count}, {"example", kind.example}});
    }
    return {{"id", project.id},
            {"file", ifchost::PathText(project.file)},
            {"schema", project.package.File().schema},
            {"products", project.accounts.size()},
            {"floors", std::move(floors)},
            {"kinds", CountKinds(workset, project.id)},
            {"fates", std::move(fates)},
            {"unmapped", std::move(unmapped)}};
}

}  // namespace

ExitCode RunList(const ListOptions& options, std::ostream& out, std::ostream& errors) {
    const Interrupt interrupt;
    Progress progress(options.quiet ? ProgressMode::Off : DetectProgressMode());
    const auto workset = LoadWorkset(options.load, progress);
    if (!workset) return Interrupt::Requested() ? kExitStopped : kExitUnreadable;
    progress.Clear();
    Json projects = Json::array();
    for (const WorksetProject& project : workset->Projects()) {
        if (options.format == ReportFormat::Json) {
            projects.push_back(ToJson(*workset, project));
        } else {
            WriteProject(*workset, project, out);
        }
    }
    if (options.format == ReportFormat::Json) {
        out << projects.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    }
    if (!options.csv) return kExitDone;
    if (const auto reason = ReplaceFile(*options.csv, ProductTable(*workset))) {
        errors << "kyclash: " << *reason << '\n';
        return kExitUnreadable;
    }
    return kExitDone;
}

}  // namespace kyclash
