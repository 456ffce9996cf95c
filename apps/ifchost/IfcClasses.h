// SPDX-License-Identifier: Apache-2.0
// Which IFC class is a kind of which, for the classes that products in buildings have.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ifchost {

/// The class itself and its supertypes up to IfcProduct, nearest first. A class that the table
/// does not know stands alone. The tree joins IFC2x3 and IFC4; where the two differ, IFC4 counts.
std::vector<std::string> ClassAndSupertypes(std::string_view ifcClass);

/// Whether `ifcClass` is `ancestor` or a kind of it. Both exactly as IFC spells them.
bool IsKindOf(std::string_view ifcClass, std::string_view ancestor);

/// The class whose objects a type class describes: "IfcDuctSegment" for "IfcDuctSegmentType",
/// "IfcDoor" for "IfcDoorStyle"; empty for anything else.
std::string ClassOfType(std::string_view typeClass);

}  // namespace ifchost
