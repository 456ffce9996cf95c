// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "kyclash/CheckReport.h"
#include "kyclash/CheckRun.h"
#include "kyclash/ClashHistory.h"

namespace kyclash {

/// Fills in the models, what is left out of them, and the remarks on bodies (to be called after the
/// run, which is when these are known).
void ReportModels(const CheckRun& run, CheckReport& report);

/// One entry per floor that was checked or has clashes. Clashes that this run did not find itself
/// (gone or not re-tested) are left out. Precondition: `sizes` belongs to the floors of the work
/// set, in their order.
void ReportFloors(const ifchost::IfcWorkset& workset, const std::vector<CheckRun::FloorSize>& sizes,
                  const std::vector<SCollisionFloor>& checkedFloors,
                  const std::vector<TrackedClash>& clashes, CheckReport& report);

/// The clashes of earlier runs that are gone, with how many clashes have each status.
void ReportHistory(const ifchost::IfcWorkset& workset, const std::string& previousFile,
                   const std::vector<TrackedClash>& clashes, CheckReport& report);

}  // namespace kyclash
