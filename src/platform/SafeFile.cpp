// SPDX-License-Identifier: Apache-2.0
#include "platform/SafeFile.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Path.h"
#include "platform/Text.h"

namespace kycb::platform {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 16;
constexpr mode_t kDefaultMode = 0666;
constexpr mode_t kAccessBits = 0777;

/// 0, or the error number.
int WriteAll(int file, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(file, data, size);
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return errno;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return 0;
}

bool IsSameFile(int file, const std::filesystem::path& path) {
    struct stat opened = {};
    struct stat named = {};
    return ::fstat(file, &opened) == 0 && ::lstat(path.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

void FlushFolder(const std::filesystem::path& folder) {
    const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) return;
    // Some file systems cannot flush a folder; the new file is whole either way.
    static_cast<void>(::fsync(handle));
    ::close(handle);
}

}  // namespace

SafeFile::SafeFile(const std::wstring& path) : path_(path) {
    if (IsUsablePath(path_)) {
        Open();
    } else {
        Fail("open", EINVAL);
    }
}

SafeFile::~SafeFile() {
    Discard();
}

void SafeFile::Open() {
    std::error_code error;
    target_ = ToNativePath(path_);
    if (std::filesystem::is_symlink(target_, error)) {
        target_ = std::filesystem::weakly_canonical(target_, error);
    }
    if (std::filesystem::is_directory(target_, error)) return Fail("open", EISDIR);
    if (std::filesystem::exists(target_, error) &&
        !std::filesystem::is_regular_file(target_, error)) {
        return Fail("open", EINVAL);
    }
    beside_ = target_;
    beside_ += ".saving";
    if (OpenBeside()) KeepAccessRights();
}

bool SafeFile::OpenBeside() {
    // Whoever held the lock before may have renamed or removed the file that was just opened; then
    // the lock is on a file that has lost its name, and the next round opens the current one.
    do {
        if (file_ >= 0) ::close(file_);
        file_ = ::open(beside_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kDefaultMode);
        if (file_ < 0 || ::flock(file_, LOCK_EX | LOCK_NB) != 0) {
            const int errorNumber = errno;
            if (file_ >= 0) ::close(file_);
            file_ = -1;
            Fail(errorNumber == EWOULDBLOCK ? "save while another save runs" : "create",
                 errorNumber);
            return false;
        }
    } while (!IsSameFile(file_, beside_));
    if (::ftruncate(file_, 0) != 0) Fail("empty", errno);
    return status_.IsOk();
}

void SafeFile::KeepAccessRights() {
    struct stat old = {};
    if (::stat(target_.c_str(), &old) != 0) return;
    if (::fchmod(file_, old.st_mode & kAccessBits) != 0) Fail("set the access rights of", errno);
}

void SafeFile::Write(const void* data, std::size_t size) {
    if (!status_.IsOk()) return;
    buffer_.append(static_cast<const char*>(data), size);
    if (buffer_.size() >= kBufferSize) Flush();
}

void SafeFile::Flush() {
    if (!status_.IsOk()) return;
    if (const int errorNumber = WriteAll(file_, buffer_.data(), buffer_.size())) {
        Fail("write", errorNumber);
    }
    buffer_.clear();
}

Status SafeFile::Commit() {
    Flush();
    if (status_.IsOk() && ::fsync(file_) != 0) Fail("flush", errno);
    if (status_.IsOk()) Replace();
    return status_;
}

void SafeFile::Replace() {
    if (std::rename(beside_.c_str(), target_.c_str()) != 0) return Fail("replace", errno);
    ::close(file_);
    file_ = -1;
    FlushFolder(target_.has_parent_path() ? target_.parent_path() : std::filesystem::path("."));
}

void SafeFile::Discard() {
    if (file_ < 0) return;
    ::unlink(beside_.c_str());
    ::close(file_);
    file_ = -1;
}

void SafeFile::Fail(const char* step, int errorNumber) {
    Discard();
    status_.text = path_ + text::FromUtf8(std::string(": cannot ") + step + " this file: " +
                                          std::generic_category().message(errorNumber));
}

}  // namespace kycb::platform
