// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "ifchost/IfcGuid.h"
#include "kyclash/GlobalIdOf.h"

namespace kyclash {
namespace {

TEST(GlobalIdOf, IsTheOneOfTheSameValue) {
    // The first of the 22 characters holds two bits, each other one six.
    EXPECT_EQ(GlobalIdOf(L"00000000000000000000000000000000"), "0000000000000000000000");
    EXPECT_EQ(GlobalIdOf(L"ffffffffffffffffffffffffffffffff"), "3$$$$$$$$$$$$$$$$$$$$$");
}

TEST(GlobalIdOf, IsNoneForAGuidThatWasMadeUp) {
    EXPECT_EQ(GlobalIdOf(ifchost::HexFromText("twice")), std::nullopt);
    EXPECT_EQ(GlobalIdOf(L"00000000000050008000000000000000"), std::nullopt);
    EXPECT_NE(GlobalIdOf(L"00000000000050000000000000000000"), std::nullopt) << "no UUID";
}

TEST(GlobalIdOf, IsNoneForWhatIsNoGuid) {
    EXPECT_EQ(GlobalIdOf(L""), std::nullopt);
    EXPECT_EQ(GlobalIdOf(L"0000000000000000000000000000000"), std::nullopt);
    EXPECT_EQ(GlobalIdOf(L"0000000000000000000000000000000g"), std::nullopt);
}

}  // namespace
}  // namespace kyclash
