// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace kyclash {

/// How a command writes what it has to say.
enum class ReportFormat {
    Text,  ///< for people, in a terminal
    Json,  ///< for programs
};

}  // namespace kyclash
