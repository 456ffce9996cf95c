// SPDX-License-Identifier: Apache-2.0
// The clearances that building services need, by kind of services run (AttCategory's kinds: 1 air
// duct, 2 cable tray, 3 drainage pipe, 4 cold-water or pressure pipe, 5 hot-water pipe).
#pragma once

namespace kycb::model {

/// The clearance (mm) between a run and a structural member; 0 for any other kind.
int SingleClearance(int kind);

/// The spacing (mm) between two runs; the table also knows a sixth kind. 0 for any other kind.
int RunSpacing(int kindA, int kindB);

}  // namespace kycb::model
