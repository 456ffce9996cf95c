// SPDX-License-Identifier: Apache-2.0
// Reading and writing XML documents: files, encodings and what may stand in a document.
#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "platform/Status.h"

namespace kycb::xml {

/// What a parsed document keeps besides elements, attributes and texts.
enum class Keep {
    kElementsAndText,  ///< comments and processing instructions are dropped
    kAllNodes,         ///< they stay, as nodes among their siblings
};

/// Reads an XML file. A byte order mark, else the declaration, names the encoding (UTF-8 without
/// either; "GB2312" stands for code page 936). Refused, with the reason and the place: a file that
/// cannot be read or is larger than 1 GiB, an unknown encoding, bytes that are invalid in the
/// encoding, characters that XML forbids, text that is not well-formed, no root element or more
/// than one, text beside it, declarations of entities (so a small file cannot stand for a huge
/// text). Any depth of nesting is read without recursion. After a failure the document is empty.
Status LoadFile(pugi::xml_document& document, const std::wstring& path, Keep keep);

/// The same for the content of a file; `name` stands for the file in the text of a failure.
Status LoadBytes(pugi::xml_document& document, const std::wstring& name, std::string bytes,
                 Keep keep);

/// The same for a document given as text; an encoding in its declaration does not count.
Status LoadText(pugi::xml_document& document, std::wstring_view text, Keep keep);

/// Writes `node` and what is below it, as UTF-8 with one element a line, replacing the file as a
/// whole or not at all.
Status SaveFile(const pugi::xml_node& node, const std::wstring& path);

/// `text` as UTF-8 that can stand in a document: each character that XML forbids (control
/// characters except tab, line feed and carriage return; U+FFFE; U+FFFF; unpaired surrogates)
/// becomes U+FFFD.
std::string ToXmlText(std::wstring_view text);

/// The text directly inside an element, its pieces joined.
std::wstring TextOf(const pugi::xml_node& element);

/// The value of an attribute, empty when it is absent.
std::wstring AttributeOf(const pugi::xml_node& element, const std::wstring& name);

/// Sets an attribute, adding it after the others when it is absent. Throws std::bad_alloc.
void SetAttributeOf(pugi::xml_node element, const std::wstring& name, const std::wstring& value);

/// Adds an empty element as the last child. Throws std::bad_alloc.
pugi::xml_node AppendElement(pugi::xml_node parent, const std::wstring& tag);

/// The only root element, null in an empty document.
pugi::xml_node RootOf(const pugi::xml_document& document);

}  // namespace kycb::xml
