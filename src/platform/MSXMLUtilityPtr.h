// SPDX-License-Identifier: Apache-2.0
// Documents built and walked element by element.
#pragma once

#include <memory>
#include <string>

#include <pugixml.hpp>

namespace KYTOOLS {

/// A handle to an element; the document keeps the element itself. Copies name the same element.
class XmlElement {
  public:
    XmlElement() = default;

    /// A null handle names no element: reading from it gives nothing.
    bool IsNull() const { return node_.empty(); }
    std::wstring GetTag() const;

    /// Makes `child` the last child of this element. Throws std::invalid_argument when one of them
    /// is null, or they belong to different documents, or `child` holds this element.
    void AppendChild(const XmlElement& child);

  private:
    friend class MSXMLUtilityPtr;
    explicit XmlElement(pugi::xml_node node) : node_(node) {}

    pugi::xml_node node_;
};

/// A document with its elements. Elements that were created but not yet appended belong to it too.
class XmlDocument {
  public:
    XmlDocument() = default;
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    /// Why the last OpenXml or SaveXmlQuick failed, naming the file and the place; else empty.
    const std::wstring& GetErrorText() const { return errorText_; }

  private:
    friend class MSXMLUtilityPtr;

    /// Holds the elements that have no parent yet.
    pugi::xml_document tree_;
    pugi::xml_node loose_;
    pugi::xml_node root_;
    std::wstring errorText_;
};

/// The operations on documents. Failures to read or save come back as false; memory that cannot be
/// had raises std::bad_alloc.
class MSXMLUtilityPtr {
  public:
    /// Walks the child elements of an element in document order. A child that is no element (a
    /// comment, a text, a processing instruction) ends the walk as the last child does; blanks
    /// between elements are no children.
    class EnumBase {
      public:
        EnumBase() = default;

        /// False when there was no element to walk.
        bool IsValid() const { return valid_; }

        /// Gives the next child element; false at the end.
        bool Next(XmlElement& element);

      private:
        friend class MSXMLUtilityPtr;

        bool valid_ = false;
        pugi::xml_node next_;
    };

    /// A new empty document.
    static std::shared_ptr<XmlDocument> CreateDOMObj();

    /// A new element that has no parent yet. `tag` is a valid XML name.
    static XmlElement CreateElement(XmlDocument& document, const std::wstring& tag);

    /// Sets an attribute; attributes stand in the order in which they were first set. Each
    /// character of the value that XML forbids is stored as U+FFFD; all others survive a file.
    static void SetAttribute(XmlElement& element, const std::wstring& name,
                             const std::wstring& value);

    /// Makes `element`, of this document, its root, in place of the one it had.
    static void SetRootElement(XmlDocument& document, const XmlElement& element);

    /// Writes the root element and all below it to a file, UTF-8 without a declaration. The file is
    /// replaced as a whole or not at all. False without a root element.
    static bool SaveXmlQuick(XmlDocument& document, const std::wstring& path);

    /// Reads a file into `document` in place of what it held; false when that fails, and then it
    /// holds nothing.
    static bool OpenXml(XmlDocument& document, const std::wstring& path);

    static bool GetRootElement(const XmlDocument& document, XmlElement& element);
    static EnumBase EnumChildNodes(const XmlElement& element);

    /// Empty when the attribute is absent.
    static std::wstring GetAttributeValue(const XmlElement& element, const std::wstring& name);
};

}  // namespace KYTOOLS
