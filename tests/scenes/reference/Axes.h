// SPDX-License-Identifier: Apache-2.0
// The position of a point among grid axes.
#pragma once

#include <string>
#include <vector>

#include "scenes/Scene.h"

namespace kycb::scenes::reference {

/// The position text of (x, y) (mm) among axes that the host put into its quad tree in this order.
std::wstring AxisPosition(double x, double y, const std::vector<SceneAxis>& axes);

}  // namespace kycb::scenes::reference
