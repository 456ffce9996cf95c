// SPDX-License-Identifier: Apache-2.0
#include "result/XmlAttributeText.h"

#include <cstddef>
#include <cstdint>

namespace kycb {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsLeadSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool IsTrailSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// The character at `i`, which moves past it; a lone surrogate comes back as it is.
char32_t Next(std::wstring_view text, std::size_t& i) {
    const auto unit = static_cast<char32_t>(text[i++]);
    if constexpr (sizeof(wchar_t) == 2) {
        if (IsLeadSurrogate(unit) && i < text.size()) {
            const auto trail = static_cast<char32_t>(text[i]);
            if (IsTrailSurrogate(trail)) {
                ++i;
                return 0x10000 + ((unit - 0xD800) << 10) + (trail - 0xDC00);
            }
        }
    }
    return unit;
}

bool IsAllowed(char32_t c) {
    return c <= 0x10FFFF && c != 0xFFFE && c != 0xFFFF && !IsLeadSurrogate(c) &&
           !IsTrailSurrogate(c);
}

void AppendUtf8(std::string& out, char32_t c) {
    const auto append = [&out](char32_t byte) { out += static_cast<char>(byte); };
    const auto appendTail = [&](int shift) { append(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x800) {
        append(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        append(0xE0 | (c >> 12));
        appendTail(6);
    } else {
        append(0xF0 | (c >> 18));
        appendTail(12);
        appendTail(6);
    }
    appendTail(0);
}

// What stands for an ASCII character that cannot stand for itself, or null.
const char* ReferenceTo(char32_t c) {
    switch (c) {
        case U'&':
            return "&amp;";
        case U'<':
            return "&lt;";
        case U'>':
            return "&gt;";
        case U'"':
            return "&quot;";
        case U'\t':
            return "&#9;";
        case U'\n':
            return "&#10;";
        case U'\r':
            return "&#13;";
        default:
            return nullptr;
    }
}

}  // namespace

void AppendAttributeText(std::string& out, std::wstring_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const char32_t c = Next(text, i);
        if (c >= 0x80) {
            AppendUtf8(out, IsAllowed(c) ? c : kReplacement);
        } else if (const char* reference = ReferenceTo(c)) {
            out += reference;
        } else if (c < 0x20) {
            AppendUtf8(out, kReplacement);
        } else {
            out += static_cast<char>(c);
        }
    }
}

}  // namespace kycb
