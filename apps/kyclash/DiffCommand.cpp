// SPDX-License-Identifier: Apache-2.0
#include "kyclash/DiffCommand.h"

#include <ostream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "ifchost/HostText.h"
#include "kyclash/ClashHistory.h"
#include "kyclash/GlobalIdOf.h"

namespace kyclash {
namespace {

using ifchost::ToUtf8;
using Json = nlohmann::ordered_json;
using KYCOLLISION::RESULT::KyResultItem;
using Items = std::vector<const KyResultItem*>;

// The same clash in both files.
struct Change {
    const KyResultItem* before = nullptr;
    const KyResultItem* after = nullptr;
    std::vector<std::string> what;
};

struct Difference {
    Items added;
    Items gone;
    std::vector<Change> changed;
    std::size_t same = 0;
};

std::vector<std::string> WhatChanged(const KyResultItem& before, const KyResultItem& after) {
    std::vector<std::string> what;
    if (!before.IsSameResult_MainInfo(&after)) what.emplace_back("components");
    if (!IsSamePlace(before, after)) what.emplace_back("place");
    if (!before.IsSameResult_CanBeEditInfo(&after)) what.emplace_back("handling");
    return what;
}

Difference Compare(const Items& before, const Items& after) {
    Difference difference;
    const Matches matches = MatchClashes(after, before);
    std::vector<bool> isMatched(before.size(), false);
    for (std::size_t i = 0; i < after.size(); ++i) {
        if (!matches[i]) {
            difference.added.push_back(after[i]);
            continue;
        }
        const KyResultItem* earlier = before[*matches[i]];
        isMatched[*matches[i]] = true;
        auto what = WhatChanged(*earlier, *after[i]);
        if (what.empty()) {
            ++difference.same;
        } else {
            difference.changed.push_back({earlier, after[i], std::move(what)});
        }
    }
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (!isMatched[i]) difference.gone.push_back(before[i]);
    }
    return difference;
}

std::string SideText(const SObjAttInfo& info, const std::wstring& guid) {
    return ToUtf8(info.Specialty) + "/" + ToUtf8(info.Category) + "/" + ToUtf8(info.Subcategory) +
           "  \"" + ToUtf8(info.Name) + "\"  " + GlobalIdOf(guid).value_or(ToUtf8(guid));
}

void WriteItem(const char* mark, const KyResultItem& item, std::ostream& out) {
    out << mark << ToUtf8(item.GetFloorA()) << ": "
        << SideText(item.GetAttInfoA(), item.GetObjGuidA()) << "\n      x "
        << SideText(item.GetAttInfoB(), item.GetObjGuidB()) << "\n      at "
        << ToUtf8(item.GetPosition()) << '\n';
}

void WriteText(const Difference& difference, std::ostream& out) {
    for (const KyResultItem* item : difference.added)
        WriteItem("+ ", *item, out);
    for (const KyResultItem* item : difference.gone)
        WriteItem("- ", *item, out);
    for (const Change& change : difference.changed) {
        WriteItem("~ ", *change.after, out);
        out << "      differs in";
        for (const std::string& what : change.what)
            out << ' ' << what;
        out << '\n';
    }
    out << difference.added.size() << " new, " << difference.gone.size() << " gone, "
        << difference.changed.size() << " changed, " << difference.same << " the same\n";
}

Json ToJson(const KyResultItem& item) {
    return {{"floorA", ToUtf8(item.GetFloorA())},     {"projectA", item.GetProjectA()},
            {"objectA", ToUtf8(item.GetObjGuidA())},  {"floorB", ToUtf8(item.GetFloorB())},
            {"projectB", item.GetProjectB()},         {"objectB", ToUtf8(item.GetObjGuidB())},
            {"position", ToUtf8(item.GetPosition())}, {"offsets", ToUtf8(item.GetClashModel())},
            {"state", item.GetDisposeState()},        {"remark", ToUtf8(item.GetRemark())}};
}

Json ToJson(const Items& items) {
    Json list = Json::array();
    for (const KyResultItem* item : items)
        list.push_back(ToJson(*item));
    return list;
}

void WriteJson(const Difference& difference, std::ostream& out) {
    Json changed = Json::array();
    for (const Change& change : difference.changed) {
        changed.push_back({{"differsIn", change.what},
                           {"before", ToJson(*change.before)},
                           {"after", ToJson(*change.after)}});
    }
    const Json document = {{"new", ToJson(difference.added)},
                           {"gone", ToJson(difference.gone)},
                           {"changed", std::move(changed)},
                           {"same", difference.same}};
    out << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace

ExitCode RunDiff(const DiffOptions& options, std::ostream& out, std::ostream& errors) {
    std::string oldError;
    std::string newError;
    const auto before = ReadResultFile(options.oldFile, oldError);
    const auto after = ReadResultFile(options.newFile, newError);
    if (!before) errors << "kyclash: " << oldError << '\n';
    if (!after) errors << "kyclash: " << newError << '\n';
    if (!before || !after) return kExitUnreadable;
    const Difference difference = Compare(BorrowItems(*before), BorrowItems(*after));
    if (options.format == ReportFormat::Json) {
        WriteJson(difference, out);
    } else {
        WriteText(difference, out);
    }
    return kExitDone;
}

}  // namespace kyclash
