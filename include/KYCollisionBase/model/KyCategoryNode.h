// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/model/EnumNodeType.h"

#include <string>
#include <vector>

namespace KYCOLLISION::MODEL {

/// A node of the category tree with all below it. A plain record.
struct KyCategoryNode {
    EnumNodeType type = eNodeNone;
    std::wstring name;                     ///< shown and matched, e.g. "给排水"
    std::vector<KyCategoryNode> children;  ///< the next level; empty for minor categories
};

}  // namespace KYCOLLISION::MODEL
