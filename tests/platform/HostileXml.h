// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace kycbtest {

/// A document that no reader may accept.
struct HostileXml {
    std::string name;
    std::string bytes;
    std::string reason;  ///< part of the text of the error
};

/// The small ones; the large ones are made by the tests that need them.
std::vector<HostileXml> HostileXmlCorpus();

/// `depth` elements inside each other, closed properly.
std::string NestedXml(int depth);

/// `text`, which is ASCII, in UTF-16 with a byte order mark.
enum class ByteOrder { kLittle, kBig };
std::string Utf16WithMark(const std::u16string& text, ByteOrder order);

}  // namespace kycbtest
