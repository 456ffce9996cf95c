// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/IXMLTree.h"

#include <memory>
#include <string>
#include <vector>

#include <pugixml.hpp>

namespace kycb::xml {

/// The library's own XML tree.
class XmlTree final : public IXMLTree {
  public:
    XmlTree();

    bool LoadText(const std::wstring& text) override;
    bool LoadFile(const std::wstring& path) override;
    bool SaveFile(const std::wstring& path) override;
    bool AddChild(const std::wstring& tag, const std::wstring& text) override;
    bool GotoRoot(const std::wstring& tag) override;
    int GetChildCount() override;
    int GetChildCountByTag(const std::wstring& tag) override;
    bool GetAttribute(const std::wstring& name, std::wstring& value) override;
    bool SetAttribute(const std::wstring& name, const std::wstring& value) override;
    std::wstring GetChildText(int index) override;
    bool GotoParent() override;
    std::wstring GetChildAttribute(int index, const std::wstring& name) override;
    std::wstring GetChildTag(int index) override;
    bool GotoChild(int index) override;
    void Destroy() override;
    bool GotoChildByTag(const std::wstring& tag) override;
    bool GotoCountedChild(int index) override;
    std::wstring GetErrorText() override;

  private:
    /// One element on the way from the document to the current element. Its children are listed
    /// once, so that a walk by index takes linear time.
    struct Level {
        pugi::xml_node node;
        bool listed = false;
        std::vector<pugi::xml_node> children;
        std::vector<pugi::xml_node> counted;
    };

    bool Finish(std::wstring errorText);
    Level& Current() { return path_.back(); }
    const std::vector<pugi::xml_node>& Children();
    pugi::xml_node Child(int index);
    bool Enter(pugi::xml_node node);

    pugi::xml_document document_;
    std::vector<Level> path_;
    std::wstring errorText_;
};

/// Releases a tree of any allocator.
struct TreeDestroyer {
    void operator()(IXMLTree* tree) const { tree->Destroy(); }
};
using TreePtr = std::unique_ptr<IXMLTree, TreeDestroyer>;

}  // namespace kycb::xml
