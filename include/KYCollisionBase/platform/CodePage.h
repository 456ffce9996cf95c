// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>
#include <string_view>

namespace KYTOOLS {

/// The code page that stands for "the thread's ANSI code page" wherever texts are ordered by it.
///
/// The default is code page 936 (GBK), in which the product's category names sort roughly by
/// pronunciation. A character outside the code page converts to "?".
///
/// Threads: Set is not to be called while another thread converts.
class KYCB_API CodePage {
  public:
    /// Points the service at another code page by its usual name ("windows-936", "windows-1252",
    /// "UTF-8", ...). Returns false, and changes nothing, when the name is unknown.
    static bool Set(std::string_view name);

    /// `text` as bytes of the code page.
    static std::string ToAnsi(std::wstring_view text);

    /// Bytes of the code page as text.
    static std::wstring FromAnsi(std::string_view bytes);

    /// `text` converted there and back: what cannot be represented comes back as "?".
    static std::wstring RoundTrip(std::wstring_view text) { return FromAnsi(ToAnsi(text)); }
};

}  // namespace KYTOOLS
