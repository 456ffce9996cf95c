// SPDX-License-Identifier: Apache-2.0
#include "HostText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <system_error>

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace ifchost {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;
constexpr int kLengthDecimals = 3;

// wchar_t holds UTF-16 on some platforms and whole code points on others.
constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

void AppendUtf8(std::string& bytes, UChar32 c) {
    if (c < 0 || c > 0x10FFFF || U_IS_SURROGATE(c)) c = kReplacement;
    std::array<char, U8_MAX_LENGTH> buffer{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(buffer.data(), length, c);
    bytes.append(buffer.data(), length);
}

void AppendWide(std::wstring& text, UChar32 c) {
    if constexpr (kWideIsUtf16) {
        if (c > 0xFFFF) {
            text.push_back(static_cast<wchar_t>(U16_LEAD(c)));
            text.push_back(static_cast<wchar_t>(U16_TRAIL(c)));
            return;
        }
    }
    text.push_back(static_cast<wchar_t>(c));
}

// The code point at `i`, which moves past it.
UChar32 NextCodePoint(std::wstring_view text, std::size_t& i) {
    const auto unit = static_cast<UChar32>(text[i++]);
    if constexpr (kWideIsUtf16) {
        if (U16_IS_LEAD(unit) && i < text.size()) {
            const auto trail = static_cast<UChar32>(text[i]);
            if (U16_IS_TRAIL(trail)) {
                ++i;
                return U16_GET_SUPPLEMENTARY(unit, trail);
            }
        }
    }
    return unit;
}

bool IsAscii(std::string_view bytes) {
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) >= 0x80) return false;
    }
    return true;
}

std::string FoldAscii(std::string_view bytes) {
    std::string folded(bytes);
    for (char& c : folded) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

void StripTrailingZeros(std::string& digits) {
    if (digits.find('.') == std::string::npos) return;
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.back() == '.') digits.pop_back();
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();)
        AppendUtf8(bytes, NextCodePoint(text, i));
    return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
    const auto length = static_cast<std::int32_t>(bytes.size());
    const auto utf16 = icu::UnicodeString::fromUTF8(icu::StringPiece(bytes.data(), length));
    std::wstring text;
    text.reserve(bytes.size());
    for (std::int32_t i = 0; i < utf16.length(); i = utf16.moveIndex32(i, 1)) {
        AppendWide(text, utf16.char32At(i));
    }
    return text;
}

std::string FoldCase(std::string_view utf8) {
    if (IsAscii(utf8)) return FoldAscii(utf8);
    if (utf8.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max() / 4)) {
        return std::string(utf8);
    }
    std::string folded;
    icu::StringByteSink<std::string> sink(&folded);
    UErrorCode status = U_ZERO_ERROR;
    icu::CaseMap::utf8Fold(0, icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size())),
                           sink, nullptr, status);
    return U_SUCCESS(status) ? folded : std::string(utf8);
}

std::wstring FormatMillimetres(double value) {
    // Longest case: sign, the digits of the largest double, point and decimals.
    std::array<char, std::numeric_limits<double>::max_exponent10 + 8> buffer{};
    const auto [end, code] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                           std::chars_format::fixed, kLengthDecimals);
    if (code != std::errc() || !std::isfinite(value)) return {};
    std::string digits(buffer.data(), end);
    StripTrailingZeros(digits);
    if (digits == "-0") digits = "0";
    return {digits.begin(), digits.end()};
}

}  // namespace ifchost
