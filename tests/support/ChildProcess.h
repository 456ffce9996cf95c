// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kycbtest {

/// Runs `body` in a process of its own and gives what it returns, 0 to 255; -1 when it crashed.
template <class Body>
int InChild(const Body& body) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// The same on a disk that is full once a file has `bytes` bytes.
template <class Body>
int InChildOnFullDisk(rlim_t bytes, const Body& body) {
    return InChild([&] {
        const rlimit limit{bytes, bytes};
        std::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        return body();
    });
}

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

/// One of the two contents that a file is saved with by turns.
enum class Saved : std::size_t { kSmall, kLarge };

/// Which of the two a file holds; nothing when it is neither.
inline std::optional<Saved> WhichOf(const std::string& now, const std::string& small,
                                    const std::string& large) {
    if (now == small) return Saved::kSmall;
    if (now == large) return Saved::kLarge;
    return std::nullopt;
}

/// Saves both contents by turns in a process that is killed at a random moment, two hundred times,
/// and expects that each content is what a kill leaves often enough. The small one stays at last.
/// @param save   saves a content, in this process and in children; whether it succeeded.
/// @param found  tells which of the contents is there now; nothing when it is neither.
template <class Save, class Found>
void ExpectWholeWheneverKilled(const Save& save, const Found& found) {
    using std::chrono::steady_clock;
    constexpr int kKills = 200;
    constexpr int kOften = 10;
    const auto start = steady_clock::now();
    ASSERT_TRUE(save(Saved::kLarge));
    const auto saveTime =
        std::chrono::duration_cast<std::chrono::microseconds>(steady_clock::now() - start);
    ASSERT_TRUE(save(Saved::kSmall));
    // Some ten saves, so that most kills come after the first, however slow the machine is.
    const auto longestDelay = static_cast<unsigned>(std::max<long>(8000, 10 * saveTime.count()));

    std::mt19937 random(42);
    int count[2] = {0, 0};
    for (int round = 0; round < kKills; ++round) {
        SCOPED_TRACE(round);
        Saved next = round % 2 == 0 ? Saved::kSmall : Saved::kLarge;
        const auto saveByTurns = [&] {
            next = next == Saved::kSmall ? Saved::kLarge : Saved::kSmall;
            return save(next);
        };
        EXPECT_EQ(RunUntilKilled(saveByTurns, static_cast<unsigned>(random()) % longestDelay),
                  ChildEnd::kKilled)
            << "a save failed after an earlier kill";
        const std::optional<Saved> now = found();
        ASSERT_TRUE(now) << "neither of the contents as a whole";
        ++count[static_cast<std::size_t>(*now)];
    }
    EXPECT_GT(count[0], kOften);
    EXPECT_GT(count[1], kOften);
    EXPECT_TRUE(save(Saved::kSmall));
}

}  // namespace kycbtest
