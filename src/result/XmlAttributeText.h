// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kycb {

/// Appends `text` to `out` as the value of an XML attribute between double quotes, in UTF-8.
///
/// Markup characters become entities and tab and line ends character references, which a reader
/// gives back as they were. What XML forbids (other control characters, U+FFFE, U+FFFF, unpaired
/// surrogates, values that are no characters) becomes U+FFFD, so the file is always readable.
void AppendAttributeText(std::string& out, std::wstring_view text);

}  // namespace kycb
