// SPDX-License-Identifier: Apache-2.0
// Clashes, openings and products as tables for spreadsheets.
#pragma once

#include "KYCollisionBase/result/CExistingHole.h"

#include <memory>
#include <string>
#include <vector>

#include "ifchost/IfcWorkset.h"
#include "kyclash/ClashHistory.h"

namespace kyclash {

/// Which clashes a table lists.
enum class ClashSelection {
    Listed,  ///< all but those that are gone
    Gone,
};

/// One row per clash: its status, every field of the result item (positions in world coordinates,
/// mm), and GlobalId, class and file of both components as far as the work set has them.
std::string ClashTable(const std::vector<TrackedClash>& clashes, ClashSelection selection,
                       const ifchost::IfcWorkset& workset);

using Opening = std::shared_ptr<const KYCOLLISION::RESULT::CExistingHole>;

/// One row per opening: every field of the record, and GlobalId, class and file of the opening and
/// of what it is in.
std::string OpeningTable(const std::vector<Opening>& openings, const ifchost::IfcWorkset& workset);

/// One row per product of the files, checked or not: what the file says about it, its category, and
/// which rule of the mapping decided.
std::string ProductTable(const ifchost::IfcWorkset& workset);

/// The kind of an opening in words, as "door", for the codes that the library gives.
std::string OpeningTypeText(int type);

/// The shape of an opening in words, as "rectangle"; empty for shapes that are not known.
std::string OpeningShapeText(int shape);

}  // namespace kyclash
