// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Attributes.h"

#include <cmath>
#include <stdexcept>

#include "scenes/reference/Texts.h"

namespace kycb::scenes::reference {

namespace {

using KYCOLLISION::RESULT::CExistingHole;

// The attribute as a rounded whole number; empty when it is missing.
std::wstring RoundedText(const Attributes& attributes, const std::wstring& name) {
    const auto text = TextOf(attributes, name);
    return text ? std::to_wstring(Rounded(StrictDouble(*text))) : L"";
}

std::wstring RangeText(const Attributes& attributes) {
    const std::wstring under = RoundedText(attributes, L"underheight");
    return under + L"~" + RoundedText(attributes, L"topheight");
}

std::wstring UndersideText(const Attributes& attributes, const AttCategory& kind) {
    const std::wstring one = RoundedText(attributes, L"oneheight");
    const std::wstring section = RoundedText(attributes, L"sectheight");
    const std::wstring insulation = RoundedText(attributes, L"bwthick");
    const bool isComplete = !one.empty() && !section.empty() && !insulation.empty();
    if (!isComplete || ValueOf(MeasuredAtUnderside(), kind, 0) == 0) return one;
    return std::to_wstring(
        Rounded(PlainDouble(one) - PlainDouble(section) * 0.5 - PlainDouble(insulation)));
}

std::optional<int> ShapeOf(const Attributes& attributes) {
    const auto text = TextOf(attributes, L"holeshape");
    if (!text) return std::nullopt;
    try {
        return StrictInt(*text);
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

void ReadSize(const Attributes& attributes, CExistingHole& hole) {
    const auto text = TextOf(attributes, L"holesize");
    if (!text) return;
    const std::vector<std::wstring> parts = Split(*text, L",");
    if (parts.size() == 1) hole.holeSize = StrictInt(parts[0]);
    if (parts.size() < 2) return;
    hole.holeWidth = StrictInt(parts[0]);
    hole.holeHeight = StrictInt(parts[1]);
}

}  // namespace

std::optional<std::wstring> TextOf(const Attributes& attributes, const std::wstring& name) {
    const auto found = attributes.find(name);
    if (found == attributes.end()) return std::nullopt;
    return found->second;
}

std::wstring HeightText(const Attributes& attributes, const AttCategory& kind) {
    const std::wstring type = TextOf(attributes, L"heighttype").value_or(L"");
    if (type == L"1") return RoundedText(attributes, L"oneheight");
    if (type == L"2") return RangeText(attributes);
    if (type == L"3") return UndersideText(attributes, kind);
    if (type == L"4") return RangeText(attributes) + L"(斜)";
    if (type == L"5") return RangeText(attributes) + L"(工程)";
    return L"";
}

std::optional<double> PipeValue(const Attributes& attributes) {
    const auto text = TextOf(attributes, L"pipegczj");
    if (!text) return std::nullopt;
    return PlainDouble(*text);
}

std::vector<std::wstring> RelatedGuids(const Attributes& attributes) {
    std::vector<std::wstring> guids;
    for (const wchar_t* name : {L"relatedobjs", L"relatedfits"}) {
        const auto parts = Split(TextOf(attributes, name).value_or(L""), L",");
        guids.insert(guids.end(), parts.begin(), parts.end());
    }
    return guids;
}

std::optional<double> SupportLength(const Attributes& attributes) {
    const auto parts = Split(TextOf(attributes, L"drawstartendpt").value_or(L""), L",");
    if (parts.size() != 6) return std::nullopt;
    return std::hypot(PlainDouble(parts[3]) - PlainDouble(parts[0]),
                      PlainDouble(parts[4]) - PlainDouble(parts[1]),
                      PlainDouble(parts[5]) - PlainDouble(parts[2]));
}

std::optional<std::array<double, 3>> SupportSection(const Attributes& attributes) {
    const auto section = TextOf(attributes, L"sectwidthheight");
    if (section) {
        const auto parts = Split(*section, L"*");
        if (parts.size() != 2) return std::nullopt;
        return std::array{PlainDouble(parts[0]), PlainDouble(parts[1]), 0.0};
    }
    const auto radius = TextOf(attributes, L"sectradius");
    if (!radius) return std::nullopt;
    return std::array{0.0, 0.0, PlainDouble(*radius)};
}

std::optional<CExistingHole> ReadOpening(const Attributes& attributes, const AttCategory& kind) {
    CExistingHole hole;
    hole.holeType = ValueOf(Openings(), kind, -1);
    if (hole.holeType < 0) return std::nullopt;
    const auto shape = ShapeOf(attributes);
    const auto center = TextOf(attributes, L"holecenter");
    const auto elevation = TextOf(attributes, L"holeelev");
    const auto parent = TextOf(attributes, L"parentid");
    if (!shape || !center || !elevation || !parent) return std::nullopt;
    hole.holeShape = *shape;
    hole.holeCenter = *center;
    hole.holeElev = *elevation;
    hole.parentId = *parent;
    ReadSize(attributes, hole);
    return hole;
}

}  // namespace kycb::scenes::reference
