// SPDX-License-Identifier: Apache-2.0
// Where single-precision coordinates of a work set should have their zero.
#pragma once

#include <vector>

#include "ScenePackage.h"

namespace ifchost {

/// Up to this distance from zero, neighbouring single-precision numbers are at most 1/16 mm apart,
/// so that distances inside a body keep better than 0.1 mm; 2^20 mm, some 1049 m.
inline constexpr double kFloatReachMm = 1048576.0;

/// Where the coordinates that the collision model sees have their zero.
///
/// Meshes are single precision. Models that reach farther out than kFloatReachMm (georeferenced
/// ones) are moved: the origin is then the middle of all components of all files, rounded to whole
/// metres; or, where the files lie too far apart for that to help, the median of the components'
/// middles, so that most of them keep their digits. An axis that needs no moving keeps 0, so
/// elevations normally stay what they are.
struct LocalOrigin {
    Point3 origin{};  ///< world coordinates of the local zero, millimetres
    bool moved = false;
    double largestCoordinate = 0.0;       ///< largest absolute world coordinate met, millimetres
    double resolution = 0.0;              ///< coarsest step of any mesh coordinate, millimetres
    std::size_t impreciseComponents = 0;  ///< components that reach beyond kFloatReachMm even so
};

/// `boxes` are those of all bodies, world coordinates.
LocalOrigin ChooseOrigin(const std::vector<SceneBox>& boxes);

}  // namespace ifchost
