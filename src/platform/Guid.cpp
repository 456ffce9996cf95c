// SPDX-License-Identifier: Apache-2.0
#include "platform/Guid.h"

#include <algorithm>

#include <boost/uuid/entropy_error.hpp>
#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid.hpp>

namespace kycb::platform {
namespace {

template <class Unsigned>
Unsigned BigEndian(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof(Unsigned); ++i)
        value = (value << 8) | bytes[i];
    return static_cast<Unsigned>(value);
}

}  // namespace

std::optional<Guid> CreateRandomGuid() {
    try {
        const boost::uuids::uuid uuid = boost::uuids::random_generator()();
        Guid guid;
        guid.data1 = BigEndian<std::uint32_t>(uuid.data);
        guid.data2 = BigEndian<std::uint16_t>(uuid.data + 4);
        guid.data3 = BigEndian<std::uint16_t>(uuid.data + 6);
        std::copy_n(uuid.data + 8, guid.data4.size(), guid.data4.begin());
        return guid;
    } catch (const boost::uuids::entropy_error&) {
        return std::nullopt;
    }
}

}  // namespace kycb::platform
