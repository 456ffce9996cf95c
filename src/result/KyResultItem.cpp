// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/result/KyResultItem.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/Guid.h"
#include "platform/Text.h"
#include "result/AxisLocator.h"
#include "result/ComponentRank.h"

namespace KYCOLLISION::RESULT {

using kycb::ComponentRank;
using kycb::text::FromInt;
using kycb::text::ParseDouble;
using kycb::text::ParseLong;

namespace {

// Clash points this far apart in a coordinate are different ones (mm).
constexpr double kSamePointDistance = 0.1;

constexpr std::size_t kGuidBufferSize = 128;

// Components of these specialties belong to no building-services system.
bool HasNoSystem(const std::wstring& specialty) {
    return specialty == L"土建" || specialty == L"钢筋" || specialty == L"Revit" ||
           specialty == L"Tekla";
}

const std::wstring& SysCodeOf(const SObjAttInfo& info) {
    return HasNoSystem(info.Specialty) ? info.Specialty : info.SysCode;
}

bool IsSameKindAndName(const SObjAttInfo& a, const SObjAttInfo& b) {
    return a.Specialty == b.Specialty && a.Category == b.Category &&
           a.Subcategory == b.Subcategory && a.Name == b.Name;
}

// Decimal texts 0.1 apart are read as doubles whose difference may be a few units in the last place
// less than 0.1; these count as 0.1 apart.
bool IsSameCoordinate(double a, double b) {
    const double rounding =
        2.0 * std::numeric_limits<double>::epsilon() * std::max(std::abs(a), std::abs(b));
    return std::abs(a - b) < kSamePointDistance - rounding;
}

wchar_t* AppendHex(wchar_t* out, std::uint32_t value, int digits, const wchar_t* alphabet) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        *out++ = alphabet[(value >> shift) & 0xF];
    }
    return out;
}

void FormatGuid(const kycb::platform::Guid& guid, wchar_t* out) {
    constexpr const wchar_t* kUpper = L"0123456789ABCDEF";
    // Ids in files that users keep have the third group in lower case.
    constexpr const wchar_t* kLower = L"0123456789abcdef";
    out = AppendHex(out, guid.data1, 8, kUpper);
    out = AppendHex(out, guid.data2, 4, kUpper);
    out = AppendHex(out, guid.data3, 4, kLower);
    for (const std::uint8_t byte : guid.data4)
        out = AppendHex(out, byte, 2, kUpper);
    *out = L'\0';
}

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// The end of the whole number ("-?[0-9]+") that begins at `begin`; `begin` itself when none does.
std::size_t EndOfNumber(const std::wstring& text, std::size_t begin) {
    std::size_t end = begin + (text[begin] == L'-' ? 1 : 0);
    const std::size_t firstDigit = end;
    while (end < text.size() && IsDigit(text[end]))
        ++end;
    return end == firstDigit ? begin : end;
}

}  // namespace

const std::wstring KyResultItem::s_strSeparator = L" / ";

std::wstring KyResultItem::GetResultId() const {
    return ResultId;
}
int KyResultItem::GetProjectA() const {
    return ProjectA;
}
std::wstring KyResultItem::GetFloorA() const {
    return FloorA;
}
std::wstring KyResultItem::GetObjGuidA() const {
    return ObjGuidA;
}
int KyResultItem::GetProjectB() const {
    return ProjectB;
}
std::wstring KyResultItem::GetFloorB() const {
    return FloorB;
}
std::wstring KyResultItem::GetObjGuidB() const {
    return ObjGuidB;
}
std::wstring KyResultItem::GetPosition() const {
    return Position;
}
std::wstring KyResultItem::GetClashModel() const {
    return ClashModel;
}
int KyResultItem::GetDisposeState() const {
    return DisposeState;
}
std::wstring KyResultItem::GetRemark() const {
    return Remark;
}
std::wstring KyResultItem::GetViewport() const {
    return Viewport;
}
std::wstring KyResultItem::GetPicuuid() const {
    return Picuuid;
}
std::wstring KyResultItem::GetPicmd5() const {
    return Picmd5;
}
std::int64_t KyResultItem::GetPicsize() const {
    return Picsize;
}
const SObjAttInfo& KyResultItem::GetAttInfoA() const {
    return AttInfoA;
}
std::wstring KyResultItem::GetHeightA() const {
    return HeightA;
}
const SObjAttInfo& KyResultItem::GetAttInfoB() const {
    return AttInfoB;
}
std::wstring KyResultItem::GetHeightB() const {
    return HeightB;
}
std::wstring KyResultItem::GetAxisPos() const {
    return AxisPos;
}
std::wstring KyResultItem::GetSpecialtyA() const {
    return AttInfoA.Specialty;
}
std::wstring KyResultItem::GetCategoryA() const {
    return AttInfoA.Category;
}
std::wstring KyResultItem::GetSubcategoryA() const {
    return AttInfoA.Subcategory;
}
std::wstring KyResultItem::GetNameA() const {
    return AttInfoA.Name;
}
std::wstring KyResultItem::GetSysCodeA() const {
    return SysCodeOf(AttInfoA);
}
std::wstring KyResultItem::GetSpecialtyB() const {
    return AttInfoB.Specialty;
}
std::wstring KyResultItem::GetCategoryB() const {
    return AttInfoB.Category;
}
std::wstring KyResultItem::GetSubcategoryB() const {
    return AttInfoB.Subcategory;
}
std::wstring KyResultItem::GetNameB() const {
    return AttInfoB.Name;
}
std::wstring KyResultItem::GetSysCodeB() const {
    return SysCodeOf(AttInfoB);
}

