// SPDX-License-Identifier: Apache-2.0
#include "platform/HostileXml.h"

#include <random>

namespace kycbtest {
namespace {

std::string RandomBytes(unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes;
    for (int i = 0; i < 4096; ++i)
        bytes += static_cast<char>(random() & 0xFF);
    return bytes;
}

/// Ten entities, each ten times the one before: small text, 10^10 characters when expanded.
std::string EntityBomb() {
    std::string bytes = "<?xml version=\"1.0\"?>\n<!DOCTYPE r [\n<!ENTITY a0 \"x\">\n";
    for (int i = 1; i <= 10; ++i) {
        bytes += "<!ENTITY a" + std::to_string(i) + " \"";
        for (int k = 0; k < 10; ++k)
            bytes += "&a" + std::to_string(i - 1) + ";";
        bytes += "\">\n";
    }
    return bytes + "]>\n<r v=\"&a10;\">&a10;</r>";
}

}  // namespace

std::vector<HostileXml> HostileXmlCorpus() {
    using namespace std::string_literals;
    std::vector<HostileXml> corpus = {
        {"empty", "", "1:1: no root element"},
        {"blanks", "  \n", "1:1: no root element"},
        {"only a declaration", "<?xml version=\"1.0\"?>", "1:1: no root element"},
        {"only a comment", "<!-- x -->", "1:1: no root element"},
        {"plain text", "hello", "1:1: text outside the root element"},
        {"cut in a tag", "<r><a b=\"1\"", "1:11: "},
        {"cut in a value", "<r>\n<a b=\"1", "2:7: Error parsing element attribute"},
        {"cut before the end", "<r><a/>", "Start-end tags mismatch"},
        {"cut in a comment", "<r><!-- x", "Error parsing comment"},
        {"cut in character data", "<r><![CDATA[ x", "Error parsing CDATA"},
        {"cut in a declaration", "<?xml version=\"1.0\"", "Error parsing"},
        {"crossed tags", "<r><a><b></a></b></r>", "Start-end tags mismatch"},
        {"unquoted value", "<r a=1/>", "Error parsing element attribute"},
        {"no tag name", "<>", "1:2: Could not determine tag type"},
        {"two roots", "<r/><s/>", "1:6: more than one root element"},
        {"text before the root", "<!-- x -->lost<r/>", "1:11: text outside the root element"},
        {"text behind the root", "<r/>lost", "1:5: text outside the root element"},
        {"character data behind the root", "<r/><![CDATA[x]]>", "text outside the root element"},
        {"entity bomb", EntityBomb(), "entity declarations are not allowed"},
        {"external entity", "<!DOCTYPE r [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><r>&x;</r>",
         "entity declarations are not allowed"},
        {"NUL character", "<r a=\"1\0 2\"/>"s, "a character that XML forbids"},
        {"control character", "<r>\n\x01</r>", "2:1: a character that XML forbids"},
        {"GBK bytes without a declaration", "<r a=\"\xD6\xD0\"/>", "1:7: invalid UTF-8"},
        {"surrogate in UTF-8", "<r>\xED\xA0\x80</r>", "invalid UTF-8"},
        {"unknown encoding", "<?xml version=\"1.0\" encoding=\"klingon\"?><r/>",
         "unknown encoding \"klingon\""},
        {"bytes that its encoding has not",
         "<?xml version=\"1.0\" encoding=\"GBK\"?><r a=\"\xD6\"/>", "invalid in GBK"},
        {"UTF-16 cut in a character", "\xFF\xFE<\0r\0/"s, "invalid in UTF-16LE"},
        {"nesting that never ends", NestedXml(100000).substr(0, 300000), "Start-end tags mismatch"},
    };
    for (unsigned seed = 1; seed <= 20; ++seed) {
        corpus.push_back({"random bytes " + std::to_string(seed), RandomBytes(seed), ""});
    }
    return corpus;
}

std::string NestedXml(int depth) {
    std::string bytes;
    for (int i = 0; i < depth; ++i)
        bytes += "<e>";
    for (int i = 0; i < depth; ++i)
        bytes += "</e>";
    return bytes;
}

std::string Utf16WithMark(const std::u16string& text, ByteOrder order) {
    std::string bytes;
    for (const char16_t unit : u'\xFEFF' + text) {
        const auto low = static_cast<char>(unit & 0xFF);
        const auto high = static_cast<char>(unit >> 8);
        bytes += order == ByteOrder::kLittle ? low : high;
        bytes += order == ByteOrder::kLittle ? high : low;
    }
    return bytes;
}

}  // namespace kycbtest
