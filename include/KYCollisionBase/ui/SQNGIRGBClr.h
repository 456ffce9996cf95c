// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// A colour of the diagnostic drawing: 0 is none, 255 all of a component.
struct SQNGIRGBClr {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const SQNGIRGBClr&, const SQNGIRGBClr&) = default;
};
