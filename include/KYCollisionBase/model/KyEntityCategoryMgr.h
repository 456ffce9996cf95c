// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/Export.h"
#include "KYCollisionBase/model/KyCategoryNode.h"
#include "KYCollisionBase/platform/ITreeControl.h"

#include <memory>
#include <string>
#include <vector>

class IXMLTree;

namespace kycb::xml {
struct TreeDestroyer;
}

namespace KYCOLLISION::MODEL {

/// The host product's classification of component kinds: specialties, their major categories and
/// their minor categories, in the order of the file config\system\productsort.xml under the system
/// root.
///
/// The file's element "root" holds "zhuanye" elements, which hold "dalei" elements, which hold
/// "xiaolei" elements, each with an attribute "name"; other elements are passed over. A "Tekla"
/// specialty loses its major categories "螺栓" and "项", which Tekla components count as minor
/// ones. A file that is missing or cannot be read leaves the tree empty, without a message.
///
/// A node is valid when its name is not empty; indexes count the invalid ones too. Nodes belong to
/// the tree. No query throws; an index outside gives null or 0.
///
/// Threads: the first call of GetInstance loads the file; after that everything only reads.
class KYCB_API KyEntityCategoryMgr {
  public:
    KyEntityCategoryMgr(const KyEntityCategoryMgr&) = delete;
    KyEntityCategoryMgr& operator=(const KyEntityCategoryMgr&) = delete;

    /// The process's tree, loaded on the first call and never again.
    static KyEntityCategoryMgr* GetInstance();

    /// The number of specialties, valid or not.
    int GetSpecNodeCount() const;
    /// Null for an invalid specialty.
    const KyCategoryNode* GetSpecNode(int i) const;
    /// The first specialty of this name, or null. The empty name finds one without a name, although
    /// that is invalid.
    const KyCategoryNode* GetSpecNode(const std::wstring& name) const;
    /// The index of the first specialty of this name, or -1.
    int GetSpecNodeIndexByName(const std::wstring& name) const;

    /// The number of major categories of a specialty, valid or not; 0 for an invalid specialty.
    int GetDaLeiNodeCount(int i) const;
    const KyCategoryNode* GetDaLeiNode(int i, int j) const;
    int GetXiaoLeiNodeCount(int i, int j) const;
    const KyCategoryNode* GetXiaoLeiNode(int i, int j, int k) const;

    /// Inserts the valid nodes as text items under `parent` (null: at the top level), level below
    /// level and in order; with `specs` only the specialties named in it (none, when it is empty).
    /// An item that the control refuses is left out with all below it. Nothing is expanded,
    /// selected or sorted. False only without a control.
    bool InitTreeControl(ITreeControl* tree, HTREEITEM parent,
                         const std::vector<std::wstring>* specs) const;

  protected:
    /// Loads a tree of its own; GetInstance is how hosts come by one.
    KyEntityCategoryMgr();
    ~KyEntityCategoryMgr() = default;

  private:
    using TreePtr = std::unique_ptr<IXMLTree, kycb::xml::TreeDestroyer>;

    void LoadConfig();
    void AnalyseNode(TreePtr& xml, EnumNodeType level, KyCategoryNode& node);

    std::vector<KyCategoryNode> specNodes_;
};

}  // namespace KYCOLLISION::MODEL
