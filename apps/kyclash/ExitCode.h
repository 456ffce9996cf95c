// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kyclash {

/// What the command returns to the shell.
enum ExitCode : int {
    kExitDone = 0,        ///< the work was done, whether clashes were found or not
    kExitUnreadable = 1,  ///< an input could not be read
    kExitWrongUse = 2,    ///< unknown option, missing argument
    kExitStopped = 130,   ///< stopped by the user; what was found so far is printed
};

}  // namespace kyclash
