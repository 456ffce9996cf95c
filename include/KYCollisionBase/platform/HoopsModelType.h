// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace BASECORE::HOOPS {

/// How the host's graphics layer shows a model. The library stores the value and never reads it.
enum HoopsModelType : int { HoopsModelTypeDefault = 0 };

}  // namespace BASECORE::HOOPS
