// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <filesystem>

namespace desk {

/// Paths are the same on every system only in UTF-16, which both sides know.
inline QString ToText(const std::filesystem::path& path) {
    return QString::fromStdU16String(path.u16string());
}

inline std::filesystem::path ToPath(const QString& text) {
    return std::filesystem::path(text.toStdU16String());
}

}  // namespace desk
