// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"

#include <string>

/// An XML document that is read and written through a cursor: one element, or the document itself
/// above the root element, is current. Made by CXMLTreeCreator::Allocate, released by Destroy.
///
/// Children are counted and addressed by index among the child elements of what is current, from 0,
/// in document order; comments, processing instructions and blanks between elements are no
/// children. An index outside the children, or a step that leads nowhere, gives false or an empty
/// text and leaves the cursor where it was. All texts are plain: escaping is the tree's matter, and
/// each character that XML forbids is stored as U+FFFD.
///
/// Threads: one tree is for one thread at a time.
class KYCB_API IXMLTree {
  public:
    /// Reads a document given as text in place of the one held, and makes the document current. An
    /// encoding in its declaration does not count. False when it is not well-formed; the tree is
    /// empty then.
    virtual bool LoadText(const std::wstring& text) = 0;

    /// The same for a file, in the encoding that its byte order mark or declaration names (UTF-8
    /// without either). False when the file cannot be read, too.
    virtual bool LoadFile(const std::wstring& path) = 0;

    /// Writes the document as UTF-8. The file is replaced as a whole or not at all: a failure, also
    /// a kill at any moment, leaves the old file as it was.
    virtual bool SaveFile(const std::wstring& path) = 0;

    /// Adds an element as the last child of what is current, and makes it current.
    virtual bool AddChild(const std::wstring& tag, const std::wstring& text) = 0;

    /// Makes the root element current, wherever the cursor stands; false when its tag is not `tag`.
    virtual bool GotoRoot(const std::wstring& tag) = 0;

    virtual int GetChildCount() = 0;
    virtual int GetChildCountByTag(const std::wstring& tag) = 0;

    /// False, and an empty `value`, when the current element has no such attribute.
    virtual bool GetAttribute(const std::wstring& name, std::wstring& value) = 0;

    /// Sets an attribute of the current element; false when the document itself is current.
    virtual bool SetAttribute(const std::wstring& name, const std::wstring& value) = 0;

    /// The text directly inside the child, without that of elements inside it.
    virtual std::wstring GetChildText(int index) = 0;

    /// Makes the parent current; above the root element that is the document.
    virtual bool GotoParent() = 0;

    virtual std::wstring GetChildAttribute(int index, const std::wstring& name) = 0;
    virtual std::wstring GetChildTag(int index) = 0;
    virtual bool GotoChild(int index) = 0;

    /// Releases the tree; it must not be used afterwards.
    virtual void Destroy() = 0;

    /// Makes the first child with this tag current.
    virtual bool GotoChildByTag(const std::wstring& tag) = 0;

    /// Makes one of the children that the last GetChildCountByTag at this element counted current.
    virtual bool GotoCountedChild(int index) = 0;

    /// Why the last load or save failed, naming the file and the place in it; empty after a
    /// success.
    virtual std::wstring GetErrorText() = 0;

  protected:
    ~IXMLTree() = default;
};
