// SPDX-License-Identifier: Apache-2.0
// The named attributes of a component, as the collision library reads them.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "IfcWorkset.h"

namespace ifchost {

/// What the "holeshape" attribute says.
enum class HoleShape : int { Rectangle = 1, Circle = 2, Other = 3 };

/// Works out attributes from the IFC data. All heights are world elevations and all points world
/// coordinates, in millimetres; GUIDs are those of the model. docs/ifc-host.md tells the sources.
class ComponentAttributes {
  public:
    using Map = std::map<std::wstring, std::wstring>;

    explicit ComponentAttributes(const IfcWorkset& workset);
    ~ComponentAttributes();
    ComponentAttributes(const ComponentAttributes&) = delete;
    ComponentAttributes& operator=(const ComponentAttributes&) = delete;

    /// All attributes of the component with this index. Precondition: it exists.
    Map Read(std::size_t component) const;

  private:
    class ProjectReader;
    const IfcWorkset& workset_;
    std::vector<std::unique_ptr<ProjectReader>> projects_;
};

}  // namespace ifchost
