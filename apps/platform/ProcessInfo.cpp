// SPDX-License-Identifier: Apache-2.0
#include "platform/ProcessInfo.h"

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#else
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace kyclash {

void ReplaceMissingStreams() {
#if !defined(_WIN32)
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        // The lowest free number is the one given, so each stream gets its own.
        if (fcntl(stream, F_GETFD) == -1) static_cast<void>(open("/dev/null", O_RDONLY));
    }
#endif
}

bool StandardErrorIsTerminal() {
#if defined(_WIN32)
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(fileno(stderr)) != 0;
#endif
}

std::size_t PeakMemoryMegabytes() {
#if defined(_WIN32)
    return 0;
#else
    rusage usage{};
    if (getrusage(RUSAGE_SELF, &usage) != 0) return 0;
    return static_cast<std::size_t>(usage.ru_maxrss) / 1024;  // Linux counts in KB
#endif
}

}  // namespace kyclash
