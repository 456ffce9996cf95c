// SPDX-License-Identifier: Apache-2.0
#include <random>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "ifchost/IfcGuid.h"

namespace ifchost {
namespace {

TEST(IfcGuid, ReadsTheFirstCharacterAsTheTopTwoBits) {
    EXPECT_EQ(HexFromGlobalId("0000000000000000000000"), L"00000000000000000000000000000000");
    EXPECT_EQ(HexFromGlobalId("1000000000000000000000"), L"40000000000000000000000000000000");
    EXPECT_EQ(HexFromGlobalId("3$$$$$$$$$$$$$$$$$$$$$"), L"ffffffffffffffffffffffffffffffff");
}

TEST(IfcGuid, ReadsTheLastCharacterAsTheLowestSixBits) {
    EXPECT_EQ(HexFromGlobalId("0000000000000000000001"), L"00000000000000000000000000000001");
    EXPECT_EQ(HexFromGlobalId("000000000000000000000A"), L"0000000000000000000000000000000a");
    EXPECT_EQ(HexFromGlobalId("000000000000000000000a"), L"00000000000000000000000000000024");
    EXPECT_EQ(HexFromGlobalId("0000000000000000000010"), L"00000000000000000000000000000040");
}

TEST(IfcGuid, KeepsIdentifiersApartThatDifferInCaseOnly) {
    EXPECT_NE(HexFromGlobalId("2O2Fr$t4X7Zf8NOew3FLOH"), HexFromGlobalId("2o2fr$t4x7zf8noew3floh"));
}

TEST(IfcGuid, GivesLowerCaseDigits) {
    EXPECT_EQ(HexFromGlobalId("2Lf0000000000000000000"), L"95a40000000000000000000000000000");
}

TEST(IfcGuid, RefusesWhatIsNoGlobalId) {
    EXPECT_FALSE(HexFromGlobalId(""));
    EXPECT_FALSE(HexFromGlobalId("000000000000000000000"));
    EXPECT_FALSE(HexFromGlobalId("00000000000000000000000"));
    EXPECT_FALSE(HexFromGlobalId("4000000000000000000000"));
    EXPECT_FALSE(HexFromGlobalId("00000000000-0000000000"));
    EXPECT_FALSE(HexFromGlobalId("00000000000000000000\xC3\xA4"));
}

TEST(IfcGuid, RefusesWhatIsNoHexText) {
    EXPECT_FALSE(GlobalIdFromHex(L""));
    EXPECT_FALSE(GlobalIdFromHex(L"0000000000000000000000000000000"));
    EXPECT_FALSE(GlobalIdFromHex(L"000000000000000000000000000000000"));
    EXPECT_FALSE(GlobalIdFromHex(L"0000000000000000000000000000000g"));
}

TEST(IfcGuid, TakesHexDigitsOfEitherCaseBack) {
    EXPECT_EQ(GlobalIdFromHex(L"95A40000000000000000000000000000"), "2Lf0000000000000000000");
    EXPECT_EQ(GlobalIdFromHex(L"95a40000000000000000000000000000"), "2Lf0000000000000000000");
}

TEST(IfcGuid, ConvertsBothWaysWithoutLoss) {
    constexpr std::string_view alphabet =
        "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> digit(0, 63);
    std::set<std::wstring> seen;
    for (int i = 0; i < 2000; ++i) {
        std::string id(1, alphabet[digit(random) % 4]);
        while (id.size() < kGlobalIdCharacters)
            id.push_back(alphabet[digit(random)]);
        const auto hex = HexFromGlobalId(id);
        ASSERT_TRUE(hex) << id;
        EXPECT_EQ(hex->size(), kGuidHexDigits);
        EXPECT_EQ(GlobalIdFromHex(*hex), id);
        seen.insert(*hex);
    }
    EXPECT_EQ(seen.size(), 2000U);
}

TEST(IfcGuid, MakesUpTheSameGuidForTheSameText) {
    EXPECT_EQ(HexFromText("wall#2"), HexFromText("wall#2"));
    EXPECT_NE(HexFromText("wall#2"), HexFromText("wall#3"));
    const std::wstring madeUp = HexFromText("");
    ASSERT_EQ(madeUp.size(), kGuidHexDigits);
    EXPECT_EQ(madeUp[12], L'5');
    EXPECT_TRUE(GlobalIdFromHex(madeUp));
}

}  // namespace
}  // namespace ifchost
