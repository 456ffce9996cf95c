// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

namespace kyclash {

/// Turns Ctrl-C (SIGINT) and SIGTERM into a request to stop for as long as the object lives: sets
/// the library's stop flag and the flag that Requested returns. At most one object at a time.
class Interrupt {
  public:
    Interrupt();
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// Set once the user has asked to stop. Lives as long as the program.
    static const std::atomic<bool>& Requested();
};

}  // namespace kyclash
