// SPDX-License-Identifier: Apache-2.0
#include "kyclash/CategoryCheck.h"

#include "KYCollisionBase/model/KyCategoryNode.h"
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"

#include <algorithm>

#include "ifchost/HostText.h"

namespace kyclash {
namespace {

using KYCOLLISION::MODEL::KyCategoryNode;
using KYCOLLISION::MODEL::KyEntityCategoryMgr;

constexpr const char* kLevelNames[] = {"specialty", "major category", "minor category"};

const KyCategoryNode* ChildNamed(const KyCategoryNode& parent, const std::wstring& name) {
    const auto found =
        std::find_if(parent.children.begin(), parent.children.end(),
                     [&](const KyCategoryNode& child) { return child.name == name; });
    return found == parent.children.end() ? nullptr : &*found;
}

}  // namespace

std::vector<std::wstring> PathParts(const std::wstring& path) {
    std::vector<std::wstring> parts;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= path.size(); ++i) {
        if (i < path.size() && path[i] != L'/') continue;
        if (i < path.size() || i > begin) parts.push_back(path.substr(begin, i - begin));
        begin = i + 1;
    }
    return parts;
}

std::string WhyNoCategory(const std::vector<std::wstring>& parts) {
    const KyEntityCategoryMgr* tree = KyEntityCategoryMgr::GetInstance();
    if (tree->GetSpecNodeCount() == 0 || parts.empty()) return {};
    const KyCategoryNode* node = tree->GetSpecNode(parts[0]);
    std::string reached;
    for (std::size_t level = 0;; ++level) {
        if (node == nullptr) {
            return std::string("the category tree has no ") + kLevelNames[level] + " \"" +
                   ifchost::ToUtf8(parts[level]) + "\"" +
                   (reached.empty() ? "" : " in \"" + reached + "\"");
        }
        if (level + 1 == parts.size() || level == 2) return {};
        reached += (reached.empty() ? "" : "/") + ifchost::ToUtf8(parts[level]);
        node = ChildNamed(*node, parts[level + 1]);
    }
}

}  // namespace kyclash
