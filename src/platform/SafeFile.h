// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "platform/Status.h"

namespace kycb::platform {

/// Replaces a file as a whole or not at all.
///
/// What is written goes to a file beside the target (its name with ".saving" appended), reaches the
/// disk, and only then takes the target's name. A full disk, a failed write or a kill at any moment
/// leaves the old file whole; a leftover of a killed process is taken over by the next save.
///
/// Two savers of one file exclude each other, also across processes: the second one fails. A target
/// that is a symbolic link keeps being one, and a replaced file keeps its access rights. A target
/// that exists but is no regular file is refused.
///
/// The first failure stays and makes everything that follows do nothing.
class SafeFile {
  public:
    explicit SafeFile(const std::wstring& path);
    /// Without Commit the target stays as it was and the file beside it goes.
    ~SafeFile();
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    void Write(const void* data, std::size_t size);

    /// Puts the new file in place. The text of a failure names the file and the reason.
    Status Commit();

  private:
    void Open();
    bool OpenBeside();
    void KeepAccessRights();
    void Flush();
    void Replace();
    void Discard();
    void Fail(const char* step, int errorNumber);

    std::wstring path_;
    std::filesystem::path target_;
    std::filesystem::path beside_;
    int file_ = -1;
    std::string buffer_;
    Status status_;
};

}  // namespace kycb::platform
