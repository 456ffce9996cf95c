// SPDX-License-Identifier: Apache-2.0
// The JSON part of a scene package as typed records.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "ScenePackage.h"

namespace ifchost {

/// All that the JSON part holds.
struct SceneDocument {
    SceneFileInfo file;
    std::vector<SceneSpatial> sites;
    std::vector<SceneSpatial> buildings;
    std::vector<SceneStorey> storeys;
    std::vector<SceneProduct> products;
    std::vector<SceneSystem> systems;
    std::vector<SceneGrid> grids;
    SceneRelations relations;
    std::vector<SceneWarning> warnings;
    std::vector<std::string> strings;
};

/// What is wrong in a package, and where. Does not leave the reader.
class SceneFormatError : public std::runtime_error {
  public:
    SceneFormatError(std::string place, const std::string& message)
        : std::runtime_error(message), place_(std::move(place)) {}
    const std::string& Place() const { return place_; }

  private:
    std::string place_;
};

/// Parses the JSON part. Every index between its lists is in range in the result. Throws
/// SceneFormatError.
SceneDocument ParseSceneDocument(std::string_view text);

}  // namespace ifchost
