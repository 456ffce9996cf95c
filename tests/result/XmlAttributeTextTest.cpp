// SPDX-License-Identifier: Apache-2.0
#include <random>

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include "platform/Text.h"
#include "result/XmlAttributeText.h"

namespace {

std::string Written(const std::wstring& text) {
    std::string out;
    kycb::AppendAttributeText(out, text);
    return out;
}

std::wstring ReadBack(const std::wstring& text) {
    const std::string xml = "<e a=\"" + Written(text) + "\"/>";
    pugi::xml_document document;
    EXPECT_TRUE(
        document.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8));
    return kycb::text::FromUtf8(document.document_element().attribute("a").value());
}

bool IsKeptByXml(wchar_t c) {
    const auto code = static_cast<char32_t>(c);
    if (code < 0x20) return code == 9 || code == 10 || code == 13;
    return !(code >= 0xD800 && code <= 0xDFFF) && code != 0xFFFE && code != 0xFFFF &&
           code <= 0x10FFFF;
}

}  // namespace

TEST(XmlAttributeText, WritesPlainTextAsItIs) {
    EXPECT_EQ(Written(L"KL1 300*500"), "KL1 300*500");
    EXPECT_EQ(Written(L""), "");
}

TEST(XmlAttributeText, WritesMarkupCharactersAsEntities) {
    EXPECT_EQ(Written(L"a<b>&\"c\"'"), "a&lt;b&gt;&amp;&quot;c&quot;'");
}

TEST(XmlAttributeText, WritesTabsAndLineEndsAsReferences) {
    EXPECT_EQ(Written(L"a\tb\r\nc"), "a&#9;b&#13;&#10;c");
}

TEST(XmlAttributeText, WritesOtherCharactersAsUtf8) {
    EXPECT_EQ(Written(L"\u00e9\u4e2d"), "\xC3\xA9\xE4\xB8\xAD");
    EXPECT_EQ(Written(L"\U0001F600"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Written(L"\U0010FFFF\u07FF\u0800"), "\xF4\x8F\xBF\xBF\xDF\xBF\xE0\xA0\x80");
}

TEST(XmlAttributeText, ReplacesWhatXmlForbids) {
    EXPECT_EQ(ReadBack(L"a\x01\x1F\x0b"
                       L"b"),
              L"a\uFFFD\uFFFD\uFFFDb");
    EXPECT_EQ(ReadBack(std::wstring(L"a\0b", 3)), L"a\uFFFDb");
    EXPECT_EQ(ReadBack(L"\xFFFE\xFFFF"), L"\uFFFD\uFFFD");
}

TEST(XmlAttributeText, ReplacesUnpairedSurrogatesAndValuesThatAreNoCharacters) {
    EXPECT_EQ(ReadBack({L'a', static_cast<wchar_t>(0xD83D), L'b'}), L"a\uFFFDb");
    EXPECT_EQ(ReadBack({static_cast<wchar_t>(0xDE00)}), L"\uFFFD");
    if constexpr (sizeof(wchar_t) == 4) {
        EXPECT_EQ(ReadBack({static_cast<wchar_t>(0x110000)}), L"\uFFFD");
        EXPECT_EQ(ReadBack({static_cast<wchar_t>(-1)}), L"\uFFFD");
    }
}

TEST(XmlAttributeText, EveryTextThatXmlCanHoldComesBack) {
    std::mt19937 random(54);
    std::uniform_int_distribution<int> length(0, 40);
    std::uniform_int_distribution<int> plane(0, 3);
    int forbidden = 0;
    for (int round = 0; round < 3000; ++round) {
        std::wstring text;
        std::wstring expected;
        for (int i = length(random); i > 0; --i) {
            constexpr int kLimits[] = {0x40, 0x100, 0xFFFF, 0xFFFF};
            const auto c = static_cast<wchar_t>(
                std::uniform_int_distribution<int>(0, kLimits[plane(random)])(random));
            text += c;
            expected += IsKeptByXml(c) ? c : L'\xFFFD';
            forbidden += !IsKeptByXml(c);
        }
        // Where two wide units make one character, random surrogates may pair up.
        if (sizeof(wchar_t) == 4) {
            ASSERT_EQ(ReadBack(text), expected);
        }
    }
    EXPECT_GT(forbidden, 1000);
}
