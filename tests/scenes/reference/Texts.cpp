// SPDX-License-Identifier: Apache-2.0
#include "scenes/reference/Texts.h"

#include <map>
#include <stdexcept>

namespace kycb::scenes::reference {

namespace {

// Code page 936 holds every character of the block of ideographs that Unicode 1.1 had.
bool IsIdeograph(wchar_t c) {
    return c >= L'\u4E00' && c <= L'\u9FA5';
}

// Thai and Hangul stand for all that the code page lacks.
bool IsForeign(wchar_t c) {
    return (c >= L'\u0E01' && c <= L'\u0E3A') || (c >= L'\uAC00' && c <= L'\uD7A3');
}

bool IsAscii(wchar_t c) {
    return c > 0 && c < 0x80;
}

const std::map<wchar_t, const char*>& IdeographBytes() {
    static const std::map<wchar_t, const char*> bytes = {
        {L'一', "\xD2\xBB"}, {L'丙', "\xB1\xFB"}, {L'乙', "\xD2\xD2"}, {L'甲', "\xBC\xD7"},
        {L'板', "\xB0\xE5"}, {L'柱', "\xD6\xF9"}, {L'梁', "\xC1\xBA"}, {L'阿', "\xB0\xA2"},
    };
    return bytes;
}

}  // namespace

std::vector<std::wstring> Split(const std::wstring& text, const std::wstring& delimiter) {
    std::vector<std::wstring> parts;
    std::size_t from = 0;
    for (std::size_t at = text.find(delimiter); at != std::wstring::npos;
         at = text.find(delimiter, from)) {
        parts.push_back(text.substr(from, at - from));
        from = at + delimiter.size();
    }
    if (from < text.size()) parts.push_back(text.substr(from));
    return parts;
}

double PlainDouble(const std::wstring& text) {
    try {
        return std::stod(text);
    } catch (const std::invalid_argument&) {
        return 0.0;
    }
}

double StrictDouble(const std::wstring& text) {
    try {
        return std::stod(text);
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("invalid stod argument");
    } catch (const std::out_of_range&) {
        throw std::out_of_range("stod argument out of range");
    }
}

int StrictInt(const std::wstring& text) {
    try {
        return std::stoi(text);
    } catch (const std::invalid_argument&) {
        throw std::invalid_argument("invalid stoi argument");
    } catch (const std::out_of_range&) {
        throw std::out_of_range("stoi argument out of range");
    }
}

std::wstring LowerCase(std::wstring text) {
    for (wchar_t& c : text) {
        if (c >= L'A' && c <= L'Z') c += L'a' - L'A';
    }
    return text;
}

int Rounded(double value) {
    return static_cast<int>(value < 0.0 ? value - 0.5 : value + 0.5);
}

std::string GbkBytes(const std::wstring& text) {
    std::string bytes;
    for (const wchar_t c : text) {
        if (IsAscii(c)) {
            bytes += static_cast<char>(c);
        } else if (IsForeign(c)) {
            bytes += '?';
        } else if (IdeographBytes().count(c) == 1) {
            bytes += IdeographBytes().at(c);
        } else {
            throw std::runtime_error("the reference does not know the bytes of a character");
        }
    }
    return bytes;
}

std::wstring ThereAndBack(const std::wstring& text) {
    std::wstring back;
    for (const wchar_t c : text) {
        if (!IsAscii(c) && !IsForeign(c) && !IsIdeograph(c)) {
            throw std::runtime_error("the reference does not know whether a character is in GBK");
        }
        back += IsForeign(c) ? L'?' : c;
    }
    return back;
}

}  // namespace kycb::scenes::reference
