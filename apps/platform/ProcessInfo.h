// SPDX-License-Identifier: Apache-2.0
// What the hosts ask of the operating system, in one place.
#pragma once

#include <cstddef>

namespace kyclash {

/// Puts the null device in the place of standard streams that the process was started without.
/// Otherwise the next file opened would take such a place, and get what is meant for the terminal.
/// Writing to a replaced output still fails.
void ReplaceMissingStreams();

/// Whether the standard error stream is a terminal, so that progress can be shown on it.
bool StandardErrorIsTerminal();

/// The most memory that this process has had resident so far (MB); 0 where it cannot be told.
std::size_t PeakMemoryMegabytes();

}  // namespace kyclash
