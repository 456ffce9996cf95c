// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <mutex>
#include <string_view>

namespace kyclash {

/// Whether and how progress is shown.
enum class ProgressMode {
    Off,       ///< nothing is shown
    Terminal,  ///< one line on the standard error stream, rewritten in place
};

/// The mode that suits the standard error stream: Terminal only when it is a terminal.
ProgressMode DetectProgressMode();

/// Shows what a long run is doing. Threads: every operation may be called from any thread.
class Progress {
  public:
    explicit Progress(ProgressMode mode) : mode_(mode) {}
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Shows `text` as the state of `phase` ("read", "mesh", "build", "check", ...).
    void Show(std::string_view phase, std::string_view text);

    /// The same with a count; `total` 0 leaves the total out.
    void Show(std::string_view phase, std::string_view text, std::size_t done, std::size_t total);

    /// Takes the line away, so that other output starts at its beginning.
    void Clear();

  private:
    ProgressMode mode_;
    std::mutex mutex_;
    std::size_t shownWidth_ = 0;
};

}  // namespace kyclash
