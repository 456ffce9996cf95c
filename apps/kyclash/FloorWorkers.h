// SPDX-License-Identifier: Apache-2.0
// Floors checked side by side, each in a worker process.
#pragma once

#include "KYCollisionBase/logic/CCollisionCheck.h"

#include <cstddef>
#include <vector>

#include "ifchost/IfcDataSource.h"
#include "kyclash/Progress.h"

namespace kyclash {

/// How a run in worker processes ended.
struct WorkersOutcome {
    bool stopped = false;                  ///< by the user
    std::vector<ifchost::BodyNote> notes;  ///< what the data source noted, as one process would
};

/// Checks the floors, at most `jobs` at a time, and records the clashes on the model's components
/// in the order in which one process would have found them.
///
/// Floors are independent in that a pair of two floors is found by the check of either, the same
/// way: whichever floor comes first in `floors` has recorded it, as in one process.
/// @throws std::runtime_error when a worker fails.
WorkersOutcome CheckInWorkers(KYCOLLISION::LOGIC::CCollisionCheck& check,
                              const ifchost::IfcDataSource& source,
                              const std::vector<SCollisionFloor>& floors, std::size_t jobs,
                              Progress& progress);

}  // namespace kyclash
