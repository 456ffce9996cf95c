// SPDX-License-Identifier: Apache-2.0
#include "platform/DiskFlush.h"

#if !defined(_WIN32)
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>
#endif

namespace kyclash {

std::error_code FlushToDisk(const std::filesystem::path& path) {
#if defined(_WIN32)
    // A handle opened for reading cannot be flushed there; closing has handed the data over.
    static_cast<void>(path);
    return {};
#else
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return {errno, std::generic_category()};
    const int errorNumber = ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    return {errorNumber, std::generic_category()};
#endif
}

}  // namespace kyclash
