// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>

namespace KYCOLLISION::Rule {

/// The kinds of filter that a rule item can carry.
enum EnumFilterType : int {
    eFilterNone = 0,       ///< no filter
    eFilterAttrRange = 1,  ///< KyAttrRangeFilter
};

/// A condition on a numeric attribute that narrows the components that a rule item applies to.
///
/// A filter belongs to the rule item that holds it, which deletes it.
class KYCB_API IKyCollisionFilter {
  public:
    virtual ~IKyCollisionFilter() = default;

    virtual EnumFilterType GetFilterType() const = 0;

    /// A new filter that the caller owns.
    virtual IKyCollisionFilter* Clone() = 0;

    /// The text form, as the rule file holds it.
    virtual std::wstring ToString() const = 0;

    /// True for a filter of the same type and text. `other` may be null.
    virtual bool Equal(const IKyCollisionFilter* other) const = 0;

    /// True when a component whose attribute has this value takes part in the check.
    virtual bool IsMeetCondition(double value) const = 0;
};

}  // namespace KYCOLLISION::Rule
