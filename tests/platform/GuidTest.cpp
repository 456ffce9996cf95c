// SPDX-License-Identifier: Apache-2.0
#include <set>
#include <tuple>

#include <gtest/gtest.h>

#include "platform/Guid.h"

namespace kycb::platform {
namespace {

TEST(CreateRandomGuid, MarksVersionFourOfTheStandardVariant) {
    for (int i = 0; i < 100; ++i) {
        const std::optional<Guid> guid = CreateRandomGuid();
        ASSERT_TRUE(guid);
        EXPECT_EQ(guid->data3 >> 12, 4);
        EXPECT_EQ(guid->data4[0] >> 6, 2);
    }
}

TEST(CreateRandomGuid, NeverRepeats) {
    std::set<std::tuple<std::uint32_t, std::uint16_t, std::uint16_t, std::array<std::uint8_t, 8>>>
        seen;
    for (int i = 0; i < 10000; ++i) {
        const Guid guid = *CreateRandomGuid();
        EXPECT_TRUE(seen.emplace(guid.data1, guid.data2, guid.data3, guid.data4).second);
    }
}

}  // namespace
}  // namespace kycb::platform
