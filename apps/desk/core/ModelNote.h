// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <variant>

#include "ifchost/IfcWorkset.h"

namespace desk {

/// Products that take no part in the check, all for the same reason.
struct UncheckedProducts {
    ifchost::ProductFate fate = ifchost::ProductFate::NotABody;
    std::size_t count = 0;
};

/// One thing that a user should know about the models that were read.
struct ModelNote {
    std::string file;  ///< UTF-8, name of the model's file; empty: about all models
    /// What was left out; a class that no rule of the mapping matches; or what is odd, in the
    /// reader's words (English, UTF-8).
    std::variant<UncheckedProducts, ifchost::UnmappedClass, std::string> what;
};

}  // namespace desk
