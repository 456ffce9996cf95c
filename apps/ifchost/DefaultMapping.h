// SPDX-License-Identifier: Apache-2.0
// The text of data/mapping.json, compiled in so that a host needs no file to start.
#pragma once

#include <string_view>

namespace ifchost {

extern const std::string_view kDefaultMapping;

}  // namespace ifchost