std::tuple<double, double, double> KyResultItem::GetClashPoint() const {
    const std::wstring_view text = Position;
    const auto commas = std::count(text.begin(), text.end(), L',');
    if (commas != 1 && commas != 2) return {0.0, 0.0, 0.0};
    const std::size_t first = text.find(L',');
    const std::size_t last = text.rfind(L',');
    const double x = ParseDouble(text.substr(0, first));
    const double y =
        ParseDouble(text.substr(first + 1, commas == 1 ? text.npos : last - first - 1));
    return {x, y, commas == 2 ? ParseDouble(text.substr(last + 1)) : 0.0};
}

KyResultItem::CQNIMPosition KyResultItem::GetClashQNIMPoint() const {
    const auto [x, y, z] = GetClashPoint();
    return {x, y, z};
}

void KyResultItem::SetResultId(std::wstring id) {
    ResultId = std::move(id);
}
void KyResultItem::SetClashModel(std::wstring model) {
    ClashModel = std::move(model);
}
void KyResultItem::SetDisposeState(int state) {
    DisposeState = state;
}
void KyResultItem::SetRemark(std::wstring remark) {
    Remark = std::move(remark);
}
void KyResultItem::SetHeightA(std::wstring height) {
    HeightA = std::move(height);
}
void KyResultItem::SetHeightB(std::wstring height) {
    HeightB = std::move(height);
}
void KyResultItem::SetViewport(std::wstring viewport) {
    Viewport = std::move(viewport);
}

void KyResultItem::SetPicture(std::wstring uuid, std::wstring md5, std::int64_t size) {
    Picuuid = std::move(uuid);
    Picmd5 = std::move(md5);
    Picsize = size;
}

void KyResultItem::SetBaseInfo(int projectA, std::wstring floorA, std::wstring guidA, int projectB,
                               std::wstring floorB, std::wstring guidB, std::wstring position) {
    ProjectA = projectA;
    FloorA = std::move(floorA);
    ObjGuidA = std::move(guidA);
    ProjectB = projectB;
    FloorB = std::move(floorB);
    ObjGuidB = std::move(guidB);
    Position = std::move(position);
}

void KyResultItem::SetObjAttInfo_Main(const SObjAttInfo& info) {
    AttInfoA = info;
}
void KyResultItem::SetObjAttInfo_Second(const SObjAttInfo& info) {
    AttInfoB = info;
}

void KyResultItem::InitResultId([[maybe_unused]] std::wstring unused) {
    ResultId = CreateGuid();
}

bool KyResultItem::IsSameResult_MainInfo(const KyResultItem* other) const {
    return other && ObjGuidA == other->ObjGuidA && ObjGuidB == other->ObjGuidB &&
           FloorA == other->FloorA && FloorB == other->FloorB && ProjectA == other->ProjectA &&
           ProjectB == other->ProjectB;
}

bool KyResultItem::IsSameResult_CanBeEditInfo(const KyResultItem* other) const {
    return other && DisposeState == other->DisposeState && Remark == other->Remark &&
           Viewport == other->Viewport && Picuuid == other->Picuuid;
}

bool KyResultItem::IsSameResult_OtherInfo(const KyResultItem* other) const {
    if (!other || ClashModel != other->ClashModel) return false;
    const auto [x, y, z] = GetClashPoint();
    const auto [otherX, otherY, otherZ] = other->GetClashPoint();
    return IsSameCoordinate(x, otherX) && IsSameCoordinate(y, otherY) &&
           IsSameCoordinate(z, otherZ);
}

bool KyResultItem::IsSameResult_AllInfo(const KyResultItem* other) const {
    return IsSameResult_MainInfo(other) && IsSameResult_CanBeEditInfo(other) &&
           IsSameResult_OtherInfo(other);
}

void KyResultItem::ReCatulateAxisInfo(const AxisTree& tree) {
    const auto [x, y, z] = GetClashPoint();
    AxisPos = CaculateAxisPos(CQNIMPosition(x, y, 0.0), tree);
}

std::wstring KyResultItem::CaculateAxisPos(const CQNIMPosition& point, const AxisTree& tree) {
    return kycb::LocateAmongAxes(point, tree);
}

bool KyResultItem::PriorityCompareHigh(KyResultItem* a, KyResultItem* b) {
    if (!a || !b) return false;
    const int comparison = IsSameKindAndName(a->AttInfoA, b->AttInfoA)
                               ? PriorityCompareHigh_Att(a->AttInfoB, b->AttInfoB)
                               : PriorityCompareHigh_Att(a->AttInfoA, b->AttInfoA);
    return comparison != 0 ? comparison < 0 : a->ObjGuidA < b->ObjGuidA;
}

int KyResultItem::PriorityCompareHigh_Att(const SObjAttInfo& a, const SObjAttInfo& b) {
    return kycb::CompareRanks(ComponentRank(a), ComponentRank(b));
}

std::wstring KyResultItem::HeightOffset(const std::wstring& text, int offset) {
    std::wstring shifted;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t end = EndOfNumber(text, i);
        if (end == i) {
            shifted += text[i++];
            continue;
        }
        // 64 bits hold the sum of any two 32-bit numbers.
        const std::int64_t value = ParseLong(std::wstring_view(text).substr(i, end - i));
        shifted += FromInt(value + offset);
        i = end;
    }
    return shifted;
}

const wchar_t* KyResultItem::CreateGuid() {
    // One buffer a thread keeps the hand-over by pointer and lets threads create items side by
    // side.
    thread_local wchar_t buffer[kGuidBufferSize] = L"";
    if (const auto guid = kycb::platform::CreateRandomGuid()) FormatGuid(*guid, buffer);
    return buffer;
}

}  // namespace KYCOLLISION::RESULT
