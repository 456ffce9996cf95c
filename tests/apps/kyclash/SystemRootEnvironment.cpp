// SPDX-License-Identifier: Apache-2.0
// Gives the library the shipped system root before any test asks for a category: it reads the
// category tree once per process.
#include <iostream>

#include <gtest/gtest.h>

#include "kyclash/SystemRoot.h"

namespace kyclash {
namespace {

class SystemRootEnvironment : public ::testing::Environment {
  public:
    void SetUp() override {
        ASSERT_TRUE(UseSystemRoot(ShippedDataFolder() / "system-root", std::cerr));
    }
};

const auto* const kEnvironment =
    ::testing::AddGlobalTestEnvironment(new SystemRootEnvironment);  // gtest's from here on

}  // namespace
}  // namespace kyclash
