// SPDX-License-Identifier: Apache-2.0
// The one place that knows the attribute names of components and their formats.
#include "KYCollisionBase/logic/IModelDataSource.h"
#include "KYCollisionBase/model/AttCategoryModelInfo.h"
#include "KYCollisionBase/model/ObjectModelInfo.h"

#include <limits>

#include "platform/Text.h"

namespace KYCOLLISION::MODEL {

namespace {

using Attributes = std::map<std::wstring, std::wstring>;
namespace text = kycb::text;

const std::wstring* Find(const Attributes& attributes, const std::wstring& name) {
    const auto found = attributes.find(name);
    return found == attributes.end() ? nullptr : &found->second;
}

int RoundHalfAwayFromZero(double value) {
    const double shifted = value >= 0.0 ? value + 0.5 : value - 0.5;
    // A conversion that does not fit is undefined; the nearest value that does fit stands for it.
    if (!(shifted < std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    if (shifted < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(shifted);
}

std::wstring RoundedText(const Attributes& attributes, const wchar_t* name) {
    const std::wstring* value = Find(attributes, name);
    return value ? text::FromInt(RoundHalfAwayFromZero(text::ParseDouble(*value))) : std::wstring();
}

// Trays, trunking and ducts: their height is shown as that of the underside.
struct UndersideKind {
    const wchar_t* specialty;
    const wchar_t* dalei;
    const wchar_t* xiaolei;  // null: every minor category
};
constexpr UndersideKind kUndersideKinds[] = {
    {L"电气", L"电缆桥架", L"桥架"},       {L"电气", L"电缆桥架", L"托盘"},
    {L"电气", L"电缆桥架", L"组合式桥架"}, {L"暖通", L"风管", nullptr},
    {L"弱电", L"线槽桥架", L"线槽"},       {L"弱电", L"线槽桥架", L"桥架"},
    {L"Revit", L"风管", nullptr},          {L"Revit", L"软风管", nullptr},
    {L"Revit", L"电缆桥架", nullptr},
};

bool IsShownByUnderside(const AttCategory& category) {
    for (const UndersideKind& kind : kUndersideKinds) {
        if (category.specialty == kind.specialty && category.dalei == kind.dalei &&
            (!kind.xiaolei || category.xiaolei == kind.xiaolei)) {
            return true;
        }
    }
    return false;
}

std::wstring CentreOrUndersideText(const Attributes& attributes,
                                   const AttCategoryModelInfo* category) {
    std::wstring one = RoundedText(attributes, L"oneheight");
    const std::wstring section = RoundedText(attributes, L"sectheight");
    const std::wstring insulation = RoundedText(attributes, L"bwthick");
    if (!category || !IsShownByUnderside(category->GetAttCategory()) || one.empty() ||
        section.empty() || insulation.empty()) {
        return one;
    }
    // From the rounded texts, not from the values: the parts that a user sees add up.
    const double underside =
        text::ToDouble(one) - text::ToDouble(section) * 0.5 - text::ToDouble(insulation);
    return text::FromInt(RoundHalfAwayFromZero(underside));
}

std::wstring RangeText(const Attributes& attributes, const wchar_t* mark) {
    const std::wstring under = RoundedText(attributes, L"underheight");
    const std::wstring top = RoundedText(attributes, L"topheight");
    return under + L"~" + top + mark;
}

QNIM::GeometryPrimitiveResource::CQNIMPosition PointFrom(const std::vector<std::wstring>& numbers,
                                                         std::size_t first) {
    return {text::ToDouble(numbers[first]), text::ToDouble(numbers[first + 1]),
            text::ToDouble(numbers[first + 2])};
}

}  // namespace

Attributes ObjectModelInfo::ReadAttributes(const IModelDataSource* source) const {
    Attributes attributes;
    source->GetObjAttributes(GetProjId(), objectId_, attributes);
    return attributes;
}

std::wstring ObjectModelInfo::GetObjAttHeight(const IModelDataSource* source) const {
    if (!source) return {};
    const Attributes attributes = ReadAttributes(source);
    const std::wstring* type = Find(attributes, L"heighttype");
    if (!type) return {};
    if (*type == L"1") return RoundedText(attributes, L"oneheight");
    if (*type == L"2") return RangeText(attributes, L"");
    if (*type == L"3") return CentreOrUndersideText(attributes, category_);
    if (*type == L"4") return RangeText(attributes, L"(斜)");
    if (*type == L"5") return RangeText(attributes, L"(工程)");
    return {};
}

bool ObjectModelInfo::GetPipeGCZJ(IModelDataSource* source, double& value) const {
    static const std::wstring name = L"pipegczj";
    std::wstring diameter;
    if (!GetAttValue(source, name, diameter)) return false;
    value = text::ToDouble(diameter);
    return true;
}

bool ObjectModelInfo::GetPipeDuctSupportSEPt(IModelDataSource* source, CQNIMPosition& start,
                                             CQNIMPosition& end) const {
    std::wstring points;
    if (!GetAttValue(source, L"drawstartendpt", points)) return false;
    const std::vector<std::wstring> numbers = text::Split(points, L',');
    if (numbers.size() != 6) return false;
    start = PointFrom(numbers, 0);
    end = PointFrom(numbers, 3);
    return true;
}

bool ObjectModelInfo::GetPipeDuctSupportSect(IModelDataSource* source, double& width,
                                             double& height, double& radius) const {
    if (!source) return false;
    const Attributes attributes = ReadAttributes(source);
    if (const std::wstring* rectangle = Find(attributes, L"sectwidthheight")) {
        const std::vector<std::wstring> sides = text::Split(*rectangle, L'*');
        if (sides.size() != 2) return false;
        width = text::ToDouble(sides[0]);
        height = text::ToDouble(sides[1]);
        return true;
    }
    const std::wstring* circle = Find(attributes, L"sectradius");
    if (!circle) return false;
    radius = text::ToDouble(*circle);
    return true;
}

void ObjectModelInfo::GetRelatedObjs(const IModelDataSource* source,
                                     std::vector<std::wstring>& relatedObjs,
                                     std::vector<std::wstring>& relatedFits) const {
    // Asked for every pair that is looked at: the names are not made anew each time.
    static const std::wstring objsName = L"relatedobjs";
    static const std::wstring fitsName = L"relatedfits";
    if (!source) return;
    const Attributes attributes = ReadAttributes(source);
    if (const auto* objs = Find(attributes, objsName)) relatedObjs = text::Split(*objs, L',');
    if (const auto* fits = Find(attributes, fitsName)) relatedFits = text::Split(*fits, L',');
}

bool ObjectModelInfo::GetAttValue(const IModelDataSource* source, const std::wstring& name,
                                  std::wstring& value) const {
    if (!source) return false;
    Attributes attributes = ReadAttributes(source);
    const auto found = attributes.find(name);
    if (found == attributes.end()) return false;
    value = std::move(found->second);
    return true;
}

}  // namespace KYCOLLISION::MODEL
