// SPDX-License-Identifier: Apache-2.0
// From recorded clashes to results.
#include <algorithm>
#include <cmath>
#include <cwchar>
#include <stdexcept>

#include "scenes/reference/Attributes.h"
#include "scenes/reference/Axes.h"
#include "scenes/reference/Reference.h"
#include "scenes/reference/Texts.h"

namespace kycb::scenes::reference {

namespace {

constexpr int kUnlistedPriority = 1000;
/// A support that is smaller by less than this (mm) still ranks first.
constexpr double kSizeMargin = 0.1;
/// First section values that differ by less than this (mm) are equal.
constexpr double kSectionTolerance = 0.001;

std::wstring PointText(const Point& point) {
    wchar_t text[128];
    std::swprintf(text, 128, L"%.2f,%.2f,%.2f", point.GetX(), point.GetY(), point.GetZ());
    return text;
}

Point PointOf(const ResultFields& item) {
    const std::vector<std::wstring> parts = Split(item.position, L",");
    return {PlainDouble(parts.at(0)), PlainDouble(parts.at(1)), PlainDouble(parts.at(2))};
}

double DistanceFromOrigin(const Point& point) {
    return std::hypot(point.GetX(), point.GetY(), point.GetZ());
}

std::wstring ModelText(const AttCategory& kind, int bodyOffset) {
    return kind.specialty == L"Tekla" ? kind.dalei : std::to_wstring(bodyOffset);
}

// Takes the first record with `other` away.
void RemoveFirst(std::vector<Record>& records, std::size_t other) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const Record& record) { return record.other == other; });
    if (found != records.end()) records.erase(found);
}

bool IsSectionHigher(const std::array<double, 3>& a, const std::array<double, 3>& b) {
    if (a[0] > 0.0 && a[1] > 0.0 && b[0] > 0.0 && b[1] > 0.0) {
        if (std::abs(a[0] - b[0]) >= kSectionTolerance) return a[0] + kSizeMargin > b[0];
        return a[1] + kSizeMargin > b[1];
    }
    if (a[2] <= 0.0 || b[2] <= 0.0) return true;
    return a[2] + kSizeMargin > b[2];
}

}  // namespace

int Reference::PriorityOf(const AttCategory& kind) const {
    const auto listed = scene_.priorities.find(CategoryPath(kind));
    return listed == scene_.priorities.end() ? kUnlistedPriority : listed->second;
}

// Which of two components of one kind ranks first.
bool Reference::IsPriorityHigher(const Component& a, const Component& b) const {
    const SceneComponent& inputA = *a.input;
    const SceneComponent& inputB = *b.input;
    if (inputA.name == inputB.name) {
        const auto lengthA = SupportLength(inputA.attributes);
        const auto lengthB = SupportLength(inputB.attributes);
        if (lengthA && lengthB) return *lengthA + kSizeMargin > *lengthB;
        return GbkBytes(inputA.guid) < GbkBytes(inputB.guid);
    }
    const auto sectionA = SupportSection(inputA.attributes);
    const auto sectionB = SupportSection(inputB.attributes);
    if (sectionA && sectionB) return IsSectionHigher(*sectionA, *sectionB);
    return GbkBytes(inputA.name) < GbkBytes(inputB.name);
}

// Whether `a` is the main component of the pair.
bool Reference::IsMain(const Component& a, const AttCategory& kindA, const Component& b,
                       const AttCategory& kindB) const {
    const bool isTeklaA = kindA.specialty == L"Tekla";
    const bool isTeklaB = kindB.specialty == L"Tekla";
    if (isTeklaA != isTeklaB) return isTeklaA;
    if (isTeklaA) {
        const std::wstring nameA = ThereAndBack(a.input->name);
        const std::wstring nameB = ThereAndBack(b.input->name);
        if (nameA != nameB) return nameA < nameB;
        return ThereAndBack(a.input->guid) < ThereAndBack(b.input->guid);
    }
    const int priorityA = PriorityOf(kindA);
    const int priorityB = PriorityOf(kindB);
    if (priorityA != priorityB) return priorityA < priorityB;
    const std::wstring pathA = ThereAndBack(CategoryPath(kindA));
    const std::wstring pathB = ThereAndBack(CategoryPath(kindB));
    if (pathA != pathB) return pathA < pathB;
    return IsPriorityHigher(a, b);
}

int Reference::CountMainRecords(const Floor& floor) const {
    int count = 0;
    for (const Component* a : ComponentsOf(floor)) {
        for (const Record& record : a->records) {
            const Component& b = components_[record.other];
            if (IsMain(*a, a->kind->category, b, b.kind->category)) ++count;
        }
    }
    return count;
}

// The minor category of the first kind of the floor that holds a component of this GUID.
std::wstring Reference::InlineMinor(const Floor& floor, const std::wstring& guid) const {
    for (const Component* component : ComponentsOf(floor)) {
        if (component->input->guid == guid) return component->kind->category.xiaolei;
    }
    return L"";
}

int Reference::PrioritySum(const ResultFields& item) const {
    return PriorityOf({item.infoA.Specialty, item.infoA.Category, item.infoA.Subcategory}) +
           PriorityOf({item.infoB.Specialty, item.infoB.Category, item.infoB.Subcategory});
}

