// SPDX-License-Identifier: Apache-2.0
// A filter that shows who owns it.
#pragma once

#include "KYCollisionBase/rule/IKyCollisionFilter.h"

#include <string>

namespace KYCOLLISION::Rule {

/// Counts the filters of its kind that are alive, and says itself what it equals.
class CountedFilter : public IKyCollisionFilter {
  public:
    explicit CountedFilter(bool equalsNone = false) : equalsNone_(equalsNone) { ++alive; }
    ~CountedFilter() override { --alive; }
    EnumFilterType GetFilterType() const override { return static_cast<EnumFilterType>(9); }
    IKyCollisionFilter* Clone() override { return new CountedFilter(equalsNone_); }
    std::wstring ToString() const override { return L"counted"; }
    bool Equal(const IKyCollisionFilter* other) const override { return other || equalsNone_; }
    bool IsMeetCondition(double) const override { return true; }

    static inline int alive = 0;

  private:
    bool equalsNone_;
};

}  // namespace KYCOLLISION::Rule
