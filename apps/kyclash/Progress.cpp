// SPDX-License-Identifier: Apache-2.0
#include "kyclash/Progress.h"

#include <cstdio>
#include <string>

#include "platform/ProcessInfo.h"

namespace kyclash {
namespace {

// A line longer than the terminal is wide could not be rewritten in place.
constexpr std::size_t kMaxWidth = 79;

// Cuts UTF-8 text after `width` characters, never within one.
std::string CutToWidth(std::string_view text, std::size_t width) {
    std::size_t characters = 0;
    std::size_t end = 0;
    while (end < text.size()) {
        const bool continues = (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U;
        if (!continues && ++characters > width) break;
        ++end;
    }
    return std::string(text.substr(0, end));
}

}  // namespace

ProgressMode DetectProgressMode() {
    return StandardErrorIsTerminal() ? ProgressMode::Terminal : ProgressMode::Off;
}

void Progress::Show(std::string_view phase, std::string_view text) {
    Show(phase, text, 0, 0);
}

void Progress::Show(std::string_view phase, std::string_view text, std::size_t done,
                    std::size_t total) {
    if (mode_ == ProgressMode::Off) return;
    std::string line = "[" + std::string(phase) + "] ";
    if (total > 0) line += std::to_string(done) + "/" + std::to_string(total) + " ";
    line = CutToWidth(line.append(text), kMaxWidth);
    const std::lock_guard lock(mutex_);
    std::fprintf(stderr, "\r\033[K%s", line.c_str());
    std::fflush(stderr);
    shownWidth_ = line.size();
}

void Progress::Clear() {
    const std::lock_guard lock(mutex_);
    if (shownWidth_ == 0) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    shownWidth_ = 0;
}

}  // namespace kyclash
