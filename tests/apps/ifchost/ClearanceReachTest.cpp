// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "ifchost/ClearanceReach.h"

namespace ifchost {
namespace {

TEST(ClearanceReach, IsTheLargestOffsetThatAKindCanBeGiven) {
    EXPECT_EQ(LargestOffset(1), 200);
    EXPECT_EQ(LargestOffset(2), 75);
    EXPECT_EQ(LargestOffset(3), 200);
    EXPECT_EQ(LargestOffset(4), 200);
    EXPECT_EQ(LargestOffset(5), 200);
}

TEST(ClearanceReach, IsNothingForWhatIsNoRun) {
    EXPECT_EQ(LargestOffset(0), 0);
    EXPECT_EQ(LargestOffset(-1), 0);
    EXPECT_EQ(LargestOffset(6), 0);
}

TEST(ClearanceReach, SpacesKindsAlikeBothWays) {
    for (std::size_t a = 0; a < kRunKinds; ++a) {
        for (std::size_t b = 0; b < kRunKinds; ++b) {
            EXPECT_EQ(kRunSpacing[a][b], kRunSpacing[b][a]);
        }
    }
}

}  // namespace
}  // namespace ifchost
