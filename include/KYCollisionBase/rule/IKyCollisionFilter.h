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
class KYCB_API IKyCollisionFilter {
  public:
    virtual ~IKyCollisionFilter() = default;
    virtual EnumFilterType GetFilterType() const = 0;
    /// A new filter that the caller owns.
    virtual IKyCollisionFilter* Clone() = 0;
    virtual std::wstring ToString() const = 0;
    /// `other` may be null.
    virtual bool Equal(const IKyCollisionFilter* other) const = 0;
    virtual bool IsMeetCondition(double value) const = 0;
};

}  // namespace KYCOLLISION::Rule
