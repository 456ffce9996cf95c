// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace ifchost {
class IfcWorkset;
}

namespace desk {

/// A slab of the building between two heights in scene coordinates (mm).
struct Section {
    float bottom = 0.0F;
    float top = 0.0F;
};

/// A floor with its slab, cut `height` (mm) above it. The floor is named by its project and its
/// name; a name that the project does not have, and no floor at all, mean the lowest one (of the
/// first project). Nothing when there is no such project or it has no floors.
std::optional<Section> SectionAbove(const ifchost::IfcWorkset& workset,
                                    const std::optional<std::pair<int, std::wstring>>& floor,
                                    double height);

}  // namespace desk
