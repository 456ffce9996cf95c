// SPDX-License-Identifier: Apache-2.0
#include "scenes/Outcome.h"

#include <algorithm>
#include <sstream>

#include "platform/Text.h"

namespace kycb::scenes {

namespace {

using Lines = std::vector<std::string>;

std::string Utf8(const std::wstring& text) {
    return text::ToUtf8(text);
}

std::string KeyText(const FloorKey& key) {
    return std::to_string(key.first) + ":" + Utf8(key.second);
}

std::optional<std::string> FirstDifference(const std::string& what, const Lines& expected,
                                           const Lines& found) {
    const std::size_t count = std::max(expected.size(), found.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::string wanted = i < expected.size() ? expected[i] : "nothing more";
        const std::string got = i < found.size() ? found[i] : "nothing more";
        if (wanted != got) return what + ": expected " + wanted + "\n    found " + got;
    }
    return std::nullopt;
}

std::string RecordText(const Record& record) {
    std::ostringstream text;
    text.precision(17);
    text << "with " << record.other << " at offsets " << record.ownOffset << ","
         << record.otherOffset << " in " << record.point.GetX() << "," << record.point.GetY() << ","
         << record.point.GetZ();
    return text.str();
}

Lines LinesOf(const Neighbours& neighbours) {
    Lines lines;
    for (std::size_t i = 0; i < neighbours.size(); ++i) {
        std::string line = std::to_string(i) + ":";
        for (const std::size_t other : neighbours[i]) {
            line += " " + std::to_string(other);
        }
        lines.push_back(line);
    }
    return lines;
}

Lines LinesOf(const Records& records) {
    Lines lines;
    for (std::size_t i = 0; i < records.size(); ++i) {
        std::string line = std::to_string(i) + ":";
        for (const Record& record : records[i]) {
            line += " " + RecordText(record) + ";";
        }
        lines.push_back(line);
    }
    return lines;
}

Lines LinesOf(const std::vector<MeshCall>& calls) {
    Lines lines;
    for (const MeshCall& call : calls) {
        lines.push_back(std::to_string(call.projectId) + " " + Utf8(call.id) + " " +
                        std::to_string(call.bodyOffset));
    }
    return lines;
}

Lines ProgressLines(const CheckOutcome& outcome) {
    return {"answer " + std::to_string(outcome.answer), outcome.done ? "done" : "not done",
            "floor " + Utf8(outcome.floor), "total " + std::to_string(outcome.total),
            "checked " + std::to_string(outcome.checked)};
}

std::string InfoText(const SObjAttInfo& info) {
    return Utf8(info.Specialty + L"|" + info.Category + L"|" + info.Subcategory + L"|" + info.Name +
                L"|" + info.SysCode);
}

std::string SideText(int project, const std::wstring& floor, const std::wstring& guid,
                     const SObjAttInfo& info, const std::wstring& height) {
    return std::to_string(project) + " " + Utf8(floor) + " " + Utf8(guid) + " " + InfoText(info) +
           " height " + Utf8(height);
}

std::string ItemText(const ResultFields& item) {
    return SideText(item.projectA, item.floorA, item.guidA, item.infoA, item.heightA) + " & " +
           SideText(item.projectB, item.floorB, item.guidB, item.infoB, item.heightB) + " at " +
           Utf8(item.position) + " (" + Utf8(item.axisPos) + ") model " + Utf8(item.clashModel);
}

std::string ItemText(const KYCOLLISION::RESULT::CExistingHole& hole) {
    std::ostringstream text;
    text << SideText(hole.projId, hole.floorName, hole.objGuid, hole.attInfo, hole.holeElev)
         << " type " << hole.holeType << " shape " << hole.holeShape << " size " << hole.holeSize
         << "," << hole.holeWidth << "," << hole.holeHeight << " " << Utf8(hole.holeCenter)
         << " in " << Utf8(hole.parentId);
    return text.str();
}

template <class Items>
Lines LinesOf(const Items& items, const std::string& error) {
    Lines lines;
    for (const auto& [key, ofFloor] : items) {
        for (const auto& item : ofFloor) {
            lines.push_back(KeyText(key) + " " + ItemText(item));
        }
    }
    lines.push_back("error '" + error + "'");
    return lines;
}

}  // namespace

std::optional<std::string> Difference(const Neighbours& expected, const Neighbours& found) {
    return FirstDifference("neighbours", LinesOf(expected), LinesOf(found));
}

std::optional<std::string> Difference(const CheckOutcome& expected, const CheckOutcome& found) {
    if (auto d = FirstDifference("progress", ProgressLines(expected), ProgressLines(found))) {
        return d;
    }
    if (auto d = FirstDifference("records", LinesOf(expected.records), LinesOf(found.records))) {
        return d;
    }
    return FirstDifference("mesh asked for", LinesOf(expected.meshCalls), LinesOf(found.meshCalls));
}

std::optional<std::string> Difference(const ResultOutcome& expected, const ResultOutcome& found) {
    if (auto d = FirstDifference("count before results", {std::to_string(expected.countBefore)},
                                 {std::to_string(found.countBefore)})) {
        return d;
    }
    if (auto d = FirstDifference("results", LinesOf(expected.items, expected.error),
                                 LinesOf(found.items, found.error))) {
        return d;
    }
    return FirstDifference("records after results", LinesOf(expected.remaining),
                           LinesOf(found.remaining));
}

std::optional<std::string> Difference(const Refreshed& expected, const Refreshed& found) {
    return FirstDifference("refreshed result", {ItemText(expected.item), expected.error},
                           {ItemText(found.item), found.error});
}

std::optional<std::string> Difference(const HoleOutcome& expected, const HoleOutcome& found) {
    return FirstDifference("openings", LinesOf(expected.items, expected.error),
                           LinesOf(found.items, found.error));
}

}  // namespace kycb::scenes
