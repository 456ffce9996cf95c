// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace kycb {

/// The outcome of an operation that can fail: a failure carries a text for the user that names the
/// file and, where there is one, the place in it.
struct [[nodiscard]] Status {
    std::wstring text;  ///< empty on success

    bool IsOk() const { return text.empty(); }
};

}  // namespace kycb
