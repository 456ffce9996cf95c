// SPDX-License-Identifier: Apache-2.0
#include "platform/Guid.h"

#include <algorithm>

#include <pthread.h>
#include <unistd.h>

namespace kycb::platform {
namespace {

constexpr std::size_t kGuidSize = 16;
// What the system gives at once; asking for every GUID would cost more than making it.
constexpr std::size_t kPoolSize = 256;

/// Random bytes of one thread, each used once.
struct Pool {
    std::array<std::uint8_t, kPoolSize> bytes;
    std::size_t used = kPoolSize;

    /// The bytes of a GUID, or null when the system has none.
    const std::uint8_t* Next() {
        if (used == kPoolSize) {
            if (::getentropy(bytes.data(), bytes.size()) != 0) return nullptr;
            used = 0;
        }
        used += kGuidSize;
        return bytes.data() + used - kGuidSize;
    }
};

Pool& ThreadPool() {
    // A forked child must not hand out what its parent will.
    static const int registered =
        ::pthread_atfork(nullptr, nullptr, [] { ThreadPool().used = kPoolSize; });
    static_cast<void>(registered);
    thread_local Pool pool;
    return pool;
}

template <class Unsigned>
Unsigned BigEndian(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i)
        value = (value << 8) | bytes[i];
    return static_cast<Unsigned>(value);
}

}  // namespace

std::optional<Guid> CreateRandomGuid() {
    const std::uint8_t* bytes = ThreadPool().Next();
    if (bytes == nullptr) return std::nullopt;
    Guid guid;
    guid.data1 = BigEndian<std::uint32_t>(bytes);
    guid.data2 = BigEndian<std::uint16_t>(bytes + 4);
    guid.data3 = static_cast<std::uint16_t>((BigEndian<std::uint16_t>(bytes + 6) & 0x0FFFU) |
                                            0x4000U);  // version 4: random
    std::copy_n(bytes + 8, guid.data4.size(), guid.data4.begin());
    guid.data4[0] =
        static_cast<std::uint8_t>((guid.data4[0] & 0x3FU) | 0x80U);  // variant of the RFC
    return guid;
}

}  // namespace kycb::platform
