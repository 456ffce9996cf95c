// SPDX-License-Identifier: Apache-2.0
// Compares XML files with the published schemas, by way of xmllint.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "support/TemporaryFolder.h"

namespace kycbtest {

inline constexpr const char* kNoXmlLint = "xmllint is not installed (Debian package libxml2-utils)";

inline bool HasXmlLint() {
    return std::system("xmllint --version >/dev/null 2>&1") == 0;
}

/// What xmllint has against `file`; empty when the file fits the schema. Neither path may hold an
/// apostrophe.
inline std::string SchemaErrors(const std::filesystem::path& schema,
                                const std::filesystem::path& file) {
    const TemporaryFolder folder;
    const auto messages = folder.Path() / "messages";
    const std::string command = "xmllint --noout --huge --schema '" + schema.string() + "' '" +
                                file.string() + "' >'" + messages.string() + "' 2>&1";
    if (std::system(command.c_str()) == 0) return {};
    const std::string text = ReadAll(messages);
    return text.empty() ? "xmllint failed" : text;
}

}  // namespace kycbtest
