// SPDX-License-Identifier: Apache-2.0
// Decides for each product of a file whether it is checked, listed, or why it takes no part.
#pragma once

#include "KYCollisionBase/model/AttCategory.h"

#include <string_view>
#include <vector>

#include "Classification.h"
#include "IfcWorkset.h"
#include "ScenePackage.h"

namespace ifchost {

/// The decision on one product. Category and role count for `Checked` and `ListedOpening` only.
struct ProductDecision {
    ProductFate fate = ProductFate::NotABody;
    ComponentRole role = ComponentRole::Body;
    KYCOLLISION::MODEL::AttCategory category;
    std::int32_t rule = kNoIndex;
    std::string note;
};

/// One decision per product, in their order.
///
/// An assembly whose parts are checked is checked through them. One that has a body of its own
/// besides counts as doubled, and is left to its parts, when these hold at least half of its
/// volume; otherwise (bars inside a precast wall, say) both are checked.
///
/// An opening that a checked door or window fills is left to that; any other opening of a host is
/// listed, as a slab opening where its host lies flat and as a wall opening elsewhere.
std::vector<ProductDecision> DecideProducts(const ScenePackage& package,
                                            const Classification& classification,
                                            std::string_view file);

}  // namespace ifchost
