// SPDX-License-Identifier: Apache-2.0
// Counts what a benchmark program holds on the heap, by replacing operator new and delete.
#pragma once

#include <cstddef>

namespace kycb::bench {

/// Bytes asked for by operator new and not given back yet, by the program and the libraries that
/// it loads.
std::size_t LiveHeapBytes();

}  // namespace kycb::bench
