// SPDX-License-Identifier: Apache-2.0
#include <string>

#include <gtest/gtest.h>

#include "ifchost/Sha256.h"

namespace ifchost {
namespace {

// Expected values: the examples of FIPS 180-2, appendix B.

TEST(Sha256, MatchesThePublishedOneBlockExample) {
    Sha256 hash;
    hash.Update("abc");
    EXPECT_EQ(Sha256::Hex(hash.Finish()),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Sha256, MatchesThePublishedLongExampleInPieces) {
    Sha256 hash;
    for (int i = 0; i < 1000; ++i)
        hash.Update(std::string(1000, 'a'));
    EXPECT_EQ(Sha256::Hex(hash.Finish()),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, HashesNothing) {
    EXPECT_EQ(Sha256::Hex(Sha256().Finish()),
              "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

}  // namespace
}  // namespace ifchost
