// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Kinds.h"

#include <algorithm>

namespace kycb::scenes::reference {

namespace {

bool Contains(const std::vector<std::wstring>& names, const std::wstring& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::wstring TeklaMajor(const AttCategory& kind) {
    const bool isSteelPart = Contains({L"钢柱", L"钢梁", L"钢板", L"螺栓", L"项"}, kind.xiaolei);
    if (isSteelPart && kind.dalei != L"钢结构") return L"钢结构";
    if (kind.dalei != L"混凝土" && kind.dalei != L"钢结构") return L"混凝土";
    return kind.dalei;
}

}  // namespace

const KindTable& StructuralMembers() {
    static const KindTable table = {
        {L"土建", L"梁", {L"框架梁", L"次梁", L"连梁", L"独立梁", L"圈梁", L"过梁", L"窗台"}},
        {L"土建", L"楼梯楼板", {L"现浇板", L"预制板", L"拱形板", L"楼梯", L"梯段", L"螺旋板"}},
        {L"土建",
         L"墙",
         {L"砼外墙", L"砼内墙", L"砖外墙", L"砖内墙", L"填充墙", L"间壁墙", L"电梯井墙",
          L"玻璃幕墙"}},
        {L"土建",
         L"柱",
         {L"砼柱", L"砖柱", L"构造柱", L"暗柱", L"自适应暗柱", L"门垛", L"柱帽", L"柱墩"}},
        {L"土建",
         L"几何构件",
         {L"几何梁", L"钢梁", L"几何板", L"几何楼梯", L"钢板", L"几何墙", L"钢柱"}},
        {L"钢筋", L"梁", {L"框架梁", L"次梁", L"圈梁", L"吊筋"}},
        {L"钢筋", L"板", {L"现浇板", L"梯段"}},
        {L"钢筋",
         L"墙",
         {L"剪力墙", L"人防墙", L"砖墙", L"飘窗", L"暗梁", L"连梁", L"人防门槛梁", L"过梁"}},
        {L"钢筋", L"柱", {L"框架柱暗柱", L"自适应暗柱", L"人防柱", L"构造柱", L"门垛", L"柱帽"}},
        {L"钢筋", L"几何构件", {L"钢梁", L"钢板", L"钢柱"}},
    };
    return table;
}

const KindTable& ServicesRuns() {
    static const KindTable table = {
        {L"暖通",
         L"风管",
         {L"送风管", L"新风管", L"回风管", L"排风管", L"除尘排烟管", L"其它风管"},
         1},
        {L"电气", L"电缆桥架", {L"桥架", L"托盘", L"组合式桥架"}, 2},
        {L"弱电", L"线槽桥架", {L"线槽", L"桥架"}, 2},
        {L"给排水", L"管道", {L"污水管", L"废水管", L"雨水管"}, 3},
        {L"给排水", L"管道", {L"给水管", L"中水管", L"消防管", L"喷淋管", L"其它管"}, 4},
        {L"给排水", L"管道", {L"热给水管", L"热回水管"}, 5},
        {L"暖通", L"水管", {L"冷供水管", L"冷回水管", L"冷却水管", L"凝结水管", L"其它水管"}, 4},
        {L"暖通", L"水管", {L"热供水管", L"热回水管"}, 5},
        {L"消防", L"管网", {L"喷淋管", L"消防管", L"气体灭火管", L"泡沫灭火管", L"其它管"}, 4},
    };
    return table;
}

const KindTable& FilteredPipes() {
    static const KindTable table = {
        {L"给排水",
         L"管道",
         {L"给水管", L"热给水管", L"热回水管", L"污水管", L"废水管", L"雨水管", L"中水管",
          L"消防管", L"喷淋管", L"其它管", L"软管"}},
        {L"暖通",
         L"水管",
         {L"热供水管", L"热回水管", L"冷供水管", L"冷回水管", L"冷却水管", L"凝结水管", L"软管",
          L"其它水管"}},
        {L"消防", L"管网", {L"喷淋管", L"消防管", L"气体灭火管", L"泡沫灭火管", L"其它管"}},
    };
    return table;
}

const KindTable& Openings() {
    static const KindTable table = {
        {L"土建", L"门.窗.洞", {L"门"}, 104},
        {L"土建", L"门.窗.洞", {L"窗", L"飘窗"}, 105},
        {L"土建", L"门.窗.洞", {L"墙洞"}, 101},
        {L"土建", L"板.楼梯", {L"板洞"}, 103},
        {L"钢筋", L"墙", {L"洞"}, 101},
        {L"钢筋", L"墙", {L"门洞"}, 104},
        {L"钢筋", L"墙", {L"窗洞", L"飘窗"}, 105},
        {L"钢筋", L"板", {L"板洞"}, 103},
    };
    return table;
}

const KindTable& MeasuredAtUnderside() {
    static const KindTable table = {
        {L"电气", L"电缆桥架", {L"桥架", L"托盘", L"组合式桥架"}},
        {L"暖通", L"风管", {}},
        {L"弱电", L"线槽桥架", {L"线槽", L"桥架"}},
        {L"Revit", L"风管", {}},
        {L"Revit", L"软风管", {}},
        {L"Revit", L"电缆桥架", {}},
    };
    return table;
}

int ValueOf(const KindTable& table, const AttCategory& kind, int otherwise) {
    for (const KindRow& row : table) {
        const bool isRow = row.specialty == kind.specialty && row.dalei == kind.dalei;
        const bool holdsMinor = row.xiaolei.empty() || Contains(row.xiaolei, kind.xiaolei);
        if (isRow && holdsMinor) return row.value;
    }
    return otherwise;
}

std::wstring CategoryPath(const AttCategory& kind) {
    if (kind.specialty.empty() || kind.dalei.empty()) return L"";
    if (kind.specialty == L"Revit") return kind.specialty + L"/" + kind.dalei;
    const std::wstring major = kind.specialty == L"Tekla" ? TeklaMajor(kind) : kind.dalei;
    return kind.specialty + L"/" + major + L"/" + kind.xiaolei;
}

}  // namespace kycb::scenes::reference
