// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <csignal>

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kycbtest {

/// How a child process ended.
enum class ChildEnd { kKilled, kExited };

/// Runs `body` again and again in a child process until it is killed after `microseconds`, or until
/// `body` returns false, which ends the child.
template <class Body>
ChildEnd RunUntilKilled(const Body& body, unsigned microseconds) {
    const pid_t child = ::fork();
    if (child == 0) {
        while (body()) {
        }
        ::_exit(1);
    }
    ::usleep(microseconds);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status) ? ChildEnd::kKilled : ChildEnd::kExited;
}

}  // namespace kycbtest
