// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

#include <map>
#include <string>
#include <utility>

/// Priorities of kinds that hold for as long as it lives, without a priority file.
class Priorities {
  public:
    explicit Priorities(std::map<std::wstring, int> priorities)
        : before_(std::exchange(KYCOLLISION::MODEL::AttCategory::s_typePriorityMap,
                                std::move(priorities))) {}
    ~Priorities() { KYCOLLISION::MODEL::AttCategory::s_typePriorityMap = before_; }
    Priorities(const Priorities&) = delete;
    Priorities& operator=(const Priorities&) = delete;

  private:
    std::map<std::wstring, int> before_;
};
