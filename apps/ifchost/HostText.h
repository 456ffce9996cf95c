// SPDX-License-Identifier: Apache-2.0
// Text conversions of the IFC host; none of them depends on the process locale.
#pragma once

#include <string>
#include <string_view>

namespace ifchost {

/// UTF-8 from wide text. Lone surrogates and values beyond Unicode become U+FFFD.
std::string ToUtf8(std::wstring_view text);

/// Wide text from UTF-8. Ill-formed parts become U+FFFD.
std::wstring FromUtf8(std::string_view bytes);

/// Unicode case folding, so that texts can be compared whatever their case ("Außen" = "AUSSEN").
std::string FoldCase(std::string_view utf8);

/// A length as the attribute readers and users take it: millimetres, at most three decimals, a
/// decimal point, no trailing zeros, never "-0"; empty for infinities and NaN.
std::wstring FormatMillimetres(double value);

}  // namespace ifchost
