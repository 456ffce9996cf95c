// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>

namespace kycb::platform {

/// Lets the calling thread sleep for at least `duration`.
void Pause(std::chrono::milliseconds duration);

}  // namespace kycb::platform
