// SPDX-License-Identifier: Apache-2.0
#include "platform/ProcessInfo.h"

#include <cstdio>

#if defined(_WIN32)
#include <io.h>
#else
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace kyclash {

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
