// SPDX-License-Identifier: Apache-2.0
// Which kinds the library has knowledge of, as plain tables.
#pragma once

#include <string>
#include <vector>

namespace kycb::test {

/// Kinds of one specialty and major category that have an answer in common.
struct KindRow {
    int answer;
    const wchar_t* specialty;
    const wchar_t* dalei;
    const wchar_t* xiaolei;  ///< the minor categories, each but the last with L'，' behind it
};
using KindTable = std::vector<KindRow>;

inline std::vector<std::wstring> MinorCategoriesOf(const KindRow& row) {
    std::vector<std::wstring> names(1);
    for (const wchar_t* c = row.xiaolei; *c != L'\0'; ++c) {
        if (*c == L'，') {
            names.emplace_back();
        } else {
            names.back() += *c;
        }
    }
    return names;
}

// Water pipes, in this many rows; then trays and ducts.
inline constexpr std::size_t kWaterPipeRows = 3;
inline const KindTable kRuns = {
    {1, L"给排水", L"管道",
     L"给水管，热给水管，热回水管，污水管，废水管，雨水管，中水管，消防管，喷淋管，其它管，软管"},
    {1, L"暖通", L"水管",
     L"热供水管，热回水管，冷供水管，冷回水管，冷却水管，凝结水管，软管，其它水管"},
    {1, L"消防", L"管网", L"喷淋管，消防管，气体灭火管，泡沫灭火管，其它管"},
    {1, L"电气", L"电缆桥架", L"母线馈线，桥架，托盘，组合式桥架"},
    {1, L"暖通", L"风管", L"送风管，新风管，回风管，排风管，除尘排烟管，其它风管，柔性风管"},
    {1, L"弱电", L"线槽桥架", L"泡沫灭火管，其它管，线槽，桥架"},
};

inline const KindTable kStructure = {
    {1, L"土建", L"梁", L"框架梁，次梁，连梁，独立梁，圈梁，过梁，窗台"},
    {1, L"土建", L"楼梯楼板", L"现浇板，预制板，拱形板，楼梯，梯段，螺旋板"},
    {1, L"土建", L"墙", L"砼外墙，砼内墙，砖外墙，砖内墙，填充墙，间壁墙，电梯井墙，玻璃幕墙"},
    {1, L"土建", L"柱", L"砼柱，砖柱，构造柱，暗柱，自适应暗柱，门垛，柱帽，柱墩"},
    {1, L"土建", L"几何构件", L"几何梁，钢梁，几何板，几何楼梯，钢板，几何墙，钢柱"},
    {1, L"钢筋", L"梁", L"框架梁，次梁，圈梁，吊筋"},
    {1, L"钢筋", L"板", L"现浇板，梯段"},
    {1, L"钢筋", L"墙", L"剪力墙，人防墙，砖墙，飘窗，暗梁，连梁，人防门槛梁，过梁"},
    {1, L"钢筋", L"柱", L"框架柱暗柱，自适应暗柱，人防柱，构造柱，门垛，柱帽"},
    {1, L"钢筋", L"几何构件", L"钢梁，钢板，钢柱"},
};

}  // namespace kycb::test
