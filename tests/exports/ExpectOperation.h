// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

namespace kycb::test {

/// Refers to an operation by the signature that hosts know. The reference is kept from being
/// optimised away, so it has to be found in the shared object.
template <class Signature>
void ExpectOperation(Signature operation) {
    const volatile Signature kept = operation;
    EXPECT_TRUE(kept != nullptr);
}

}  // namespace kycb::test
