// SPDX-License-Identifier: Apache-2.0
#include "platform/MSXMLUtilityPtr.h"

#include <stdexcept>

#include "platform/Text.h"
#include "platform/XmlFile.h"

namespace KYTOOLS {

std::wstring XmlElement::GetTag() const {
    return kycb::text::FromUtf8(node_.name());
}

void XmlElement::AppendChild(const XmlElement& child) {
    if (!node_.append_move(child.node_)) {
        throw std::invalid_argument("an element can only be appended within its own document");
    }
}

bool MSXMLUtilityPtr::EnumBase::Next(XmlElement& element) {
    if (next_.type() != pugi::node_element) return false;
    element = XmlElement(next_);
    next_ = next_.next_sibling();
    return true;
}

std::shared_ptr<XmlDocument> MSXMLUtilityPtr::CreateDOMObj() {
    return std::make_shared<XmlDocument>();
}

XmlElement MSXMLUtilityPtr::CreateElement(XmlDocument& document, const std::wstring& tag) {
    if (!document.loose_) document.loose_ = kycb::xml::AppendElement(document.tree_, L"loose");
    return XmlElement(kycb::xml::AppendElement(document.loose_, tag));
}

void MSXMLUtilityPtr::SetAttribute(XmlElement& element, const std::wstring& name,
                                   const std::wstring& value) {
    kycb::xml::SetAttributeOf(element.node_, name, value);
}

void MSXMLUtilityPtr::SetRootElement(XmlDocument& document, const XmlElement& element) {
    document.root_ = element.node_;
}

bool MSXMLUtilityPtr::SaveXmlQuick(XmlDocument& document, const std::wstring& path) {
    if (!document.root_) {
        document.errorText_ = path + L": the document has no root element";
        return false;
    }
    document.errorText_ = kycb::xml::SaveFile(document.root_, path).text;
    return document.errorText_.empty();
}

bool MSXMLUtilityPtr::OpenXml(XmlDocument& document, const std::wstring& path) {
    document.errorText_ =
        kycb::xml::LoadFile(document.tree_, path, kycb::xml::Keep::kAllNodes).text;
    document.loose_ = {};
    document.root_ = kycb::xml::RootOf(document.tree_);
    return document.errorText_.empty();
}

bool MSXMLUtilityPtr::GetRootElement(const XmlDocument& document, XmlElement& element) {
    element = XmlElement(document.root_);
    return !element.IsNull();
}

MSXMLUtilityPtr::EnumBase MSXMLUtilityPtr::EnumChildNodes(const XmlElement& element) {
    EnumBase children;
    children.valid_ = !element.IsNull();
    children.next_ = element.node_.first_child();
    return children;
}

std::wstring MSXMLUtilityPtr::GetAttributeValue(const XmlElement& element,
                                                const std::wstring& name) {
    return kycb::xml::AttributeOf(element.node_, name);
}

}  // namespace KYTOOLS
