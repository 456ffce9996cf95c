// SPDX-License-Identifier: Apache-2.0
// The grid axes that serve a floor, as the collision library takes them.
#pragma once

#include "KYCollisionBase/logic/SQNGIAxisItem.h"

#include <memory>
#include <string_view>
#include <vector>

#include "IfcWorkset.h"

namespace ifchost {

/// The axes for a floor, relative to the work set's origin and at height 0: positions are read in
/// plan, but distances in space, so the axes have to lie where the points are taken to. One item
/// per straight piece or arc; pieces without length are left out. Empty for unknown floors.
///
/// The grids are those of the floor's storey; else those of the file that belong to no storey;
/// else those of the storey nearest in height that has any. A file without a grid uses, in the
/// same way, those of the first file that has one.
std::vector<std::unique_ptr<KYCOLLISION::LOGIC::SQNGIAxisItem>> AxesOfFloor(
    const IfcWorkset& workset, int projectId, std::wstring_view floorName);

}  // namespace ifchost
