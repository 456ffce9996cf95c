// SPDX-License-Identifier: Apache-2.0
// What the hosts ask of the operating system, in one place.
#pragma once

#include <cstddef>

namespace kyclash {

/// Whether the standard error stream is a terminal, so that progress can be shown on it.
bool StandardErrorIsTerminal();

/// The most memory that this process has had resident so far (MB); 0 where it cannot be told.
std::size_t PeakMemoryMegabytes();

}  // namespace kyclash
