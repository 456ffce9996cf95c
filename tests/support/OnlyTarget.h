// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include <hwy/targets.h>

namespace kycb::test {

/// Lets everything that is dispatched at run time run on one instruction set; on the best one again
/// when it goes out of scope.
class OnlyTarget {
  public:
    explicit OnlyTarget(std::int64_t target) { Choose(target); }
    ~OnlyTarget() { Choose(0); }
    OnlyTarget(const OnlyTarget&) = delete;
    OnlyTarget& operator=(const OnlyTarget&) = delete;

  private:
    static void Choose(std::int64_t target) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
};

}  // namespace kycb::test
