// SPDX-License-Identifier: Apache-2.0
// The model's view of the driver's stop flag. The driver implements it, so that nothing here has to
// know the driver.
#pragma once

namespace kycb::logic {

/// Whether the host asks for the check run to end; may be asked while another thread sets the flag.
bool IsStopRequested() noexcept;

}  // namespace kycb::logic
