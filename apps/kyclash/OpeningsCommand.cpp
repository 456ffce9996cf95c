// SPDX-License-Identifier: Apache-2.0
#include "kyclash/OpeningsCommand.h"

#include <ostream>

#include <nlohmann/json.hpp>

#include "ifchost/HostText.h"
#include "kyclash/CheckRun.h"
#include "kyclash/Interrupt.h"
#include "kyclash/NumberText.h"
#include "kyclash/OutputFile.h"
#include "kyclash/Progress.h"
#include "kyclash/ResultTables.h"

namespace kyclash {
namespace {

using ifchost::IfcWorkset;
using ifchost::ToUtf8;
using Json = nlohmann::ordered_json;
using KYCOLLISION::RESULT::CExistingHole;

std::string GlobalIdOf(const IfcWorkset& workset, int project, const std::wstring& guid) {
    const auto* component = workset.FindComponent(project, guid);
    return component == nullptr ? std::string() : workset.GlobalId(*component);
}

std::string SizeText(const CExistingHole& opening) {
    if (opening.holeWidth == 0 && opening.holeHeight == 0) return std::to_string(opening.holeSize);
    return std::to_string(opening.holeWidth) + " x " + std::to_string(opening.holeHeight);
}

void WriteText(const std::vector<Opening>& openings, const IfcWorkset& workset, std::ostream& out) {
    std::wstring floor;
    bool isFirst = true;
    for (const Opening& opening : openings) {
        if (isFirst || opening->floorName != floor) {
            floor = opening->floorName;
            out << "floor " << ToUtf8(floor) << '\n';
        }
        isFirst = false;
        out << "  " << OpeningTypeText(opening->holeType) << "  \"" << ToUtf8(opening->attInfo.Name)
            << "\"  " << GlobalIdOf(workset, opening->projId, opening->objGuid) << ": "
            << OpeningShapeText(opening->holeShape) << ' ' << SizeText(*opening)
            << " mm, elevation " << ToUtf8(opening->holeElev) << ", center "
            << ToUtf8(opening->holeCenter) << '\n';
    }
    out << CountText(openings.size(), "opening") << '\n';
}

Json ToJson(const CExistingHole& opening, const IfcWorkset& workset) {
    return {{"project", opening.projId},
            {"floor", ToUtf8(opening.floorName)},
            {"type", OpeningTypeText(opening.holeType)},
            {"typeCode", opening.holeType},
            {"name", ToUtf8(opening.attInfo.Name)},
            {"guid", GlobalIdOf(workset, opening.projId, opening.objGuid)},
            {"hostGuid", GlobalIdOf(workset, opening.projId, opening.parentId)},
            {"shape", OpeningShapeText(opening.holeShape)},
            {"center", ToUtf8(opening.holeCenter)},
            {"elevation", ToUtf8(opening.holeElev)},
            {"size", opening.holeSize},
            {"width", opening.holeWidth},
            {"height", opening.holeHeight}};
}

void Write(const OpeningsOptions& options, const std::vector<Opening>& openings,
           const IfcWorkset& workset, std::ostream& out) {
    if (options.format == ReportFormat::Text) {
        WriteText(openings, workset, out);
        return;
    }
    Json list = Json::array();
    for (const Opening& opening : openings)
        list.push_back(ToJson(*opening, workset));
    out << list.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

ExitCode RunOpenings(const OpeningsOptions& options, std::ostream& out, std::ostream& errors) {
    const Interrupt interrupt;
    Progress progress(options.quiet ? ProgressMode::Off : DetectProgressMode());
    const auto workset = LoadWorkset(options.load, progress);
    if (!workset) return Interrupt::Requested() ? kExitStopped : kExitUnreadable;
    const auto floors = ChooseFloors(workset->CollisionFloors(), options.floors);
    if (!floors) return kExitWrongUse;
    progress.Show("build", "openings");
    CheckRun run(workset, nullptr);
    progress.Clear();
    const auto openings = run.Openings(*floors);
    Write(options, openings, *workset, out);
    if (!options.csv) return kExitDone;
    if (const auto reason = ReplaceFile(*options.csv, OpeningTable(openings, *workset))) {
        errors << "kyclash: " << *reason << '\n';
        return kExitUnreadable;
    }
    return kExitDone;
}

}  // namespace kyclash
