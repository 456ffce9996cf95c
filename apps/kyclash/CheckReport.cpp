// SPDX-License-Identifier: Apache-2.0
#include "kyclash/CheckReport.h"

#include <cstdio>
#include <ostream>

#include <nlohmann/json.hpp>

namespace kyclash {
namespace {

using Json = nlohmann::ordered_json;

// So many pairs of a floor are named when the list is shortened.
constexpr std::size_t kShortList = 20;

std::string Fixed(double value, int decimals) {
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*f", decimals, value);
    return buffer.data();
}

std::string PointText(const std::array<double, 3>& point) {
    return Fixed(point[0], 0) + ", " + Fixed(point[1], 0) + ", " + Fixed(point[2], 0);
}

std::string ComponentText(const ReportedComponent& component) {
    const std::string name = component.name.empty() ? component.ifcClass : component.name;
    return component.category + "  \"" + name + "\"  " + component.guid;
}

void WriteModels(const CheckReport& report, std::ostream& out) {
    for (const ReportedModel& model : report.models) {
        out << model.file << " (" << model.schema << "): " << model.products << " products, "
            << model.checked << " checked, " << model.triangles << " triangles\n";
        for (const auto& [reason, count] : model.skipped) {
            out << "  not checked: " << count << "  " << reason << '\n';
        }
        for (const std::string& warning : model.warnings)
            out << "  warning: " << warning << '\n';
    }
    for (const auto& [kind, count] : report.unmapped) {
        out << "no mapping rule for " << count << " x " << kind << '\n';
    }
    if (report.localOrigin != std::array<double, 3>{}) {
        out << "local origin of the run: " << PointText(report.localOrigin)
            << " mm (points are written in world coordinates)\n";
    }
}

void WriteFloor(const ReportedFloor& floor, PairListing listing, std::ostream& out) {
    out << "\nfloor " << floor.name << ": " << floor.components << " components, "
        << floor.candidatePairs << " candidate pairs, " << floor.clashes.size() << " clashes\n";
    std::size_t number = 0;
    for (const ReportedClash& clash : floor.clashes) {
        if (listing == PairListing::Shortened && number == kShortList) {
            out << "  ... and " << floor.clashes.size() - number
                << " more (--list names them all)\n";
            return;
        }
        out << "  " << ++number << ". " << ComponentText(clash.main) << "\n      x "
            << ComponentText(clash.second) << "\n      at " << PointText(clash.point) << '\n';
    }
}

void WriteText(const CheckReport& report, PairListing listing, std::ostream& out) {
    WriteModels(report, out);
    std::size_t components = 0;
    std::size_t candidates = 0;
    std::size_t clashes = 0;
    for (const ReportedFloor& floor : report.floors) {
        WriteFloor(floor, listing, out);
        components += floor.components;
        candidates += floor.candidatePairs;
        clashes += floor.clashes.size();
    }
    const ReportedCost& cost = report.cost;
    out << "\ntotal: " << report.floors.size() << " floors, " << components << " components, "
        << candidates << " candidate pairs, " << clashes << " clashes\n"
        << "read " << Fixed(cost.readSeconds, 2) << " s, build " << Fixed(cost.buildSeconds, 2)
        << " s, check " << Fixed(cost.checkSeconds, 2) << " s, results "
        << Fixed(cost.resultSeconds, 2) << " s, peak memory " << cost.peakMegabytes << " MB\n";
    if (report.stopped) out << "stopped: the list is not complete\n";
}

Json ToJson(const ReportedComponent& component) {
    return {{"file", component.file},
            {"guid", component.guid},
            {"ifcClass", component.ifcClass},
            {"name", component.name},
            {"category", component.category}};
}

Json ToJson(const ReportedFloor& floor) {
    Json clashes = Json::array();
    for (const ReportedClash& clash : floor.clashes) {
        clashes.push_back({{"main", ToJson(clash.main)},
                           {"second", ToJson(clash.second)},
                           {"point", clash.point},
                           {"bodyOffsets", clash.bodyOffsets}});
    }
    return {{"name", floor.name},
            {"components", floor.components},
            {"candidatePairs", floor.candidatePairs},
            {"clashes", std::move(clashes)}};
}

Json ToJson(const ReportedModel& model) {
    return {{"file", model.file},          {"schema", model.schema},
            {"sha256", model.contentHash}, {"products", model.products},
            {"checked", model.checked},    {"triangles", model.triangles},
            {"skipped", model.skipped},    {"warnings", model.warnings}};
}

void WriteJson(const CheckReport& report, std::ostream& out) {
    Json models = Json::array();
    for (const ReportedModel& model : report.models)
        models.push_back(ToJson(model));
    Json floors = Json::array();
    for (const ReportedFloor& floor : report.floors)
        floors.push_back(ToJson(floor));
    const Json document = {{"models", std::move(models)},
                           {"localOrigin", report.localOrigin},
                           {"unmapped", report.unmapped},
                           {"floors", std::move(floors)},
                           {"stopped", report.stopped},
                           {"seconds",
                            {{"read", report.cost.readSeconds},
                             {"build", report.cost.buildSeconds},
                             {"check", report.cost.checkSeconds},
                             {"results", report.cost.resultSeconds}}},
                           {"peakMegabytes", report.cost.peakMegabytes}};
    // Names come from files that may hold broken text; a report with a replacement character is
    // worth more than none.
    out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

void WriteReport(const CheckReport& report, ReportFormat format, PairListing listing,
                 std::ostream& out) {
    if (format == ReportFormat::Json) {
        WriteJson(report, out);
    } else {
        WriteText(report, listing, out);
    }
}

}  // namespace kyclash
