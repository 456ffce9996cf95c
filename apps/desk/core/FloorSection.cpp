// SPDX-License-Identifier: Apache-2.0
#include "desk/core/FloorSection.h"

#include <algorithm>

#include "ifchost/IfcWorkset.h"

namespace desk {
namespace {

// The slab of the floor belongs to the section (mm).
constexpr double kSlab = 600.0;

const ifchost::WorksetProject* ProjectOf(const ifchost::IfcWorkset& workset,
                                         std::optional<int> project) {
    if (project) return workset.Project(*project);
    return workset.Projects().empty() ? nullptr : &workset.Projects().front();
}

}  // namespace

std::optional<Section> SectionAbove(const ifchost::IfcWorkset& workset,
                                    const std::optional<std::pair<int, std::wstring>>& floor,
                                    double height) {
    const auto* project = ProjectOf(workset, floor ? std::optional(floor->first) : std::nullopt);
    if (project == nullptr || project->floors.empty()) return std::nullopt;
    const auto& floors = project->floors;
    const auto lowest =
        std::min_element(floors.begin(), floors.end(),
                         [](const auto& a, const auto& b) { return a.under < b.under; });
    const auto named = std::find_if(floors.begin(), floors.end(), [&](const auto& each) {
        return floor && each.name == floor->second;
    });
    const auto& shown = named == floors.end() ? *lowest : *named;
    const double level = shown.under - workset.Origin().origin[2];
    return Section{static_cast<float>(level - kSlab), static_cast<float>(level + height)};
}

}  // namespace desk
