// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "ifchost/NominalDiameter.h"

namespace ifchost {
namespace {

TEST(NominalDiameter, IsReadFromTheMarksThatPipesCarry) {
    EXPECT_EQ(NominalDiameterInText("Steel pipe DN100"), 100.0);
    EXPECT_EQ(NominalDiameterInText("dn 65 x 3"), 65.0);
    EXPECT_EQ(NominalDiameterInText("HDPE \xC3\x98"
                                    "110"),
              110.0);
    EXPECT_EQ(NominalDiameterInText("\xCE\xA6 159x6"), 159.0);
    EXPECT_EQ(NominalDiameterInText("\xE2\x8C\x80"
                                    "22.5"),
              22.5);
    EXPECT_EQ(NominalDiameterInText("PE-X De63"), 63.0);
    EXPECT_EQ(NominalDiameterInText("DN=80"), 80.0);
}

TEST(NominalDiameter, IsNotReadFromOtherNumbers) {
    EXPECT_FALSE(NominalDiameterInText(""));
    EXPECT_FALSE(NominalDiameterInText("Pipe 100"));
    EXPECT_FALSE(NominalDiameterInText("Adn100"));
    EXPECT_FALSE(NominalDiameterInText("Model 3"));
    EXPECT_FALSE(NominalDiameterInText("DN"));
    EXPECT_FALSE(NominalDiameterInText("DN0"));
    EXPECT_FALSE(NominalDiameterInText("DN99999999"));
}

TEST(NominalDiameter, FollowsTheSteelSeriesWhereTheOuterDiameterIsOne) {
    EXPECT_EQ(NominalDiameterOfOuter(114.3), 100.0);
    EXPECT_EQ(NominalDiameterOfOuter(114.0), 100.0);
    EXPECT_EQ(NominalDiameterOfOuter(219.1), 200.0);
    EXPECT_EQ(NominalDiameterOfOuter(17.2), 10.0);
}

TEST(NominalDiameter, IsTheOuterDiameterOtherwise) {
    EXPECT_EQ(NominalDiameterOfOuter(110.0), 110.0);
    EXPECT_EQ(NominalDiameterOfOuter(74.7), 75.0);
}

}  // namespace
}  // namespace ifchost
