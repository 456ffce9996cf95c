// SPDX-License-Identifier: Apache-2.0
// The 22-character IFC GlobalId and the lower-case hexadecimal text that the model is keyed by.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ifchost {

/// Digits of a GUID inside the collision model.
inline constexpr std::size_t kGuidHexDigits = 32;
/// Characters of an IFC GlobalId.
inline constexpr std::size_t kGlobalIdCharacters = 22;

/// The 128-bit value of an IFC GlobalId as 32 lower-case hexadecimal digits.
///
/// A GlobalId tells upper from lower case, whereas the collision model looks components up by
/// their lower-case GUID; so the value is used there, not the text. Nothing is returned when
/// `globalId` is not 22 characters of the IFC alphabet (0-9 A-Z a-z _ $) or its first character
/// stands for more than the two bits that are left for it.
std::optional<std::wstring> HexFromGlobalId(std::string_view globalId);

/// The way back. Digits may be of either case; nothing is returned for anything but 32 of them.
std::optional<std::string> GlobalIdFromHex(std::wstring_view hex);

/// A GUID for something whose own identifier cannot serve (not a GlobalId, or given twice in a
/// file). Equal texts give equal GUIDs in every run; the value is a name-based UUID (RFC 4122,
/// version 5), so it does not meet random ones.
std::wstring HexFromText(std::string_view text);

}  // namespace ifchost
