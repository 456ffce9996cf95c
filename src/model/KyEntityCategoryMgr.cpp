// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/model/KyEntityCategoryMgr.h"

#include "KYCollisionBase/platform/CXMLTreeCreator.h"
#include "KYCollisionBase/platform/HostServices.h"

#include <algorithm>

#include "platform/XmlTree.h"

namespace KYCOLLISION::MODEL {
namespace {

bool IsValid(const KyCategoryNode& node, EnumNodeType level) {
    return node.type != eNodeNone && !node.name.empty() && node.type == level;
}

const KyCategoryNode* ValidAt(const std::vector<KyCategoryNode>& nodes, int index,
                              EnumNodeType level) {
    if (index < 0 || static_cast<std::size_t>(index) >= nodes.size()) return nullptr;
    const KyCategoryNode& node = nodes[static_cast<std::size_t>(index)];
    return IsValid(node, level) ? &node : nullptr;
}

int CountOf(const KyCategoryNode* node) {
    return node ? static_cast<int>(node->children.size()) : 0;
}

/// The tag of the elements inside an element of this level, or null.
const wchar_t* ChildTag(EnumNodeType level) {
    if (level == eNodeZhuanye) return L"dalei";
    if (level == eNodeDaLei) return L"xiaolei";
    return nullptr;
}

EnumNodeType NextLevel(EnumNodeType level) {
    return static_cast<EnumNodeType>(level + 1);
}

/// Bolts and items come as minor categories of Tekla's steel structure.
void RemoveTeklaMinorKinds(KyCategoryNode& specialty) {
    if (specialty.name != L"Tekla") return;
    std::erase_if(specialty.children, [](const KyCategoryNode& child) {
        return child.name == L"螺栓" || child.name == L"项";
    });
}

void InsertNode(ITreeControl& tree, HTREEITEM parent, const KyCategoryNode& node,
                EnumNodeType level) {
    if (!IsValid(node, level)) return;
    const HTREEITEM item = tree.InsertItem(node.name, parent);
    if (!item) return;
    for (const KyCategoryNode& child : node.children) {
        InsertNode(tree, item, child, NextLevel(level));
    }
}

bool IsWanted(const std::wstring& name, const std::vector<std::wstring>* specs) {
    return !specs || std::find(specs->begin(), specs->end(), name) != specs->end();
}

}  // namespace

KyEntityCategoryMgr::KyEntityCategoryMgr() {
    LoadConfig();
}

KyEntityCategoryMgr* KyEntityCategoryMgr::GetInstance() {
    static KyEntityCategoryMgr instance;
    return &instance;
}

int KyEntityCategoryMgr::GetSpecNodeCount() const {
    return static_cast<int>(specNodes_.size());
}

const KyCategoryNode* KyEntityCategoryMgr::GetSpecNode(int i) const {
    return ValidAt(specNodes_, i, eNodeZhuanye);
}

const KyCategoryNode* KyEntityCategoryMgr::GetSpecNode(const std::wstring& name) const {
    const int index = GetSpecNodeIndexByName(name);
    return index < 0 ? nullptr : &specNodes_[static_cast<std::size_t>(index)];
}

int KyEntityCategoryMgr::GetSpecNodeIndexByName(const std::wstring& name) const {
    const auto found =
        std::find_if(specNodes_.begin(), specNodes_.end(), [&name](const KyCategoryNode& node) {
            return node.type == eNodeZhuanye && node.name == name;
        });
    return found == specNodes_.end() ? -1 : static_cast<int>(found - specNodes_.begin());
}

int KyEntityCategoryMgr::GetDaLeiNodeCount(int i) const {
    return CountOf(GetSpecNode(i));
}

const KyCategoryNode* KyEntityCategoryMgr::GetDaLeiNode(int i, int j) const {
    const KyCategoryNode* specialty = GetSpecNode(i);
    return specialty ? ValidAt(specialty->children, j, eNodeDaLei) : nullptr;
}

int KyEntityCategoryMgr::GetXiaoLeiNodeCount(int i, int j) const {
    return CountOf(GetDaLeiNode(i, j));
}

const KyCategoryNode* KyEntityCategoryMgr::GetXiaoLeiNode(int i, int j, int k) const {
    const KyCategoryNode* dalei = GetDaLeiNode(i, j);
    return dalei ? ValidAt(dalei->children, k, eNodeXiaoLei) : nullptr;
}

bool KyEntityCategoryMgr::InitTreeControl(ITreeControl* tree, HTREEITEM parent,
                                          const std::vector<std::wstring>* specs) const {
    if (!tree) return false;
    for (const KyCategoryNode& specialty : specNodes_) {
        if (IsWanted(specialty.name, specs)) InsertNode(*tree, parent, specialty, eNodeZhuanye);
    }
    return true;
}

void KyEntityCategoryMgr::LoadConfig() {
    const std::wstring path = BASETOOLS::GetSysRoot() + L"config\\system\\productsort.xml";
    TreePtr xml(CXMLTreeCreator::Allocate());
    if (!xml || !xml->LoadFile(path) || !xml->GotoChildByTag(L"root")) return;
    specNodes_.resize(static_cast<std::size_t>(xml->GetChildCountByTag(L"zhuanye")));
    for (std::size_t i = 0; i < specNodes_.size(); ++i) {
        xml->GotoCountedChild(static_cast<int>(i));
        AnalyseNode(xml, eNodeZhuanye, specNodes_[i]);
        xml->GotoParent();
        RemoveTeklaMinorKinds(specNodes_[i]);
    }
}

void KyEntityCategoryMgr::AnalyseNode(TreePtr& xml, EnumNodeType level, KyCategoryNode& node) {
    if (!xml || level == eNodeNone) return;
    node.type = level;
    xml->GetAttribute(L"name", node.name);
    const wchar_t* childTag = ChildTag(level);
    if (!childTag) return;
    node.children.resize(static_cast<std::size_t>(xml->GetChildCountByTag(childTag)));
    for (std::size_t i = 0; i < node.children.size(); ++i) {
        xml->GotoCountedChild(static_cast<int>(i));
        AnalyseNode(xml, NextLevel(level), node.children[i]);
        xml->GotoParent();
    }
}

}  // namespace KYCOLLISION::MODEL
