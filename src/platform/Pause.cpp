// SPDX-License-Identifier: Apache-2.0
#include "platform/Pause.h"

#include <thread>

namespace kycb::platform {

void Pause(std::chrono::milliseconds duration) {
    std::this_thread::sleep_for(duration);
}

}  // namespace kycb::platform
