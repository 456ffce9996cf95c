// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/AttCategory.h"

#include "KYCollisionBase/platform/HostServices.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>

#include "platform/MSXMLUtilityPtr.h"
#include "platform/Text.h"

namespace KYCOLLISION::MODEL {
namespace {

constexpr const wchar_t* kSeparator = L"/";

/// The priority of a category that the priority file does not list: below every listed one.
constexpr int kUnlistedPriority = 1000;

constexpr unsigned int kPlainMessageBox = 0;

constexpr std::size_t kMaxMinorCategories = 11;

/// Minor categories of one major category that share an answer. The list is padded with empty
/// names, which match nothing.
struct FamilyRow {
    std::wstring_view specialty;
    std::wstring_view dalei;
    std::array<std::wstring_view, kMaxMinorCategories> xiaolei;
    int answer;
};

/// Pipes that carry water; their diameter may be filtered.
constexpr FamilyRow kWaterPipes[] = {
    {L"给排水",
     L"管道",
     {L"给水管", L"热给水管", L"热回水管", L"污水管", L"废水管", L"雨水管", L"中水管", L"消防管",
      L"喷淋管", L"其它管", L"软管"},
     1},
    {L"暖通",
     L"水管",
     {L"热供水管", L"热回水管", L"冷供水管", L"冷回水管", L"冷却水管", L"凝结水管", L"软管",
      L"其它水管"},
     1},
    {L"消防", L"管网", {L"喷淋管", L"消防管", L"气体灭火管", L"泡沫灭火管", L"其它管"}, 1},
};

/// The two pipe names under low-voltage trunking belong there: hosts classify by them.
constexpr FamilyRow kTraysAndDucts[] = {
    {L"电气", L"电缆桥架", {L"母线馈线", L"桥架", L"托盘", L"组合式桥架"}, 1},
    {L"暖通",
     L"风管",
     {L"送风管", L"新风管", L"回风管", L"排风管", L"除尘排烟管", L"其它风管", L"柔性风管"},
     1},
    {L"弱电", L"线槽桥架", {L"泡沫灭火管", L"其它管", L"线槽", L"桥架"}, 1},
};

constexpr FamilyRow kStructure[] = {
    {L"土建", L"梁", {L"框架梁", L"次梁", L"连梁", L"独立梁", L"圈梁", L"过梁", L"窗台"}, 1},
    {L"土建", L"楼梯楼板", {L"现浇板", L"预制板", L"拱形板", L"楼梯", L"梯段", L"螺旋板"}, 1},
    {L"土建",
     L"墙",
     {L"砼外墙", L"砼内墙", L"砖外墙", L"砖内墙", L"填充墙", L"间壁墙", L"电梯井墙", L"玻璃幕墙"},
     1},
    {L"土建",
     L"柱",
     {L"砼柱", L"砖柱", L"构造柱", L"暗柱", L"自适应暗柱", L"门垛", L"柱帽", L"柱墩"},
     1},
    {L"土建",
     L"几何构件",
     {L"几何梁", L"钢梁", L"几何板", L"几何楼梯", L"钢板", L"几何墙", L"钢柱"},
     1},
    {L"钢筋", L"梁", {L"框架梁", L"次梁", L"圈梁", L"吊筋"}, 1},
    {L"钢筋", L"板", {L"现浇板", L"梯段"}, 1},
    {L"钢筋",
     L"墙",
     {L"剪力墙", L"人防墙", L"砖墙", L"飘窗", L"暗梁", L"连梁", L"人防门槛梁", L"过梁"},
     1},
    {L"钢筋", L"柱", {L"框架柱暗柱", L"自适应暗柱", L"人防柱", L"构造柱", L"门垛", L"柱帽"}, 1},
    {L"钢筋", L"几何构件", {L"钢梁", L"钢板", L"钢柱"}, 1},
};

enum ServiceKind { kAirDuct = 1, kCableTray, kDrainagePipe, kColdWaterPipe, kHotWaterPipe };

constexpr FamilyRow kServices[] = {
    {L"暖通",
     L"风管",
     {L"送风管", L"新风管", L"回风管", L"排风管", L"除尘排烟管", L"其它风管"},
     kAirDuct},
    {L"电气", L"电缆桥架", {L"桥架", L"托盘", L"组合式桥架"}, kCableTray},
    {L"弱电", L"线槽桥架", {L"线槽", L"桥架"}, kCableTray},
    {L"给排水", L"管道", {L"污水管", L"废水管", L"雨水管"}, kDrainagePipe},
    {L"给排水", L"管道", {L"给水管", L"中水管", L"消防管", L"喷淋管", L"其它管"}, kColdWaterPipe},
    {L"给排水", L"管道", {L"热给水管", L"热回水管"}, kHotWaterPipe},
    {L"暖通",
     L"水管",
     {L"冷供水管", L"冷回水管", L"冷却水管", L"凝结水管", L"其它水管"},
     kColdWaterPipe},
    {L"暖通", L"水管", {L"热供水管", L"热回水管"}, kHotWaterPipe},
    {L"消防",
     L"管网",
     {L"喷淋管", L"消防管", L"气体灭火管", L"泡沫灭火管", L"其它管"},
     kColdWaterPipe},
};

bool Holds(const FamilyRow& row, std::wstring_view xiaolei) {
    return !xiaolei.empty() &&
           std::find(row.xiaolei.begin(), row.xiaolei.end(), xiaolei) != row.xiaolei.end();
}

/// The answer of the row that lists the three names, or 0.
int FamilyAnswer(const AttCategory& category, std::span<const FamilyRow> rows) {
    for (const FamilyRow& row : rows) {
        if (category.specialty == row.specialty && category.dalei == row.dalei &&
            Holds(row, category.xiaolei)) {
            return row.answer;
        }
    }
    return 0;
}

template <class... Names>
std::wstring Join(const std::wstring& first, const Names&... others) {
    std::wstring path = first;
    ((path += kSeparator, path += others), ...);
    return path;
}

bool IsTeklaSteel(const std::wstring& xiaolei) {
    constexpr std::wstring_view kSteel[] = {L"钢柱", L"钢梁", L"钢板", L"螺栓", L"项"};
    return std::find(std::begin(kSteel), std::end(kSteel), xiaolei) != std::end(kSteel);
}

/// Whatever major category a Tekla component came with, it counts as steel structure or concrete.
std::wstring TeklaMajorCategory(const AttCategory& category) {
    constexpr const wchar_t* kSteelStructure = L"钢结构";
    constexpr const wchar_t* kConcrete = L"混凝土";
    const bool isSteel = IsTeklaSteel(category.xiaolei) || category.dalei == kSteelStructure;
    return isSteel ? kSteelStructure : kConcrete;
}

using KYTOOLS::MSXMLUtilityPtr;
using KYTOOLS::XmlElement;

/// False at an entry that lacks its category or its priority; what was read before it stays.
bool ReadGroup(const XmlElement& group, std::map<std::wstring, int>& priorities) {
    auto entries = MSXMLUtilityPtr::EnumChildNodes(group);
    for (XmlElement entry; entries.Next(entry);) {
        const std::wstring path = MSXMLUtilityPtr::GetAttributeValue(entry, L"att");
        const std::wstring priority = MSXMLUtilityPtr::GetAttributeValue(entry, L"priority");
        if (path.empty() || priority.empty()) return false;
        priorities[path] = kycb::text::ToInt(priority);
    }
    return true;
}

bool ReadPriorities(const std::wstring& path, std::map<std::wstring, int>& priorities) {
    const auto document = MSXMLUtilityPtr::CreateDOMObj();
    XmlElement root;
    if (!document || !MSXMLUtilityPtr::OpenXml(*document, path) ||
        !MSXMLUtilityPtr::GetRootElement(*document, root)) {
        return false;
    }
    auto groups = MSXMLUtilityPtr::EnumChildNodes(root);
    if (!groups.IsValid()) return false;
    for (XmlElement group; groups.Next(group);) {
        if (!ReadGroup(group, priorities)) return false;
    }
    return true;
}

}  // namespace

std::map<std::wstring, int> AttCategory::s_typePriorityMap;

AttCategory::AttCategory(std::wstring specialtyName, std::wstring daleiName,
                         std::wstring xiaoleiName)
    : specialty(std::move(specialtyName)),
      dalei(std::move(daleiName)),
      xiaolei(std::move(xiaoleiName)) {}

std::wstring AttCategory::categoryIndex() {
    if (specialty.empty() || dalei.empty()) return {};
    if (specialty == L"Revit") return Join(specialty, dalei);
    if (specialty == L"Tekla") return Join(specialty, TeklaMajorCategory(*this), xiaolei);
    return Join(specialty, dalei, xiaolei);
}

bool AttCategory::IsSgFgQj_RP() const {
    return FamilyAnswer(*this, kWaterPipes) != 0 || FamilyAnswer(*this, kTraysAndDucts) != 0;
}

bool AttCategory::IsQzlb_JJP() const {
    return FamilyAnswer(*this, kStructure) != 0;
}

int AttCategory::IsFgQjPsLsRs_JJP() const {
    return FamilyAnswer(*this, kServices);
}

bool AttCategory::IsNeedFiter() const {
    return FamilyAnswer(*this, kWaterPipes) != 0;
}

int AttCategory::GetAttPriority() const {
    if (s_typePriorityMap.empty() && !InitTypePriorityMap()) {
        BASEUI::ShowMessageBox(L"属性优先级文件错误", kPlainMessageBox);
    }
    const auto found = s_typePriorityMap.find(AttCategory(*this).categoryIndex());
    return found == s_typePriorityMap.end() ? kUnlistedPriority : found->second;
}

bool AttCategory::InitTypePriorityMap() {
    s_typePriorityMap.clear();
    const std::wstring path = BASETOOLS::GetSysRoot() + L"CollisionData\\TypePriorityMap.xml";
    return BASETOOLS::CheckFileExist(path) && ReadPriorities(path, s_typePriorityMap);
}

}  // namespace KYCOLLISION::MODEL
