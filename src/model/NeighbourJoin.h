// SPDX-License-Identifier: Apache-2.0
// Lists the neighbours of all components of a floor at once.
#pragma once

#include <memory>
#include <vector>

#include "model/FloorTree.h"

namespace kycb::model {

/// Gives every component of one floor its list of neighbours, the same and in the same order as if
/// each had asked every floor in turn. Returns the room of the lists, which the components borrow.
///
/// `floors` are those that can hold neighbours, in the order in which they are asked; `own` is one
/// of them, and its components get the lists. All boxes are those of the trees, and every tree
/// holds all of its components (FloorTree::HoldsAll). `inset` is by how much a component's vertical
/// range is narrowed at each end (mm).
///
/// A sweep finds the pairs in any order. They are handed out by the component that is seen, in the
/// order in which the floors deliver their components, so that every list comes out in that order
/// without being sorted.
std::unique_ptr<KYCOLLISION::MODEL::ObjectModelInfo*[]> ListNeighbours(
    const std::vector<const FloorTree*>& floors, const FloorTree& own, double inset);

}  // namespace kycb::model
