// SPDX-License-Identifier: Apache-2.0
// A whole task for the library, as plain data: components, axes, rule sets and runs.
#pragma once

#include "KYCollisionBase/logic/SCollisionFloor.h"
#include "KYCollisionBase/rule/KyExcludeItem.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/SceneBuilder.h"

namespace kycb::scenes {

using test::SceneComponent;
using FloorKey = std::pair<int, std::wstring>;

/// A grid axis: a line from (x0, y0) to (x1, y1), or, with a radius, an arc about (x0, y0). Lengths
/// are millimetres, angles radians.
struct SceneAxis {
    std::wstring name;
    double x0 = 0.0;
    double y0 = 0.0;
    double x1 = 0.0;
    double y1 = 0.0;
    std::optional<double> radius;
    double startAngle = 0.0;
    double sweepAngle = 0.0;
};

/// One exclusion and the specialty that it is filed under.
struct SceneExclude {
    std::wstring key;
    KYCOLLISION::Rule::KyExcludeItem item;
};

struct SceneRule {
    std::wstring path;
    bool valid = true;
    int modeType = 0;
    int tolerance = 0;
    std::optional<std::wstring> filter;
    std::vector<SceneExclude> excludes;
};

/// How a rule set reaches the library: item by item, or as the text of a rule file.
enum class RuleRoute { kItems, kXmlText };

/// One check run.
struct SceneRun {
    std::vector<SceneRule> rules;
    RuleRoute route = RuleRoute::kItems;
    std::vector<SCollisionFloor> floors;
    /// The stop flag is set before the run (0), or while the n-th mesh is asked for (from 1).
    std::optional<int> stopAtMeshCall;
};

struct Scene {
    std::uint64_t seed = 0;
    std::vector<SceneComponent> components;  ///< in the order of appending
    std::map<FloorKey, std::vector<SceneAxis>> axes;
    std::map<std::wstring, int> priorities;  ///< by category path; not empty
    std::vector<SceneRun> runs;              ///< one after the other, on one model
};

/// What the host answers for the minor category of a component, which tells what it was asked.
inline std::wstring HostMinorName(int projectId, const std::wstring& floorName,
                                  const std::wstring& guid) {
    return L"显示" + std::to_wstring(projectId) + L"/" + floorName + L"/" + guid;
}

}  // namespace kycb::scenes
