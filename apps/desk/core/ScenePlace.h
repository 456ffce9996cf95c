// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "desk/core/Session.h"

namespace desk {

/// A point in scene coordinates (mm).
using ScenePoint = std::array<double, 3>;

/// Where in the scene a clash is. A component is missing when its model is not open.
struct ClashPlace {
    std::optional<std::size_t> main;    ///< component
    std::optional<std::size_t> second;  ///< component
    ScenePoint point{};
};

/// Where in the scene an opening is.
struct OpeningPlace {
    std::size_t component = 0;
    ScenePoint min{};
    ScenePoint max{};

    ScenePoint Middle() const {
        return {(min[0] + max[0]) / 2, (min[1] + max[1]) / 2, (min[2] + max[2]) / 2};
    }
};

/// Nothing without models, and for a clash whose position is no point.
std::optional<ClashPlace> PlaceOf(const Session& session, const Session::Item& clash);
/// Nothing when the opening's model is not open.
std::optional<OpeningPlace> PlaceOf(const Session& session, const Session::Hole& opening);

}  // namespace desk
