// SPDX-License-Identifier: Apache-2.0
#include "platform/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <system_error>

namespace kycb::text {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kLastCodePoint = 0x10FFFF;
constexpr bool kWideIsUtf16 = sizeof(wchar_t) == 2;

bool IsSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDFFF;
}
bool IsHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool IsLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

char32_t ToAsciiLower(wchar_t c) {
    const auto code = static_cast<char32_t>(c);
    return code >= U'A' && code <= U'Z' ? code + (U'a' - U'A') : code;
}

/// The code point at `i`, which moves past it.
template <class View>
char32_t NextFromUtf16(View text, std::size_t& i) {
    const auto c = static_cast<char32_t>(static_cast<char16_t>(text[i++]));
    if (!IsSurrogate(c)) return c;
    if (!IsHighSurrogate(c) || i == text.size()) return kReplacement;
    const auto low = static_cast<char32_t>(static_cast<char16_t>(text[i]));
    if (!IsLowSurrogate(low)) return kReplacement;
    ++i;
    return 0x10000 + ((c - 0xD800) << 10) + (low - 0xDC00);
}

char32_t NextFromWide(std::wstring_view text, std::size_t& i) {
    if constexpr (kWideIsUtf16) return NextFromUtf16(text, i);
    const auto c = static_cast<char32_t>(text[i++]);
    return c > kLastCodePoint || IsSurrogate(c) ? kReplacement : c;
}

template <class Text>
void AppendUtf16(Text& text, char32_t c) {
    using Unit = typename Text::value_type;
    if (c < 0x10000) {
        text.push_back(static_cast<Unit>(c));
        return;
    }
    text.push_back(static_cast<Unit>(0xD800 + ((c - 0x10000) >> 10)));
    text.push_back(static_cast<Unit>(0xDC00 + ((c - 0x10000) & 0x3FF)));
}

void AppendWide(std::wstring& text, char32_t c) {
    if constexpr (kWideIsUtf16) {
        AppendUtf16(text, c);
    } else {
        text.push_back(static_cast<wchar_t>(c));
    }
}

void AppendUtf8(std::string& bytes, char32_t c) {
    const auto put = [&bytes](char32_t unit) { bytes.push_back(static_cast<char>(unit)); };
    const auto trail = [&put](char32_t bits) { put(0x80 | (bits & 0x3F)); };
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        trail(c);
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        trail(c >> 6);
        trail(c);
    } else {
        put(0xF0 | (c >> 18));
        trail(c >> 12);
        trail(c >> 6);
        trail(c);
    }
}

/// What the first byte of a UTF-8 sequence says about the rest (Unicode Standard, table 3-7).
struct Utf8Lead {
    char32_t bits;
    int trails;
    unsigned char lowestSecond;
    unsigned char highestSecond;
};

Utf8Lead LeadOf(unsigned char byte) {
    if (byte < 0x80) return {byte, 0, 0, 0};
    if (byte < 0xC2 || byte > 0xF4) return {kInvalidUtf8, 0, 0, 0};
    const char32_t bits = byte;
    if (byte < 0xE0) return {bits & 0x1F, 1, 0x80, 0xBF};
    if (byte < 0xF0) {
        const unsigned char lowest = byte == 0xE0 ? 0xA0 : 0x80;
        const unsigned char highest = byte == 0xED ? 0x9F : 0xBF;
        return {bits & 0x0F, 2, lowest, highest};
    }
    const unsigned char lowest = byte == 0xF0 ? 0x90 : 0x80;
    const unsigned char highest = byte == 0xF4 ? 0x8F : 0xBF;
    return {bits & 0x07, 3, lowest, highest};
}

std::wstring_view SkipBlanks(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L" \t\n\v\f\r");
    return first == std::wstring_view::npos ? std::wstring_view() : text.substr(first);
}

/// What the standard conversions to a number find at the start of a text.
enum class Found { kNothing, kNumber, kTooLarge, kTooSmall };

struct Integer {
    Found found = Found::kNothing;
    std::int32_t value = 0;  ///< saturated
};

