// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace KYCOLLISION::LOGIC {

/// Result of a check run. The numbering is fixed; 0 is never returned.
enum ECheckReturn : int {
    CHECK_SUCCESS = 1,        ///< every floor of the request was checked
    CHECK_NO_DATASOURCE = 2,  ///< no data source has been set
    CHECK_NO_MODEL = 3,       ///< no collision model exists: not initialised, or it failed
    CHECK_NO_RULE = 4,        ///< no rule manager has been set
    CHECK_STOPPED = 5,        ///< the stop flag was found set during the run
};

}  // namespace KYCOLLISION::LOGIC
