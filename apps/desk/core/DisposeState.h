// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

namespace desk {

/// What a coordinator does with a clash; the number is what result files hold. Other numbers may
/// come from other hosts: they are shown and kept, but not offered.
enum class DisposeState : int {
    kOpen = 0,
    kAssigned = 1,
    kResolved = 2,
    kAccepted = 3,  ///< stays as it is, on purpose
};

inline constexpr std::array<DisposeState, 4> kDisposeStates{
    DisposeState::kOpen, DisposeState::kAssigned, DisposeState::kResolved, DisposeState::kAccepted};

}  // namespace desk
