// SPDX-License-Identifier: Apache-2.0
// Component priorities for the length of a test, without a priority file.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

#include <map>
#include <string>
#include <utility>

namespace kycb::test {

/// Sets the process-wide priorities and puts the former ones back at its end. The map must not be
/// empty, because an empty one is loaded from the priority file.
class PriorityScope {
  public:
    explicit PriorityScope(std::map<std::wstring, int> priorities)
        : former_(std::exchange(KYCOLLISION::MODEL::AttCategory::s_typePriorityMap,
                                std::move(priorities))) {}
    ~PriorityScope() { KYCOLLISION::MODEL::AttCategory::s_typePriorityMap = std::move(former_); }
    PriorityScope(const PriorityScope&) = delete;
    PriorityScope& operator=(const PriorityScope&) = delete;

  private:
    std::map<std::wstring, int> former_;
};

}  // namespace kycb::test
