// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <string>

namespace KYCOLLISION::Rule {

/// A filter that compares an attribute with a whole number, such as a pipe's nominal diameter.
///
/// Its text form is a field name, an optional unit in parentheses, an operator ("<", "<=", "=",
/// ">=" or ">") and a number: DN(mm)>=100.
class KYCB_API KyAttrRangeFilter : public IKyCollisionFilter {
  public:
    /// Reads a text form; what the text does not say stays at its default: no field name, no unit,
    /// "=", 0.
    ///
    /// The last operator in the text counts. The texts before and after it are the field name,
    /// without blanks at its ends, and the number, of which only the leading digits count (0
    /// without any; one beyond a signed 32-bit integer counts as its limit). A negative number
    /// wraps to 2^32 minus its magnitude. A text that does not split into two parts at the operator
    /// sets the operator only. A field name that ends with ")" but holds no "(" has no unit.
    explicit KyAttrRangeFilter(const std::wstring& text);

    const std::wstring& GetFieldName() const { return fieldName_; }
    void SetFieldName(const std::wstring& name) { fieldName_ = name; }
    const std::wstring& GetUnit() const { return unit_; }
    void SetUnit(const std::wstring& unit) { unit_ = unit; }
    std::wstring GetOperatorType() const { return operatorType_; }
    /// Takes any text; one that is no operator makes a filter that nothing meets.
    void SetOperatorType(std::wstring operatorType);
    unsigned int GetValue() const { return value_; }
    void SetValue(unsigned int value) { value_ = value; }

    /// The name of the attribute that is shown to the user: "DN".
    std::wstring GetShortName() const;

    EnumFilterType GetFilterType() const override;

    /// A filter read from this one's text form; it differs from this one where the fields hold
    /// operators of their own or the number is above 2^31 - 1.
    IKyCollisionFilter* Clone() override;

    std::wstring ToString() const override;
    bool Equal(const IKyCollisionFilter* other) const override;

    /// Compares `value` with the number; "=" holds when they differ by less than 1e-5.
    bool IsMeetCondition(double value) const override;

  private:
    void AnalyzeString(const std::wstring& text);
    void AnalyzeField(const std::wstring& text);

    std::wstring fieldName_;
    std::wstring unit_;
    std::wstring operatorType_ = L"=";
    unsigned int value_ = 0;
};

}  // namespace KYCOLLISION::Rule
