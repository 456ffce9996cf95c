// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>

/// A folder for one test, gone with all it holds at the end.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("desktest-" + std::to_string(random()) + "-" + std::to_string(random()));
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

    std::filesystem::path Write(const std::string& name, std::string_view bytes) const {
        const auto file = path_ / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    std::string Read(const std::filesystem::path& name) const {
        std::ifstream in(path_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

  private:
    std::filesystem::path path_;
};
