// SPDX-License-Identifier: Apache-2.0
#include "result/XmlAttributeText.h"

#include <algorithm>
#include <array>
#include <cstddef>

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

// UTF-8 gathered in pieces: growing the text by single bytes would cost more than making them.
class Piece {
  public:
    explicit Piece(std::string& out) : out_(out) {}
    ~Piece() { Flush(); }
    Piece(const Piece&) = delete;
    Piece& operator=(const Piece&) = delete;

    /// Makes room for a character or a reference.
    void Reserve() {
        if (size_ + kMostAtOnce > bytes_.size()) Flush();
    }
    void Add(char32_t byte) { bytes_[size_++] = static_cast<char>(byte); }

  private:
    static constexpr std::size_t kMostAtOnce = 8;

    void Flush() {
        out_.append(bytes_.data(), size_);
        size_ = 0;
    }

    std::string& out_;
    std::array<char, 256> bytes_;
    std::size_t size_ = 0;
};

void AddUtf8(Piece& piece, char32_t c) {
    const auto addTail = [&](int shift) { piece.Add(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x800) {
        piece.Add(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        piece.Add(0xE0 | (c >> 12));
        addTail(6);
    } else {
        piece.Add(0xF0 | (c >> 18));
        addTail(12);
        addTail(6);
    }
    addTail(0);
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

void AddAscii(Piece& piece, char32_t c) {
    if (const char* reference = ReferenceTo(c)) {
        for (; *reference != '\0'; ++reference)
            piece.Add(static_cast<char32_t>(*reference));
    } else if (c < 0x20) {
        AddUtf8(piece, kReplacement);
    } else {
        piece.Add(c);
    }
}

// The length of the beginning that stands for itself, character by character.
std::size_t PlainLength(std::wstring_view text) {
    const auto isPlain = [](wchar_t c) {
        return c >= 0x20 && c < 0x80 && c != L'&' && c != L'<' && c != L'>' && c != L'"';
    };
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isPlain) -
                                    text.begin());
}

}  // namespace

void AppendAttributeText(std::string& out, std::wstring_view text) {
    // Ids and numbers, most of a result file, are plain throughout.
    const std::size_t plain = PlainLength(text);
    const std::size_t size = out.size();
    out.resize(size + plain);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(plain),
                   out.begin() + static_cast<std::ptrdiff_t>(size),
                   [](wchar_t c) { return static_cast<char>(c); });
    if (plain == text.size()) return;
    Piece piece(out);
    for (std::size_t i = plain; i < text.size();) {
        const char32_t c = Next(text, i);
        piece.Reserve();
        if (c < 0x80) {
            AddAscii(piece, c);
        } else {
            AddUtf8(piece, IsAllowed(c) ? c : kReplacement);
        }
    }
}

}  // namespace kycb
