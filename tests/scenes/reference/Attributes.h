// SPDX-License-Identifier: Apache-2.0
// What the reference reads out of the attributes of a component.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "scenes/Outcome.h"
#include "scenes/reference/Kinds.h"

namespace kycb::scenes::reference {

using Attributes = std::map<std::wstring, std::wstring>;

/// The text of one attribute, none when it is missing.
std::optional<std::wstring> TextOf(const Attributes& attributes, const std::wstring& name);

/// The height text of a result.
/// @throws std::invalid_argument, std::out_of_range for a height that is not a number.
std::wstring HeightText(const Attributes& attributes, const AttCategory& kind);

/// The nominal diameter of a pipe.
std::optional<double> PipeValue(const Attributes& attributes);

/// The GUIDs of everything that belongs with a component.
std::vector<std::wstring> RelatedGuids(const Attributes& attributes);

/// The distance between the two ends of a support (mm).
std::optional<double> SupportLength(const Attributes& attributes);

/// Width, height and radius of a support's section; what is not given is 0.
std::optional<std::array<double, 3>> SupportSection(const Attributes& attributes);

/// What the attributes say of an opening; nothing when the component is none, or lacks any of
/// shape, centre, elevation and parent.
/// @throws std::invalid_argument, std::out_of_range for a size that is no whole number.
std::optional<KYCOLLISION::RESULT::CExistingHole> ReadOpening(const Attributes& attributes,
                                                              const AttCategory& kind);

}  // namespace kycb::scenes::reference
