// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"

#include "KYCollisionBase/platform/HostServices.h"

#include <cmath>
#include <utility>
#include <vector>

#include "platform/Text.h"

namespace KYCOLLISION::Rule {
namespace {

/// Below this difference an attribute counts as equal to the threshold, a whole number: attributes
/// are read from decimal texts, whose conversion errs far less.
constexpr double kEqualTolerance = 1e-5;

/// The last operator in a text, empty without one.
std::wstring LastOperator(const std::wstring& text) {
    const std::size_t last = text.find_last_of(L"<=>");
    if (last == std::wstring::npos) return {};
    const bool hasTwoCharacters =
        text[last] == L'=' && last > 0 && (text[last - 1] == L'<' || text[last - 1] == L'>');
    return hasTwoCharacters ? text.substr(last - 1, 2) : text.substr(last, 1);
}

}  // namespace

KyAttrRangeFilter::KyAttrRangeFilter(const std::wstring& text) {
    AnalyzeString(text);
}

void KyAttrRangeFilter::SetOperatorType(std::wstring operatorType) {
    operatorType_ = std::move(operatorType);
}

std::wstring KyAttrRangeFilter::GetShortName() const {
    return L"DN";
}

EnumFilterType KyAttrRangeFilter::GetFilterType() const {
    return eFilterAttrRange;
}

IKyCollisionFilter* KyAttrRangeFilter::Clone() {
    return new KyAttrRangeFilter(ToString());
}

std::wstring KyAttrRangeFilter::ToString() const {
    std::wstring text = fieldName_;
    if (!unit_.empty()) text += L"(" + unit_ + L")";
    return text + operatorType_ + kycb::text::FromInt(value_);
}

bool KyAttrRangeFilter::Equal(const IKyCollisionFilter* other) const {
    return other && other->GetFilterType() == GetFilterType() && other->ToString() == ToString();
}

bool KyAttrRangeFilter::IsMeetCondition(double value) const {
    const auto threshold = static_cast<double>(value_);
    if (operatorType_ == L">") return value > threshold;
    if (operatorType_ == L">=") return value >= threshold;
    if (operatorType_ == L"=") return std::fabs(threshold - value) < kEqualTolerance;
    if (operatorType_ == L"<=") return value <= threshold;
    if (operatorType_ == L"<") return value < threshold;
    return false;
}

void KyAttrRangeFilter::AnalyzeString(const std::wstring& text) {
    const std::wstring operatorType = LastOperator(text);
    if (operatorType.empty()) return;
    operatorType_ = operatorType;
    const std::vector<std::wstring> parts = kycb::text::Split(text, operatorType);
    if (parts.size() != 2) return;
    AnalyzeField(BASETOOLS::StringTrim(parts[0]));
    value_ = static_cast<unsigned int>(kycb::text::ToInt(parts[1]));
}

void KyAttrRangeFilter::AnalyzeField(const std::wstring& text) {
    const std::size_t open = text.ends_with(L')') ? text.rfind(L'(') : std::wstring::npos;
    fieldName_ = text.substr(0, open);
    if (open != std::wstring::npos) unit_ = text.substr(open + 1, text.size() - open - 2);
}

}  // namespace KYCOLLISION::Rule
