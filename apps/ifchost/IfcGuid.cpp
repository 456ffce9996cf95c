// SPDX-License-Identifier: Apache-2.0
#include "IfcGuid.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid.hpp>

namespace ifchost {
namespace {

using GuidBytes = std::array<std::uint8_t, 16>;

constexpr std::string_view kAlphabet =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_$";
constexpr std::wstring_view kHexDigits = L"0123456789abcdef";
constexpr unsigned kBitsPerCharacter = 6;
// 22 characters hold 132 bits; the first one has only the top two of the 128.
constexpr unsigned kBitsOfFirstCharacter = 2;

// Namespace of the GUIDs that the host makes up; a random UUID, fixed once.
constexpr boost::uuids::uuid kMadeUpNamespace = {{0x5e, 0x0a, 0x5b, 0x1c, 0x9d, 0x43, 0x4f, 0x27,
                                                  0xa8, 0x66, 0x21, 0x70, 0xe4, 0x3f, 0xc8, 0x92}};

// A queue of bits that digits are pushed into on one side and taken from on the other.
class BitQueue {
  public:
    void Push(unsigned digit, unsigned bits) {
        value_ = (value_ << bits) | digit;
        count_ += bits;
    }
    bool Holds(unsigned bits) const { return count_ >= bits; }
    unsigned Take(unsigned bits) {
        count_ -= bits;
        const auto digit = static_cast<unsigned>(value_ >> count_);
        value_ &= (std::uint64_t{1} << count_) - 1;
        return digit;
    }

  private:
    std::uint64_t value_ = 0;
    unsigned count_ = 0;
};

std::wstring HexText(const GuidBytes& bytes) {
    std::wstring text;
    text.reserve(kGuidHexDigits);
    for (const std::uint8_t byte : bytes) {
        text.push_back(kHexDigits[byte >> 4]);
        text.push_back(kHexDigits[byte & 15]);
    }
    return text;
}

std::optional<unsigned> HexDigit(wchar_t c) {
    if (c >= L'A' && c <= L'F') c = static_cast<wchar_t>(c - L'A' + L'a');
    const std::size_t digit = kHexDigits.find(c);
    if (digit == std::wstring_view::npos) return std::nullopt;
    return static_cast<unsigned>(digit);
}

}  // namespace

std::optional<std::wstring> HexFromGlobalId(std::string_view globalId) {
    if (globalId.size() != kGlobalIdCharacters) return std::nullopt;
    GuidBytes bytes{};
    std::size_t filled = 0;
    BitQueue bits;
    for (std::size_t i = 0; i < globalId.size(); ++i) {
        const std::size_t digit = kAlphabet.find(globalId[i]);
        const unsigned width = i == 0 ? kBitsOfFirstCharacter : kBitsPerCharacter;
        if (digit == std::string_view::npos || digit >> width != 0) return std::nullopt;
        bits.Push(static_cast<unsigned>(digit), width);
        while (bits.Holds(8))
            bytes[filled++] = static_cast<std::uint8_t>(bits.Take(8));
    }
    return HexText(bytes);
}

std::optional<std::string> GlobalIdFromHex(std::wstring_view hex) {
    if (hex.size() != kGuidHexDigits) return std::nullopt;
    std::string text;
    BitQueue bits;
    for (const wchar_t c : hex) {
        const auto digit = HexDigit(c);
        if (!digit) return std::nullopt;
        bits.Push(*digit, 4);
        if (text.empty()) text.push_back(kAlphabet[bits.Take(kBitsOfFirstCharacter)]);
        while (bits.Holds(kBitsPerCharacter)) {
            text.push_back(kAlphabet[bits.Take(kBitsPerCharacter)]);
        }
    }
    return text;
}

std::wstring HexFromText(std::string_view text) {
    const boost::uuids::uuid id =
        boost::uuids::name_generator_sha1(kMadeUpNamespace)(text.data(), text.size());
    GuidBytes bytes{};
    std::copy(id.begin(), id.end(), bytes.begin());
    return HexText(bytes);
}

}  // namespace ifchost
