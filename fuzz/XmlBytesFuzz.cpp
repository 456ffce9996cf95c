// SPDX-License-Identifier: Apache-2.0
// The content of XML files: encodings, well-formedness, and the walk over attributes and texts.
#include <cstdint>
#include <string>

#include <pugixml.hpp>

#include "Require.h"
#include "platform/XmlFile.h"

using kycbfuzz::Require;

namespace {

struct Reader : pugi::xml_tree_walker {
    bool for_each(pugi::xml_node& node) override {
        length += kycb::xml::TextOf(node).size();
        for (const pugi::xml_attribute& attribute : node.attributes()) {
            length += kycb::xml::AttributeOf(node, L"name").size();
            length += std::char_traits<char>::length(attribute.value());
        }
        return true;
    }

    std::size_t length = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    for (const auto keep : {kycb::xml::Keep::kElementsAndText, kycb::xml::Keep::kAllNodes}) {
        pugi::xml_document document;
        const kycb::Status status = kycb::xml::LoadBytes(document, L"input", bytes, keep);
        Require(status.IsOk() == !kycb::xml::RootOf(document).empty(),
                "a document has a root, or a reason why it has none");
        Reader reader;
        document.traverse(reader);
    }
    return 0;
}
