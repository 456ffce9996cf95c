// SPDX-License-Identifier: Apache-2.0
#include "kyclash/CheckReport.h"

#include <algorithm>
#include <ostream>
#include <utility>

#include <nlohmann/json.hpp>

#include "kyclash/NumberText.h"

namespace kyclash {
namespace {

using Json = nlohmann::ordered_json;

// So many pairs of a floor are named when the list is shortened.
constexpr std::size_t kShortList = 20;
// So many names of a longer list, remarks on the rules, digits of a hash.
constexpr std::size_t kShownNames = 5;
constexpr std::size_t kShownRemarks = 20;
// So many warnings of one sort about one model.
constexpr std::size_t kShownWarnings = 3;
constexpr std::size_t kShownDigits = 12;

std::string PointText(const std::array<double, 3>& point) {
    return WholeText(point[0]) + ", " + WholeText(point[1]) + ", " + WholeText(point[2]);
}

// One model needs no name at each component.
enum class FileNaming { Named, Omitted };

std::string ComponentText(const ReportedComponent& component, FileNaming naming) {
    const std::string name = component.name.empty() ? component.ifcClass : component.name;
    const std::string text = component.category + "  \"" + name + "\"  " + component.guid;
    return naming == FileNaming::Omitted || component.file.empty()
               ? text
               : text + "  (" + component.file + ")";
}

// "a, b, c and 5 more"
std::string ShortText(const std::vector<std::string>& items) {
    std::string text;
    const std::size_t shown = std::min(items.size(), kShownNames);
    for (std::size_t i = 0; i < shown; ++i)
        text += (i > 0 ? ", " : "") + items[i];
    if (shown < items.size()) text += " and " + std::to_string(items.size() - shown) + " more";
    return text;
}

std::string CountsText(const std::map<std::string, std::size_t>& counts) {
    std::string text;
    for (const auto& [name, count] : counts) {
        text += text.empty() ? "" : ", ";
        text += name + " for " + CountText(count, "kind");
    }
    return text;
}

// Enough of a hash to tell two files apart at a glance; the JSON report has all of it.
std::string ShortHash(const std::string& hash) {
    return hash.empty() ? std::string() : " (sha256 " + hash.substr(0, kShownDigits) + ")";
}

void WriteKinds(const char* text, const std::vector<ReportedKind>& kinds, std::ostream& out) {
    for (const ReportedKind& kind : kinds)
        out << text << kind.components << " x " << kind.path << '\n';
}

void WriteRules(const ReportedRules& rules, PairListing listing, std::ostream& out) {
    out << "rules: " << rules.file << ShortHash(rules.contentHash) << '\n';
    if (!rules.modes.empty()) out << "  modes: " << CountsText(rules.modes) << '\n';
    if (!rules.filters.empty()) out << "  filters: " << CountsText(rules.filters) << '\n';
    const bool isShort = listing == PairListing::Shortened;
    const std::size_t shown =
        isShort ? std::min(rules.remarks.size(), kShownRemarks) : rules.remarks.size();
    for (std::size_t i = 0; i < shown; ++i)
        out << "  warning: " << rules.remarks[i] << '\n';
    if (shown < rules.remarks.size()) {
        out << "  warning: and " << rules.remarks.size() - shown
            << " more remarks (kyclash rules validate names them all)\n";
    }
    WriteKinds("  warning: not checked, for want of a rule: ", rules.withoutRule, out);
    WriteKinds("  switched off by its rule: ", rules.switchedOff, out);
    if (rules.withoutComponent.empty()) return;
    out << "  warning: " << CountText(rules.withoutComponent.size(), "rule")
        << " matched no component: " << ShortText(rules.withoutComponent) << '\n';
}

void WriteUse(const CheckReport& report, PairListing listing, std::ostream& out) {
    out << "kyclash " << report.version << ", mapping: " << report.mapping << ", "
        << report.circleSegments << " chords a circle\n";
    WriteRules(report.rules, listing, out);
}

void WriteHistory(const CheckReport& report, std::ostream& out) {
    if (!report.history) return;
    out << "compared with " << report.history->file << ":";
    for (std::size_t i = 0; i < kClashStatusCount; ++i) {
        out << (i > 0 ? ", " : " ") << report.history->counts[i] << ' '
            << StatusText(static_cast<ClashStatus>(i));
    }
    out << '\n';
}

// Sort by sort, in the order in which these are met first.
void WriteWarnings(const std::vector<ReportedWarning>& warnings, PairListing listing,
                   std::ostream& out) {
    std::vector<std::string> sorts;
    std::map<std::string, std::vector<const ReportedWarning*>> bySort;
    for (const ReportedWarning& warning : warnings) {
        auto& list = bySort[warning.sort];
        if (list.empty()) sorts.push_back(warning.sort);
        list.push_back(&warning);
    }
    for (const std::string& sort : sorts) {
        const auto& list = bySort[sort];
        const std::size_t shown =
            listing == PairListing::Shortened ? std::min(list.size(), kShownWarnings) : list.size();
        for (std::size_t i = 0; i < shown; ++i)
            out << "  warning: " << list[i]->text << '\n';
        if (shown < list.size()) {
            out << "  warning: and " << list.size() - shown
                << " more of this sort (--list names them all)\n";
        }
    }
}

void WriteModels(const CheckReport& report, PairListing listing, std::ostream& out) {
    for (const ReportedModel& model : report.models) {
        out << model.file << ShortHash(model.contentHash) << ", " << model.schema << ": "
            << CountText(model.products, "product") << ", " << model.checked << " checked, "
            << CountText(model.triangles, "triangle") << '\n';
        for (const auto& [reason, count] : model.skipped) {
            out << "  not checked: " << count << "  " << reason << '\n';
        }
        WriteWarnings(model.warnings, listing, out);
    }
    for (const std::string& warning : report.warnings)
        out << "warning: " << warning << '\n';
    for (const auto& [kind, count] : report.unmapped) {
        out << "no mapping rule for " << count << " x " << kind << '\n';
    }
    if (report.localOrigin != std::array<double, 3>{}) {
        out << "local origin of the run: " << PointText(report.localOrigin)
            << " mm (points are written in world coordinates)\n";
    }
}

void WriteClashes(const std::vector<ReportedClash>& clashes, const CheckReport& report,
                  PairListing listing, std::ostream& out) {
    const auto naming = report.models.size() > 1 ? FileNaming::Named : FileNaming::Omitted;
    std::size_t number = 0;
    for (const ReportedClash& clash : clashes) {
        if (listing == PairListing::Shortened && number == kShortList) {
            out << "  ... and " << clashes.size() - number << " more (--list names them all)\n";
            return;
        }
        out << "  " << ++number << ". " << ComponentText(clash.main, naming) << "\n      x "
            << ComponentText(clash.second, naming) << "\n      at " << PointText(clash.point);
        if (!clash.axisPosition.empty()) out << ", axes " << clash.axisPosition;
        if (report.history) out << ", " << StatusText(clash.status);
        out << '\n';
    }
}

void WriteFloor(const ReportedFloor& floor, const CheckReport& report, PairListing listing,
                std::ostream& out) {
    out << "\nfloor " << floor.name << ": " << CountText(floor.components, "component") << ", "
        << CountText(floor.candidatePairs, "candidate pair") << ", "
        << CountText(floor.clashes.size(), "clash", "clashes") << '\n';
    for (const ReportedKindPair& pair : floor.kindPairs) {
        // The first pair is the most frequent one.
        out << "  " << ColumnText(pair.count, floor.kindPairs.front().count) << "  " << pair.main
            << " x " << pair.second << '\n';
    }
    WriteClashes(floor.clashes, report, listing, out);
}

void WriteGone(const CheckReport& report, PairListing listing, std::ostream& out) {
    if (!report.history || report.history->gone.empty()) return;
    out << "\ngone: " << CountText(report.history->gone.size(), "clash", "clashes") << '\n';
    WriteClashes(report.history->gone, report, listing, out);
}

void WriteText(const CheckReport& report, PairListing listing, std::ostream& out) {
    WriteUse(report, listing, out);
    WriteModels(report, listing, out);
    std::size_t components = 0;
    std::size_t candidates = 0;
    std::size_t clashes = 0;
    for (const ReportedFloor& floor : report.floors) {
        WriteFloor(floor, report, listing, out);
        components += floor.components;
        candidates += floor.candidatePairs;
        clashes += floor.clashes.size();
    }
    WriteGone(report, listing, out);
    const ReportedCost& cost = report.cost;
    out << "\ntotal: " << CountText(report.floors.size(), "floor") << ", "
        << CountText(components, "component") << ", " << CountText(candidates, "candidate pair")
        << ", " << CountText(clashes, "clash", "clashes") << '\n'
        << "read " << FixedText(cost.readSeconds, 2) << " s, build "
        << FixedText(cost.buildSeconds, 2) << " s, check " << FixedText(cost.checkSeconds, 2)
        << " s, results " << FixedText(cost.resultSeconds, 2) << " s, peak memory "
        << cost.peakMegabytes << " MB\n";
    WriteHistory(report, out);
    for (const std::string& file : report.writtenFiles)
        out << "written: " << file << '\n';
    if (report.stopped) out << "stopped: the list is not complete\n";
}

Json ToJson(const ReportedComponent& component) {
    return {{"file", component.file},
            {"guid", component.guid},
            {"ifcClass", component.ifcClass},
            {"name", component.name},
            {"category", component.category}};
}

Json ToJson(const std::vector<ReportedClash>& clashes) {
    Json list = Json::array();
    for (const ReportedClash& clash : clashes) {
        list.push_back({{"main", ToJson(clash.main)},
                        {"second", ToJson(clash.second)},
                        {"point", clash.point},
                        {"axisPosition", clash.axisPosition},
                        {"bodyOffsets", clash.bodyOffsets},
                        {"status", StatusText(clash.status)}});
    }
    return list;
}

Json ToJson(const ReportedFloor& floor) {
    Json pairs = Json::array();
    for (const ReportedKindPair& pair : floor.kindPairs)
        pairs.push_back({{"main", pair.main}, {"second", pair.second}, {"clashes", pair.count}});
    return {{"name", floor.name},
            {"components", floor.components},
            {"candidatePairs", floor.candidatePairs},
            {"kindPairs", std::move(pairs)},
            {"clashes", ToJson(floor.clashes)}};
}

Json ToJson(const std::vector<ReportedKind>& kinds) {
    Json list = Json::array();
    for (const ReportedKind& kind : kinds)
        list.push_back({{"kind", kind.path}, {"components", kind.components}});
    return list;
}

Json ToJson(const ReportedRules& rules) {
    return {{"file", rules.file},
            {"sha256", rules.contentHash},
            {"modes", rules.modes},
            {"filters", rules.filters},
            {"remarks", rules.remarks},
            {"withoutComponent", rules.withoutComponent},
            {"switchedOff", ToJson(rules.switchedOff)},
            {"withoutRule", ToJson(rules.withoutRule)}};
}

// Null without a run to compare with.
Json ToJson(const std::optional<ReportedHistory>& history) {
    if (!history) return nullptr;
    Json counts = Json::object();
    for (std::size_t i = 0; i < kClashStatusCount; ++i)
        counts[std::string(StatusText(static_cast<ClashStatus>(i)))] = history->counts[i];
    return {
        {"file", history->file}, {"counts", std::move(counts)}, {"gone", ToJson(history->gone)}};
}

Json ToJson(const ReportedModel& model) {
    Json warnings = Json::array();
    for (const ReportedWarning& warning : model.warnings)
        warnings.push_back(warning.text);
    return {{"file", model.file},          {"schema", model.schema},
            {"sha256", model.contentHash}, {"products", model.products},
            {"checked", model.checked},    {"triangles", model.triangles},
            {"skipped", model.skipped},    {"warnings", std::move(warnings)}};
}

void WriteJson(const CheckReport& report, std::ostream& out) {
    Json models = Json::array();
    for (const ReportedModel& model : report.models)
        models.push_back(ToJson(model));
    Json floors = Json::array();
    for (const ReportedFloor& floor : report.floors)
        floors.push_back(ToJson(floor));
    const Json document = {{"version", report.version},
                           {"mapping", report.mapping},
                           {"circleSegments", report.circleSegments},
                           {"rules", ToJson(report.rules)},
                           {"previous", ToJson(report.history)},
                           {"written", report.writtenFiles},
                           {"models", std::move(models)},
                           {"warnings", report.warnings},
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
