// SPDX-License-Identifier: Apache-2.0
// The nominal diameter of a pipe, from its texts or from its size.
#pragma once

#include <optional>
#include <string_view>

namespace ifchost {

/// The diameter (mm) that a name or type tells: "DN100", "dn 50", "Ø110", "Φ 159x6", "De63". The
/// first such mark counts; nothing when there is none.
std::optional<double> NominalDiameterInText(std::string_view utf8);

/// The nominal diameter (mm) of a pipe with this outer diameter (mm): that of the steel pipe series
/// of ISO 4200 / EN 10255 when the size is one of its outer diameters, else the outer diameter in
/// whole millimetres, as plastic pipes are named.
double NominalDiameterOfOuter(double outerMm);

}  // namespace ifchost
