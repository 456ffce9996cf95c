// SPDX-License-Identifier: Apache-2.0
// The driver's stop flag, as a host on another thread handles it.
#pragma once

#include "KYCollisionBase/logic/CCollisionCheck.h"

#include <atomic>

namespace kycb::test {

/// Clears the flag at its beginning and end, so that no test stops the next one.
class StopFlag {
  public:
    StopFlag() { Clear(); }
    ~StopFlag() { Clear(); }
    StopFlag(const StopFlag&) = delete;
    StopFlag& operator=(const StopFlag&) = delete;

    void Set() { Store(true); }
    void Clear() { Store(false); }

  private:
    static void Store(bool value) {
        std::atomic_ref<bool>(KYCOLLISION::LOGIC::CCollisionCheck::s_bStopCheck).store(value);
    }
};

}  // namespace kycb::test
