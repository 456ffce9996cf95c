// SPDX-License-Identifier: Apache-2.0
// The text form of attribute range filters.
#include "KYCollisionBase/rule/KyAttrRangeFilter.h"

#include <cstdint>
#include <memory>

#include "Require.h"
#include "platform/Text.h"

using kycbfuzz::Require;
using KYCOLLISION::Rule::IKyCollisionFilter;
using KYCOLLISION::Rule::KyAttrRangeFilter;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    KyAttrRangeFilter filter(kycb::text::FromUtf8(bytes));
    const std::unique_ptr<IKyCollisionFilter> copy(filter.Clone());
    const std::wstring operatorType = filter.GetOperatorType();
    Require(filter.Equal(&filter), "a filter equals itself");
    Require(copy->Equal(&filter) == filter.Equal(copy.get()), "equality goes both ways");
    Require(operatorType == L"<" || operatorType == L"<=" || operatorType == L"=" ||
                operatorType == L">=" || operatorType == L">",
            "a text gives one of the five operators");
    const double value = filter.GetValue();
    Require(filter.IsMeetCondition(value) == (operatorType.find(L'=') != std::wstring::npos),
            "the threshold meets the operators that hold \"=\"");
    return 0;
}
