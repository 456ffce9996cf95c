// SPDX-License-Identifier: Apache-2.0
// Conversion between text and the bytes of a named encoding.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct UConverter;

namespace kycb::text {

/// What to do with bytes that are invalid in the encoding.
enum class InvalidBytes { kReplace, kRefuse };

/// One encoding, opened by its usual name. Best-fit fallbacks are never used: a character either
/// has its own bytes in the encoding, or it is written as "?".
///
/// Threads: one converter is for one thread at a time.
class Converter {
  public:
    /// Nothing when the encoding is unknown.
    static std::optional<Converter> Open(std::string_view encoding);

    std::string Encode(std::wstring_view text);

    /// Invalid bytes become U+FFFD, or make the result empty (kRefuse).
    std::optional<std::wstring> Decode(std::string_view bytes, InvalidBytes invalid);

  private:
    struct Close {
        void operator()(UConverter* converter) const;
    };

    explicit Converter(UConverter* converter) : converter_(converter) {}

    std::unique_ptr<UConverter, Close> converter_;
};

}  // namespace kycb::text