Integer ReadInteger(std::wstring_view text) {
    constexpr std::int64_t kLimit = std::int64_t{1} << 32;
    text = SkipBlanks(text);
    const bool negative = !text.empty() && text.front() == L'-';
    if (negative || (!text.empty() && text.front() == L'+')) text.remove_prefix(1);
    if (text.empty() || !IsDigit(text.front())) return {};

    std::int64_t magnitude = 0;
    for (const wchar_t c : text) {
        if (!IsDigit(c)) break;
        magnitude = std::min(kLimit, magnitude * 10 + (c - L'0'));
    }
    const std::int64_t value = negative ? -magnitude : magnitude;
    using Limits = std::numeric_limits<std::int32_t>;
    if (value > Limits::max()) return {Found::kTooLarge, Limits::max()};
    if (value < Limits::min()) return {Found::kTooSmall, Limits::min()};
    return {Found::kNumber, static_cast<std::int32_t>(value)};
}

std::int32_t CheckedInteger(std::wstring_view text, const char* noNumber, const char* outOfRange) {
    const Integer number = ReadInteger(text);
    if (number.found == Found::kNothing) throw std::invalid_argument(noNumber);
    if (number.found != Found::kNumber) throw std::out_of_range(outOfRange);
    return number.value;
}

struct Real {
    Found found = Found::kNothing;
    double value = 0.0;
};

bool IsNumberCharacter(wchar_t c) {
    const char32_t lower = ToAsciiLower(c);
    return IsDigit(c) || (lower >= U'a' && lower <= U'z') || c == L'.' || c == L'+' || c == L'-' ||
           c == L'(' || c == L')' || c == L'_';
}

std::string LeadingNumberCharacters(std::wstring_view text) {
    const auto end = std::find_if_not(text.begin(), text.end(), IsNumberCharacter);
    std::string characters;
    characters.reserve(static_cast<std::size_t>(end - text.begin()));
    std::transform(text.begin(), end, std::back_inserter(characters),
                   [](wchar_t c) { return static_cast<char>(c); });
    return characters;
}

bool HasHexPrefix(std::string_view digits) {
    const auto isHex = [](char c) {
        return std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos;
    };
    if (digits.size() < 3 || digits[0] != '0' || (digits[1] != 'x' && digits[1] != 'X'))
        return false;
    return isHex(digits[2]) || (digits[2] == '.' && digits.size() > 3 && isHex(digits[3]));
}

/// Tells a number beyond the largest double from one below the smallest: std::from_chars reports
/// both alike. Numbers that far out differ from 1 by hundreds of powers of ten, so the sign of the
/// exponent of the first significant digit decides.
bool IsBeyondOne(std::string_view number, std::chars_format format) {
    const bool hex = format == std::chars_format::hex;
    const std::size_t mark = number.find_first_of(hex ? "pP" : "eE");
    const std::string_view mantissa = number.substr(0, mark);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = mantissa.find_first_not_of("0.");
    auto exponent = static_cast<double>(point) - static_cast<double>(first);
    if (hex) exponent *= 4;
    if (mark == std::string_view::npos) return exponent > 0;

    std::string_view digits = number.substr(mark + 1);
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative || (!digits.empty() && digits.front() == '+')) digits.remove_prefix(1);
    double written = 0;
    for (const char c : digits)
        written = std::min(1e18, written * 10 + (c - '0'));
    return exponent + (negative ? -written : written) > 0;
}

Real ReadReal(std::wstring_view text) {
    const std::string characters = LeadingNumberCharacters(SkipBlanks(text));
    std::string_view digits = characters;
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative || (!digits.empty() && digits.front() == '+')) digits.remove_prefix(1);
    if (digits.empty() || digits.front() == '-') return {};
    const double sign = negative ? -1.0 : 1.0;

    auto format = std::chars_format::general;
    if (HasHexPrefix(digits)) {
        format = std::chars_format::hex;
        digits.remove_prefix(2);
    }
    double magnitude = 0.0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, format);
    if (error == std::errc::invalid_argument) return {};
    if (error == std::errc()) return {Found::kNumber, sign * magnitude};
    digits = digits.substr(0, static_cast<std::size_t>(end - digits.data()));
    if (!IsBeyondOne(digits, format)) return {Found::kTooSmall, sign * 0.0};
    return {Found::kTooLarge, sign * std::numeric_limits<double>::infinity()};
}

}  // namespace

