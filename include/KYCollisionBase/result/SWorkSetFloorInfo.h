// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <any>
#include <string>
#include <utility>
#include <vector>

/// A host's selector of results: either a list of floors, or a height band within some projects.
struct SWorkSetFloorInfo {
    std::vector<std::pair<int, std::wstring>> floorList;  ///< (project id, floor name) pairs
    double lowerHeight = 0.0;     ///< lower bound of the clash height (mm), itself outside the band
    double upperHeight = 0.0;     ///< upper bound of the clash height (mm), itself inside the band
    std::vector<int> projectIds;  ///< projects that the height band applies to
    std::any hostData;  ///< the host's own; handed back with the results, neither read nor written
};
