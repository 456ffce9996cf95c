// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CThreeStateTree.h"

#include <map>
#include <vector>

/// A tree with three-state check boxes that opens or closes one level of its branches at a time.
class KYCB_UI_API KyCustomTreeCtrl : public CThreeStateTree {
    Q_OBJECT

  public:
    static const CRuntimeClass classKyCustomTreeCtrl;

    explicit KyCustomTreeCtrl(QWidget* parent = nullptr);

    const CRuntimeClass* GetRuntimeClass() const override { return &classKyCustomTreeCtrl; }

    /// Opens the next level (`expand`) or closes the deepest open one, then scrolls to the top.
    ///
    /// Only the first top-level item and what is below it take part. Opening addresses the items
    /// at the smallest depth where something is still closed or ends; closing addresses the
    /// parents of the frontier items at the largest depth (the smallest, when all have the same).
    /// The frontier is written to the debug output, depth by depth.
    virtual void ExpandByLevel(bool expand);

    /// Adds the frontier of `item`'s subtree to `levels`, by depth: every leaf and every closed
    /// branch that can be reached through open branches. Nothing for null.
    void GetExpandNodeLevel(HTREEITEM item, std::map<int, std::vector<HTREEITEM>>& levels);

    /// The texts from the top-level ancestor down to `item`, joined by "/"; empty for null.
    CString GetPathByItem(HTREEITEM item);

    /// 1 for a top-level item, 2 for its children, and so on; 0 for null.
    int GetItemLevel(HTREEITEM item);

    /// Whether the user may change check boxes; true at first.
    void SetIsValidCheck(bool isValid) { isValidCheck_ = isValid; }

  protected:
    /// The flag, whatever the item.
    bool NeedAction(HTREEITEM item, bool checked) override;

  private:
    void TraceLevels(const std::map<int, std::vector<HTREEITEM>>& levels);

    bool isValidCheck_ = true;
};
