// SPDX-License-Identifier: Apache-2.0
// Text conversions with fixed behaviour, whatever the process locale is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kycb::text {

/// Splits at each character of `delimiters`; parts between two delimiters are kept even when empty,
/// an empty part after the last delimiter is dropped, nothing is trimmed.
std::vector<std::wstring> Split(std::wstring_view text, wchar_t delimiter);
/// The same, at each occurrence of a delimiter text (not empty).
std::vector<std::wstring> Split(std::wstring_view text, std::wstring_view delimiter);

/// Invalid input becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view bytes);

/// The leading decimal number after blanks, 0 without one, saturated at the type's limits.
int ToInt(std::wstring_view text);
/// The leading number after blanks, 0 without one.
double ToDouble(std::wstring_view text);

/// Like ToDouble, but throws std::invalid_argument("invalid stod argument") without a number and
/// std::out_of_range("stod argument out of range").
double ParseDouble(std::wstring_view text);
/// The same for int, with the texts "invalid stoi argument" and "stoi argument out of range".
int ParseInt(std::wstring_view text);
/// The same for a 32-bit integer, with the texts "invalid stol argument" and "stol argument out of
/// range".
std::int32_t ParseLong(std::wstring_view text);

/// "%d" and "%lld".
std::wstring FromInt(std::int64_t value);
/// "%.<decimals>f" with a point, whatever the locale.
std::wstring FromFixed(double value, int decimals);

}  // namespace kycb::text
