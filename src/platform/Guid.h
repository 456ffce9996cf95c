// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace kycb::platform {

/// A GUID by its fields, so that each caller formats it as its contract asks.
struct Guid {
    std::uint32_t data1 = 0;
    std::uint16_t data2 = 0;
    std::uint16_t data3 = 0;
    std::array<std::uint8_t, 8> data4{};

    friend bool operator==(const Guid&, const Guid&) = default;
};

/// A random GUID (version 4) from the operating system's entropy; nothing when that fails.
std::optional<Guid> CreateRandomGuid();

}  // namespace kycb::platform
