// SPDX-License-Identifier: Apache-2.0
#include "scenes/SceneGenerator.h"

#include <algorithm>
#include <numbers>

#include "scenes/RandomBodies.h"
#include "scenes/reference/Kinds.h"

namespace kycb::scenes {

using reference::AttCategory;
using reference::CategoryPath;
using test::BoundingBox3d;
using test::Random;

namespace {

using Texts = std::vector<std::wstring>;
using Kinds = std::vector<AttCategory>;

void AddKinds(const reference::KindTable& table, Kinds& kinds) {
    for (const reference::KindRow& row : table) {
        if (row.xiaolei.empty()) kinds.emplace_back(row.specialty, row.dalei, L"任何");
        for (const std::wstring& xiaolei : row.xiaolei) {
            kinds.emplace_back(row.specialty, row.dalei, xiaolei);
        }
    }
}

Kinds KindsOf(const reference::KindTable& table) {
    Kinds kinds;
    AddKinds(table, kinds);
    return kinds;
}

// Kinds of imported models, among them several that share a path.
const Kinds& ImportedKinds() {
    static const Kinds kinds = {
        {L"Revit", L"墙", L"墙"},
        {L"Revit", L"墙", L"砖墙"},
        {L"Revit", L"风管", L"矩形"},
        {L"Revit", L"电缆桥架", L"桥架"},
        {L"Tekla", L"钢结构", L"钢梁"},
        {L"Tekla", L"梁", L"钢梁"},
        {L"Tekla", L"混凝土", L"项"},
        {L"Tekla", L"板", L"现浇板"},
        {L"Tekla", L"混凝土", L"混凝土嵌板"},
    };
    return kinds;
}

// Kinds that no table knows, and some that no rule can name or that have no path at all.
const Kinds& OtherKinds() {
    static const Kinds kinds = {
        {L"电气", L"配电设备", L"配电箱"},
        {L"装饰", L"家具", L"桌"},
        {L"暖通", L"风管", L"柔性风管"},
        {L"土建", L"门.窗.洞", L"洞"},
        {L"土建", L"墙", L""},
        {L"土建", L"", L"墙"},
        {L"", L"墙", L"砖墙"},
    };
    return kinds;
}

AttCategory RandomKind(Random& random) {
    static const Kinds members = KindsOf(reference::StructuralMembers());
    static const Kinds runs = KindsOf(reference::ServicesRuns());
    static const Kinds pipes = KindsOf(reference::FilteredPipes());
    static const Kinds openings = KindsOf(reference::Openings());
    static const Kinds measured = KindsOf(reference::MeasuredAtUnderside());
    switch (random.Below(12)) {
        case 0:
        case 1:
        case 2:
            return random.Pick(members);
        case 3:
        case 4:
        case 5:
            return random.Pick(runs);
        case 6:
            return random.Pick(pipes);
        case 7:
            return random.Pick(openings);
        case 8:
            return random.Pick(measured);
        case 9:
        case 10:
            return random.Pick(ImportedKinds());
        default:
            return random.Pick(OtherKinds());
    }
}

// --- Attributes --------------------------------------------------------------------------------

const Texts& NumberTexts() {
    static const Texts texts = {L"0",      L"3000",  L"3000.4", L"2.5",      L"-2.5", L"50.5",
                                L"  400 ", L"12abc", L"1e3",    L"-0.49999", L"200.5"};
    return texts;
}

// Now and then a text that is no number, or no number that fits.
std::wstring HeightNumber(Random& random) {
    static const Texts bad = {L"abc", L"", L"1e999"};
    return random.OneIn(250) ? random.Pick(bad) : random.Pick(NumberTexts());
}

void AddHeights(Random& random, SceneComponent& component) {
    static const Texts types = {L"1", L"2", L"3", L"3", L"4", L"5", L"6", L""};
    if (random.OneIn(4)) return;
    component.Attribute(L"heighttype", random.Pick(types));
    for (const wchar_t* name :
         {L"oneheight", L"sectheight", L"bwthick", L"underheight", L"topheight"}) {
        if (!random.OneIn(6)) component.Attribute(name, HeightNumber(random));
    }
}

std::wstring GuidList(Random& random, const Texts& guids) {
    std::wstring list;
    for (int i = 1 + random.Below(3); i > 0; --i) {
        list += random.OneIn(8) ? L"" : random.Pick(guids);
        if (i > 1 || random.OneIn(3)) list += L",";
    }
    return list;
}

void AddRelated(Random& random, const Texts& guids, SceneComponent& component) {
    if (random.OneIn(10)) component.Attribute(L"relatedobjs", GuidList(random, guids));
    if (random.OneIn(10)) component.Attribute(L"relatedfits", GuidList(random, guids));
}

void AddServiceSizes(Random& random, SceneComponent& component) {
    static const Texts diameters = {L"50",  L"100", L"100.000001", L"100.00002", L"99.99",
                                    L"abc", L"",    L" 80mm",      L"-1"};
    static const Texts ends = {L"0,0,0,3,4,0",     L"0,0,0,3,4,0.5", L"1,1,1,1,1,6.05",
                               L"0,0,0,0,0,5.2,7", L"0,0,0,5,,",     L"0,0,0,5,0,"};
    static const Texts sections = {L"200*100", L"200.0005*100", L"200.05*99", L"200*100.2", L"200*",
                                   L"0*100",   L"*100",         L"200*100*5", L"-1*-1"};
    static const Texts radii = {L"50", L"50.05", L"50.2", L"0", L"x"};
    if (random.OneIn(2)) component.Attribute(L"pipegczj", random.Pick(diameters));
    if (random.OneIn(3)) component.Attribute(L"drawstartendpt", random.Pick(ends));
    if (random.OneIn(3)) component.Attribute(L"sectwidthheight", random.Pick(sections));
    if (random.OneIn(3)) component.Attribute(L"sectradius", random.Pick(radii));
}

void AddOpening(Random& random, SceneComponent& component) {
    static const Texts shapes = {L"1", L" 2x", L"-3", L"round", L"99999999999"};
    static const Texts sizes = {L"800", L"1000,2100", L"1000,2100,5", L"700,", L"", L"1000,,3"};
    if (!random.OneIn(8)) component.Attribute(L"holeshape", random.Pick(shapes));
    if (!random.OneIn(8)) component.Attribute(L"holecenter", L"1,2,3");
    if (!random.OneIn(8)) component.Attribute(L"holeelev", L"±0.000");
    if (!random.OneIn(8)) component.Attribute(L"parentid", L"wall");
    if (random.OneIn(2)) component.Attribute(L"holesize", random.Pick(sizes));
}

// --- Components --------------------------------------------------------------------------------

/// What the components of one scene are made of.
struct Palette {
    Kinds kinds;
    Texts guids;
    std::vector<FloorKey> floors;
    bool hasTwins = false;  ///< GUIDs are drawn with repetition
    Origin origin{};
};

const Texts& GuidTexts() {
    static const Texts texts = {L"g1",  L"g2",  L"g3",   L"g4",  L"g5",  L"g6",
                                L"g7",  L"G1",  L"甲1",  L"乙1", L"丙1", L"ก1",
                                L"각1", L"g10", L"g1&a", L"",    L"a",   L"Z"};
    return texts;
}

Palette MakePalette(Random& random) {
    static const Texts floorNames = {L"B1", L"1F", L"2F", L"首层"};
    Palette palette;
    for (int i = 2 + random.Below(4); i > 0; --i) {
        palette.kinds.push_back(RandomKind(random));
    }
    palette.guids = GuidTexts();
    palette.hasTwins = random.OneIn(3);
    for (int i = 1 + random.Below(3); i > 0; --i) {
        palette.floors.emplace_back(1 + random.Below(2), random.Pick(floorNames));
    }
    if (random.OneIn(10)) palette.origin = {200000.0, -100000.0, 0.0};
    return palette;
}

std::wstring TakeGuid(Random& random, Palette& palette) {
    if (palette.hasTwins) return random.Pick(palette.guids);
    const auto at = palette.guids.begin() + random.Below(static_cast<int>(palette.guids.size()));
    const std::wstring guid = *at;
    palette.guids.erase(at);
    return guid;
}

BoundingBox3d Grown(const BoundingBox3d& box, double margin) {
    if (box.IsNull()) return box;
    return {box.GetMinX() - margin, box.GetMinY() - margin, box.GetMinZ() - margin,
            box.GetMaxX() + margin, box.GetMaxY() + margin, box.GetMaxZ() + margin};
}

Origin RandomPlace(Random& random, const Palette& palette) {
    static const std::vector<double> levels = {0.0, 0.0, 0.0, 0.5, 1.0, 2.0, 250.0, 999.0, 1000.0};
    Origin place = palette.origin;
    place[0] += 250.0 * random.Below(9);
    place[1] += 250.0 * random.Below(9);
    place[2] += random.Pick(levels);
    return place;
}

// A body of its own, or that of an earlier component.
void GiveBody(Random& random, const Palette& palette, const std::vector<SceneComponent>& earlier,
              SceneComponent& component) {
    static const std::vector<double> margins = {0.0, 0.0, 25.0, 75.0, 200.0};
    const bool isCopy = !earlier.empty() && random.OneIn(8);
    component.body =
        isCopy ? random.Pick(earlier).body : RandomBody(random, RandomPlace(random, palette));
    component.box = Grown(BoxAround(component.body), random.Pick(margins));
    if (random.OneIn(60)) component.box = {};
}

void GiveNames(Random& random, SceneComponent& component) {
    static const Texts names = {L"甲梁", L"乙梁", L"丙柱", L"阿板", L"a",   L"B",
                                L"甲",   L"ก甲",  L"ขก",   L"각",   L"甲ก", L""};
    static const Texts syscodes = {L"", L"J1", L"系统"};
    component.name = random.Pick(names);
    component.syscode = random.Pick(syscodes);
    if (random.OneIn(3)) component.partId = L"part:" + component.objectId.substr(4);
}

SceneComponent MakeComponent(Random& random, Palette& palette,
                             const std::vector<SceneComponent>& earlier) {
    SceneComponent component;
    component.objectId = L"obj:" + std::to_wstring(earlier.size());
    component.guid = TakeGuid(random, palette);
    component.category = random.Pick(palette.kinds);
    std::tie(component.projectId, component.floorName) = random.Pick(palette.floors);
    GiveNames(random, component);
    GiveBody(random, palette, earlier, component);
    AddHeights(random, component);
    AddRelated(random, GuidTexts(), component);
    AddServiceSizes(random, component);
    if (reference::ValueOf(reference::Openings(), component.category, 0) != 0) {
        AddOpening(random, component);
    }
    return component;
}

// --- Axes --------------------------------------------------------------------------------------

SceneAxis RandomLine(Random& random) {
    static const std::vector<std::pair<double, double>> directions = {
        {1, 0}, {1, 0}, {0, 1}, {0, 1}, {0, -1}, {0.6, 0.8}, {1, 1}, {-1, 1}, {5, 12}, {1, 1e-3}};
    static const std::vector<double> lengths = {20000.0, 20000.0, 2000.0, 100.0};
    const auto& [dx, dy] = random.Pick(directions);
    const double reach = random.Pick(lengths);
    SceneAxis line;
    const double x = 500.0 * random.Below(8);
    const double y = 500.0 * random.Below(8);
    line.x0 = x - reach * dx;
    line.y0 = y - reach * dy;
    line.x1 = x + reach * dx;
    line.y1 = y + reach * dy;
    return line;
}

SceneAxis RandomArc(Random& random) {
    SceneAxis arc;
    arc.x0 = 500.0 * random.Below(8);
    arc.y0 = 500.0 * random.Below(8);
    arc.radius = 500.0 * (1 + random.Below(20));
    arc.startAngle = std::numbers::pi / 4.0 * random.Below(8);
    arc.sweepAngle = std::numbers::pi / 4.0 * (1 + random.Below(8));
    return arc;
}

std::vector<SceneAxis> MakeAxes(Random& random, const Origin& origin) {
    std::vector<SceneAxis> axes;
    for (int i = random.Below(7); i > 0; --i) {
        SceneAxis axis = random.OneIn(4) ? RandomArc(random) : RandomLine(random);
        axis.name = L"轴" + std::to_wstring(i);
        axis.x0 += origin[0];
        axis.x1 += origin[0];
        axis.y0 += origin[1];
        axis.y1 += origin[1];
        axes.push_back(axis);
    }
    return axes;
}

// --- Rules and runs ----------------------------------------------------------------------------

SceneExclude RandomExclude(Random& random, const Palette& palette, RuleRoute route) {
    AttCategory kind = random.Pick(palette.kinds);
    const AttCategory other = random.Pick(palette.kinds);
    if (random.OneIn(3)) kind.dalei = other.dalei;
    // Two names of the path, as the check compares it, and not of the component's own category.
    if (kind.specialty == L"Tekla" && random.OneIn(2)) kind.dalei = L"钢结构";
    SceneExclude exclude;
    exclude.item = {1 + random.Below(2), kind.specialty, kind.dalei, kind.xiaolei};
    if (random.OneIn(8)) exclude.item.level = 0;
    exclude.key = kind.specialty;
    if (route == RuleRoute::kXmlText) return exclude;
    if (random.OneIn(10)) exclude.item.level = 3;
    if (random.OneIn(6)) exclude.item.specialty = other.specialty;
    return exclude;
}

bool HasAllNames(const SceneExclude& exclude) {
    const auto& item = exclude.item;
    return !item.specialty.empty() && !item.dalei.empty() && !item.xiaolei.empty();
}

SceneRule RandomRule(Random& random, const Palette& palette, RuleRoute route) {
    static const std::vector<int> modes = {0, 0, 1, 1, 1, 2, 2, 3, -1};
    static const std::vector<int> tolerances = {0, 10, 30, 50, 125, -20};
    static const Texts filters = {L"DN>=100", L"DN(mm)<100", L"DN=100", L"DN<= 100", L"DN>50",
                                  L"DN",      L"DN>=",       L"DN=-1",  L"a=b<80",   L"<100<"};
    SceneRule rule;
    rule.path = CategoryPath(random.Pick(palette.kinds));
    rule.valid = !random.OneIn(12);
    rule.modeType = random.Pick(modes);
    rule.tolerance = random.Pick(tolerances);
    if (random.OneIn(3)) rule.filter = random.Pick(filters);
    for (int i = std::max(0, random.Below(5) - 2); i > 0; --i) {
        const SceneExclude exclude = RandomExclude(random, palette, route);
        if (HasAllNames(exclude)) rule.excludes.push_back(exclude);
    }
    return rule;
}

std::vector<SceneRule> RandomRules(Random& random, const Palette& palette, RuleRoute route) {
    std::vector<SceneRule> rules;
    for (const AttCategory& kind : palette.kinds) {
        if (random.OneIn(12)) continue;
        rules.push_back(RandomRule(random, palette, route));
        if (!random.OneIn(12)) rules.back().path = CategoryPath(kind);
    }
    // A rule file with a path that no rule can have is refused as a whole; mostly it has none.
    const bool isCleaned = route == RuleRoute::kXmlText && !random.OneIn(10);
    if (isCleaned) {
        std::erase_if(rules, [](const SceneRule& rule) {
            return rule.path.empty() || rule.path.back() == L'/';
        });
    }
    return rules;
}

std::vector<SCollisionFloor> RandomRequest(Random& random, const Palette& palette) {
    std::vector<FloorKey> keys = palette.floors;
    if (random.OneIn(5)) keys.push_back(random.Pick(keys));
    if (random.OneIn(5)) keys.emplace_back(9, L"1F");
    if (random.OneIn(8)) keys.pop_back();
    std::vector<SCollisionFloor> floors;
    for (const FloorKey& key : keys) {
        if (floors.empty() || random.OneIn(4)) floors.push_back({L"层" + key.second, {}, {}});
        floors.back().floorKeys.push_back(key);
    }
    return floors;
}

SceneRun RandomRun(Random& random, const Palette& palette) {
    SceneRun run;
    run.route = random.OneIn(2) ? RuleRoute::kXmlText : RuleRoute::kItems;
    run.rules = RandomRules(random, palette, run.route);
    run.floors = RandomRequest(random, palette);
    if (random.OneIn(8)) run.stopAtMeshCall = random.Below(8);
    return run;
}

std::map<std::wstring, int> RandomPriorities(Random& random, const Palette& palette) {
    static const std::vector<int> values = {1, 2, 2, 5, 1000, 1001, -3};
    // Never empty, because an empty map is loaded from the priority file.
    std::map<std::wstring, int> priorities = {{L"无", 1}};
    for (const AttCategory& kind : palette.kinds) {
        if (random.OneIn(2)) priorities[CategoryPath(kind)] = random.Pick(values);
    }
    return priorities;
}

}  // namespace

Scene MakeScene(std::uint64_t seed) {
    Random random(seed);
    Scene scene;
    scene.seed = seed;
    Palette palette = MakePalette(random);
    for (int i = 2 + random.Below(9); i > 0; --i) {
        scene.components.push_back(MakeComponent(random, palette, scene.components));
    }
    for (const FloorKey& key : palette.floors) {
        if (!random.OneIn(5)) scene.axes[key] = MakeAxes(random, palette.origin);
    }
    scene.priorities = RandomPriorities(random, palette);
    for (int i = random.OneIn(3) ? 2 : 1; i > 0; --i) {
        scene.runs.push_back(RandomRun(random, palette));
    }
    return scene;
}

}  // namespace kycb::scenes
