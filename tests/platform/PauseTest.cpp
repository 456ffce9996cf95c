// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "platform/Pause.h"

namespace kycb::platform {
namespace {

TEST(Pause, LastsAtLeastTheGivenTime) {
    const auto start = std::chrono::steady_clock::now();
    Pause(std::chrono::milliseconds(10));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(10));
}

}  // namespace
}  // namespace kycb::platform
