// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/Text.h"
#include "support/TemporaryFolder.h"

namespace kycbtest {

/// A temporary folder that names its files as the library takes them.
class TempFolder {
  public:
    const std::filesystem::path& Path() const { return folder_.Path(); }

    /// The path of a file in the folder; `name` is UTF-8.
    std::wstring File(const std::string& name) const {
        return kycb::text::FromUtf8((Path() / name).string());
    }

    /// Writes a file, with the folders on the way, and gives its path.
    std::wstring Write(const std::string& name, std::string_view bytes) const {
        folder_.Write(name, bytes);
        return File(name);
    }

    std::string Read(const std::string& name) const { return folder_.Read(name); }

    std::size_t CountFiles() const { return folder_.CountFiles(); }

  private:
    TemporaryFolder folder_;
};

}  // namespace kycbtest
