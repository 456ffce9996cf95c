// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace desk {

/// Points the library at the category tree and the priorities: those of the environment variable
/// KYCOLLISION_SYSTEM_ROOT, else those installed with the program, else those of its source.
void UseSystemRoot();

}  // namespace desk
