// SPDX-License-Identifier: Apache-2.0
#include "platform/XmlTree.h"

#include <new>
#include <utility>

#include "platform/Text.h"
#include "platform/XmlFile.h"

namespace kycb::xml {
namespace {

bool HasTag(const pugi::xml_node& element, const std::wstring& tag) {
    return element && text::FromUtf8(element.name()) == tag;
}

pugi::xml_node At(const std::vector<pugi::xml_node>& nodes, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= nodes.size()) return {};
    return nodes[static_cast<std::size_t>(index)];
}

}  // namespace

XmlTree::XmlTree() {
    Finish({});
}

bool XmlTree::Finish(std::wstring errorText) {
    path_.clear();
    path_.emplace_back().node = document_;
    errorText_ = std::move(errorText);
    return errorText_.empty();
}

bool XmlTree::LoadText(const std::wstring& text) {
    return Finish(xml::LoadText(document_, text, Keep::kElementsAndText).text);
}

bool XmlTree::LoadFile(const std::wstring& path) {
    return Finish(xml::LoadFile(document_, path, Keep::kElementsAndText).text);
}

bool XmlTree::SaveFile(const std::wstring& path) {
    errorText_ = xml::SaveFile(document_, path).text;
    return errorText_.empty();
}

bool XmlTree::AddChild(const std::wstring& tag, const std::wstring& text) {
    const bool hasRoot = Current().node == document_ && RootOf(document_);
    if (hasRoot) return false;
    pugi::xml_node child = AppendElement(Current().node, tag);
    if (!text.empty() && !child.text().set(ToXmlText(text).c_str())) throw std::bad_alloc();
    if (Current().listed) Current().children.push_back(child);
    return Enter(child);
}

bool XmlTree::GotoRoot(const std::wstring& tag) {
    const pugi::xml_node root = RootOf(document_);
    if (!HasTag(root, tag)) return false;
    path_.resize(1);
    return Enter(root);
}

int XmlTree::GetChildCount() {
    return static_cast<int>(Children().size());
}

int XmlTree::GetChildCountByTag(const std::wstring& tag) {
    std::vector<pugi::xml_node>& counted = Current().counted;
    counted.clear();
    for (const pugi::xml_node& child : Children()) {
        if (HasTag(child, tag)) counted.push_back(child);
    }
    return static_cast<int>(counted.size());
}

bool XmlTree::GetAttribute(const std::wstring& name, std::wstring& value) {
    value = AttributeOf(Current().node, name);
    return !Current().node.attribute(text::ToUtf8(name).c_str()).empty();
}

bool XmlTree::SetAttribute(const std::wstring& name, const std::wstring& value) {
    if (Current().node == document_) return false;
    SetAttributeOf(Current().node, name, value);
    return true;
}

std::wstring XmlTree::GetChildText(int index) {
    return TextOf(Child(index));
}

bool XmlTree::GotoParent() {
    if (path_.size() == 1) return false;
    path_.pop_back();
    return true;
}

std::wstring XmlTree::GetChildAttribute(int index, const std::wstring& name) {
    return AttributeOf(Child(index), name);
}

std::wstring XmlTree::GetChildTag(int index) {
    return text::FromUtf8(Child(index).name());
}

bool XmlTree::GotoChild(int index) {
    return Enter(Child(index));
}

void XmlTree::Destroy() {
    delete this;
}

bool XmlTree::GotoChildByTag(const std::wstring& tag) {
    for (const pugi::xml_node& child : Children()) {
        if (HasTag(child, tag)) return Enter(child);
    }
    return false;
}

bool XmlTree::GotoCountedChild(int index) {
    return Enter(At(Current().counted, index));
}

std::wstring XmlTree::GetErrorText() {
    return errorText_;
}

const std::vector<pugi::xml_node>& XmlTree::Children() {
    Level& level = Current();
    if (!level.listed) {
        for (const pugi::xml_node& child : level.node) {
            if (child.type() == pugi::node_element) level.children.push_back(child);
        }
        level.listed = true;
    }
    return level.children;
}

pugi::xml_node XmlTree::Child(int index) {
    return At(Children(), index);
}

bool XmlTree::Enter(pugi::xml_node node) {
    if (!node) return false;
    path_.emplace_back().node = node;
    return true;
}

}  // namespace kycb::xml