// `kindB` is the kind of the second component with its minor category looked up on this floor.
ResultFields Reference::MakeResult(const Floor& floor, const Component& a, const Record& record,
                                   const AttCategory& kindB) const {
    const Component& b = components_[record.other];
    const SceneComponent& inA = *a.input;
    const SceneComponent& inB = *b.input;
    const AttCategory& kindA = a.kind->category;
    ResultFields item;
    item.projectA = floor.key.first;
    item.floorA = floor.key.second;
    item.guidA = inA.guid;
    item.projectB = inB.projectId;
    item.floorB = inB.floorName;
    item.guidB = inB.guid;
    item.position = PointText(record.point);
    item.clashModel =
        ModelText(kindA, record.ownOffset) + L"," + ModelText(kindB, record.otherOffset);
    item.infoA = {kindA.specialty, kindA.dalei, kindA.xiaolei, inA.name, inA.syscode};
    const std::wstring minorB = kindB.specialty == L"Revit"
                                    ? HostMinorName(inB.projectId, inB.floorName, inB.guid)
                                    : kindB.xiaolei;
    item.infoB = {kindB.specialty, kindB.dalei, minorB, inB.name, inB.syscode};
    item.heightA = HeightText(inA.attributes, kindA);
    item.heightB = HeightText(inB.attributes, b.kind->category);
    const auto axes = scene_.axes.find(floor.key);
    if (axes == scene_.axes.end()) {
        item.axisPos = AxisPosition(PointOf(item).GetX(), PointOf(item).GetY(), {});
    } else {
        item.axisPos = AxisPosition(PointOf(item).GetX(), PointOf(item).GetY(), axes->second);
    }
    return item;
}

// Whether a result takes the place of one for the same two GUIDs. Only where a Tekla component is
// involved does the earlier one have a chance.
bool Reference::DisplacesStored(const ResultFields& stored, const AttCategory& kindA,
                                const AttCategory& kindB, const Point& point) const {
    if (kindA.specialty != L"Tekla" && kindB.specialty != L"Tekla") return true;
    const int sum = PriorityOf(kindA) + PriorityOf(kindB);
    const int storedSum = PrioritySum(stored);
    if (sum != storedSum) return sum < storedSum;
    return DistanceFromOrigin(PointOf(stored)) > DistanceFromOrigin(point);
}

std::vector<ResultFields> Reference::ResultsOf(const Floor& floor) {
    std::map<std::wstring, ResultFields> byKey;
    for (Component* a : ComponentsOf(floor)) {
        HeightText(a->input->attributes, a->kind->category);
        const std::vector<Record> before = a->records;
        for (const Record& record : before) {
            Component& b = components_[record.other];
            AttCategory kindB = b.kind->category;
            const std::wstring minor = InlineMinor(floor, b.input->guid);
            if (!minor.empty()) kindB.xiaolei = minor;
            HeightText(b.input->attributes, b.kind->category);
            if (!IsMain(*a, a->kind->category, b, kindB)) continue;
            const std::wstring key = a->input->guid + L"&" + b.input->guid;
            const auto stored = byKey.find(key);
            if (stored == byKey.end() ||
                DisplacesStored(stored->second, a->kind->category, kindB, record.point)) {
                byKey[key] = MakeResult(floor, *a, record, kindB);
            }
            RemoveFirst(b.records, a->index);
        }
    }
    std::vector<ResultFields> results;
    for (const auto& [key, item] : byKey) {
        results.push_back(item);
    }
    return results;
}

// GUIDs are looked up in lower case, in the first kind of the floor that holds one.
void Reference::RefreshSide(const FloorKey& key, const std::wstring& guid, SObjAttInfo& info,
                            std::wstring& height) const {
    const Floor* floor = FindFloor(key);
    if (!floor || guid.empty()) return;
    for (const Component* component : ComponentsOf(*floor)) {
        const SceneComponent& input = *component->input;
        if (input.guid != LowerCase(guid)) continue;
        const AttCategory& kind = component->kind->category;
        info = {kind.specialty, kind.dalei, kind.xiaolei, input.name, input.syscode};
        height = HeightText(input.attributes, kind);
        return;
    }
}

Refreshed Reference::Refresh(const ResultFields& item) const {
    Refreshed refreshed;
    ResultFields& fresh = refreshed.item;
    fresh.projectA = item.projectA;
    fresh.floorA = item.floorA;
    fresh.guidA = item.guidA;
    fresh.projectB = item.projectB;
    fresh.floorB = item.floorB;
    fresh.guidB = item.guidB;
    fresh.position = item.position;
    try {
        RefreshSide({item.projectA, item.floorA}, item.guidA, fresh.infoA, fresh.heightA);
        RefreshSide({item.projectB, item.floorB}, item.guidB, fresh.infoB, fresh.heightB);
    } catch (const std::logic_error& error) {
        refreshed.error = error.what();
    }
    return refreshed;
}

ResultOutcome Reference::GetResults(const SceneRun& run) {
    ResultOutcome outcome;
    for (const Floor* floor : FloorsOf(run)) {
        outcome.countBefore += CountMainRecords(*floor);
    }
    try {
        for (const Floor* floor : FloorsOf(run)) {
            const std::vector<ResultFields> items = ResultsOf(*floor);
            if (!items.empty()) outcome.items[floor->key] = items;
        }
    } catch (const std::logic_error& error) {
        outcome.error = error.what();
    }
    outcome.remaining = AllRecords();
    return outcome;
}

}  // namespace kycb::scenes::reference
