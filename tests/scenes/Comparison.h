// SPDX-License-Identifier: Apache-2.0
// A scene through the library and through the reference, side by side.
#pragma once

#include <optional>
#include <string>

#include "scenes/LibrarySession.h"
#include "scenes/Scene.h"

namespace kycb::scenes {

/// The first difference between reference and library, in words; none when they agree.
std::optional<std::string> DifferenceIn(const Scene& scene, Walk walk);

/// What there is to say of a scene on which they differ: its seed, and the difference in the
/// smallest part of the scene that still shows one.
std::string Explain(const Scene& scene, Walk walk);

}  // namespace kycb::scenes
