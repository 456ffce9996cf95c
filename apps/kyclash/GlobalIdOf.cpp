// SPDX-License-Identifier: Apache-2.0
#include "kyclash/GlobalIdOf.h"

#include "ifchost/IfcGuid.h"

namespace kyclash {
namespace {

// A name-based UUID (RFC 4122, version 5), which is what the host makes up. GlobalIds of other
// programs need not be UUIDs at all.
bool IsNameBased(std::wstring_view guid) {
    return guid.size() == ifchost::kGuidHexDigits && guid[12] == L'5' &&
           std::wstring_view(L"89ab").find(guid[16]) != std::wstring_view::npos;
}

}  // namespace

std::optional<std::string> GlobalIdOf(std::wstring_view guid) {
    if (IsNameBased(guid)) return std::nullopt;
    return ifchost::GlobalIdFromHex(guid);
}

}  // namespace kyclash