std::vector<std::wstring> Split(std::wstring_view text, wchar_t delimiter) {
    return Split(text, std::wstring_view(&delimiter, 1));
}

std::vector<std::wstring> Split(std::wstring_view text, std::wstring_view delimiter) {
    std::vector<std::wstring> parts;
    std::size_t begin = 0;
    for (std::size_t end; (end = text.find(delimiter, begin)) != std::wstring_view::npos;
         begin = end + delimiter.size()) {
        parts.emplace_back(text.substr(begin, end - begin));
    }
    if (begin < text.size()) parts.emplace_back(text.substr(begin));
    return parts;
}

bool EqualIgnoringAsciiCase(std::wstring_view a, std::wstring_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return ToAsciiLower(x) == ToAsciiLower(y); });
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size();)
        AppendUtf8(bytes, NextFromWide(text, i));
    return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size();) {
        const char32_t c = NextFromUtf8(bytes, i);
        AppendWide(text, c == kInvalidUtf8 ? kReplacement : c);
    }
    return text;
}

char32_t NextFromUtf8(std::string_view bytes, std::size_t& i) {
    const Utf8Lead lead = LeadOf(static_cast<unsigned char>(bytes[i++]));
    char32_t c = lead.bits;
    // Only the second byte's range depends on the lead: it shuts out overlong forms, surrogates and
    // what lies beyond the last code point.
    unsigned char lowest = lead.lowestSecond;
    unsigned char highest = lead.highestSecond;
    for (int trail = 0; trail < lead.trails; ++trail) {
        const auto byte = static_cast<unsigned char>(i < bytes.size() ? bytes[i] : 0);
        if (byte < lowest || byte > highest) return kInvalidUtf8;
        c = (c << 6) | (byte & 0x3F);
        lowest = 0x80;
        highest = 0xBF;
        ++i;
    }
    return c;
}

std::u16string ToUtf16(std::wstring_view text) {
    std::u16string units;
    units.reserve(text.size());
    for (std::size_t i = 0; i < text.size();)
        AppendUtf16(units, NextFromWide(text, i));
    return units;
}

std::wstring FromUtf16(std::u16string_view text) {
    std::wstring wide;
    wide.reserve(text.size());
    for (std::size_t i = 0; i < text.size();)
        AppendWide(wide, NextFromUtf16(text, i));
    return wide;
}

int ToInt(std::wstring_view text) {
    return ReadInteger(text).value;
}

double ToDouble(std::wstring_view text) {
    const Real number = ReadReal(text);
    if (number.found == Found::kNumber && !std::isfinite(number.value)) return 0.0;
    return number.value;
}

double ParseDouble(std::wstring_view text) {
    const Real number = ReadReal(text);
    if (number.found == Found::kNothing) throw std::invalid_argument("invalid stod argument");
    if (number.found != Found::kNumber) throw std::out_of_range("stod argument out of range");
    return number.value;
}

int ParseInt(std::wstring_view text) {
    return CheckedInteger(text, "invalid stoi argument", "stoi argument out of range");
}

std::int32_t ParseLong(std::wstring_view text) {
    return CheckedInteger(text, "invalid stol argument", "stol argument out of range");
}

std::wstring FromInt(std::int64_t value) {
    char digits[std::numeric_limits<std::int64_t>::digits10 + 3];
    const char* end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return std::wstring(static_cast<const char*>(digits), end);
}

std::wstring FromFixed(double value, int decimals) {
    // All that a clash point needs; what does not fit gets the room that the longest number takes.
    std::array<char, 48> usual;
    const auto shown = std::to_chars(usual.data(), usual.data() + usual.size(), value,
                                     std::chars_format::fixed, decimals);
    if (shown.ec == std::errc()) return {usual.data(), shown.ptr};
    constexpr std::size_t kSignPointAndReserve = 8;
    std::string digits(std::numeric_limits<double>::max_exponent10 + kSignPointAndReserve +
                           static_cast<std::size_t>(std::max(decimals, 0)),
                       '\0');
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                      std::chars_format::fixed, decimals);
    return {digits.data(), result.ptr};
}

}  // namespace kycb::text
