// SPDX-License-Identifier: Apache-2.0
// What the reference does with texts.
#pragma once

#include <string>
#include <vector>

namespace kycb::scenes::reference {

/// The parts between occurrences of `delimiter`; empty ones are kept, except one at the end.
std::vector<std::wstring> Split(const std::wstring& text, const std::wstring& delimiter);

/// The number at the start of a text, 0 without one.
double PlainDouble(const std::wstring& text);

/// The number at the start of a text.
/// @throws std::invalid_argument("invalid stod argument"), std::out_of_range("stod argument out of
/// range").
double StrictDouble(const std::wstring& text);

/// The whole number at the start of a text.
/// @throws std::invalid_argument("invalid stoi argument"), std::out_of_range("stoi argument out of
/// range").
int StrictInt(const std::wstring& text);

/// A text with the letters A to Z made small.
std::wstring LowerCase(std::wstring text);

/// Half away from zero.
int Rounded(double value);

/// A text in code page 936. Scenes use ASCII, the ideographs whose bytes are listed here, and
/// characters that the code page lacks.
/// @throws std::runtime_error for any other character.
std::string GbkBytes(const std::wstring& text);

/// A text converted to code page 936 and back: what that lacks has become "?".
std::wstring ThereAndBack(const std::wstring& text);

}  // namespace kycb::scenes::reference
