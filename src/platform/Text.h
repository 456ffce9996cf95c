// SPDX-License-Identifier: Apache-2.0
// Text conversions with fixed behaviour, whatever the process locale is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kycb::text {

/// Splits at each delimiter; parts between two delimiters are kept even when empty, an empty part
/// after the last delimiter is dropped (so an empty text has no parts), nothing is trimmed.
std::vector<std::wstring> Split(std::wstring_view text, wchar_t delimiter);
/// The same, at each occurrence of a delimiter text, which must not be empty.
std::vector<std::wstring> Split(std::wstring_view text, std::wstring_view delimiter);

/// Equal texts when the letters A to Z count as a to z; other characters compare exactly.
bool EqualIgnoringAsciiCase(std::wstring_view a, std::wstring_view b);

/// Conversions between the wide text of the contract (UTF-32 or UTF-16, as wide as wchar_t is) and
/// UTF-8 or UTF-16. Every invalid unit or sequence becomes one U+FFFD; no text is refused.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

/// The code point that begins at `i`, which moves past it. For an invalid sequence kInvalidUtf8,
/// and `i` moves past the bytes that could still have begun a valid one (at least one byte).
inline constexpr char32_t kInvalidUtf8 = 0xFFFFFFFF;
char32_t NextFromUtf8(std::string_view bytes, std::size_t& i);

std::u16string ToUtf16(std::wstring_view text);
std::wstring FromUtf16(std::u16string_view text);

/// The number that the text begins with, after blanks (space, tab, line feed, vertical tab, form
/// feed, carriage return) and an optional sign: decimal digits, saturated at the limits of int. 0
/// when there is none.
int ToInt(std::wstring_view text);

/// The same for double: decimal with a point and an optional exponent, or hexadecimal after "0x".
/// Too large a number gives an infinity, too small a one 0; the words "inf" and "nan" are no
/// numbers here.
double ToDouble(std::wstring_view text);

/// The standard conversion as it works in the "C" locale: like ToDouble (the words "inf" and "nan"
/// included), but throws std::invalid_argument("invalid stod argument") when the text begins with
/// no number, and std::out_of_range("stod argument out of range") for one that a double cannot
/// hold. Text after the number is ignored.
double ParseDouble(std::wstring_view text);
/// The same for int, with the texts "invalid stoi argument" and "stoi argument out of range".
int ParseInt(std::wstring_view text);
/// The same for a 32-bit integer, with the texts "invalid stol argument" and "stol argument out of
/// range".
std::int32_t ParseLong(std::wstring_view text);

/// "%d" and "%lld".
std::wstring FromInt(std::int64_t value);
/// "%.<decimals>f" with a point, correctly rounded from the exact binary value.
std::wstring FromFixed(double value, int decimals);

}  // namespace kycb::text
