// SPDX-License-Identifier: Apache-2.0
// Compares XML files with the published schemas, by way of xmllint.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace kycbtest {

inline constexpr const char* kNoXmlLint = "xmllint is not installed (Debian package libxml2-utils)";

inline bool HasXmlLint() {
    return std::system("xmllint --version >/dev/null 2>&1") == 0;
}

/// What xmllint has against `file`; empty when the file fits the schema. Neither path may hold an
/// apostrophe.
inline std::string SchemaErrors(const std::filesystem::path& schema,
                                const std::filesystem::path& file) {
    std::random_device random;
    const auto messages =
        std::filesystem::temp_directory_path() / ("kycbtest-xmllint-" + std::to_string(random()));
    const std::string command = "xmllint --noout --huge --schema '" + schema.string() + "' '" +
                                file.string() + "' >'" + messages.string() + "' 2>&1";
    const bool fits = std::system(command.c_str()) == 0;
    std::ifstream stream(messages, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream),
                           std::istreambuf_iterator<char>()};
    stream.close();
    std::filesystem::remove(messages);
    if (fits) return {};
    return text.empty() ? "xmllint failed" : text;
}

}  // namespace kycbtest
