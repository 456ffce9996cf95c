// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/widgets/CTreeCtrl.h"

/// A tree with a check box before each item; a parent shows whether all, some or none of the items
/// below it are checked.
///
/// A click on the box, or the space bar on the current item, checks an unchecked or partly checked
/// item and unchecks a checked one. A change goes to everything below the item, and the ancestors
/// follow. Before a change that comes from the user (or from assistive technology) is made,
/// NeedAction is asked, once, for the item acted on; what the program itself asks for by SetCheck
/// is done without asking.
///
/// A new item is unchecked, except below a checked parent, which it keeps checked.
class KYCB_UI_API CThreeStateTree : public CTreeCtrl {
    Q_OBJECT

  public:
    static const CRuntimeClass classCThreeStateTree;

    enum class CheckState { kUnchecked, kPartial, kChecked };

    explicit CThreeStateTree(QWidget* parent = nullptr);

    const CRuntimeClass* GetRuntimeClass() const override { return &classCThreeStateTree; }

    /// kUnchecked for null.
    CheckState GetCheckState(HTREEITEM item) const;

    /// Checks or unchecks an item with everything below it. False for null.
    bool SetCheck(HTREEITEM item, bool checked);

    bool DeleteItem(HTREEITEM item) override;

  signals:
    /// An item was checked or unchecked, by the user or by SetCheck; sent once a change, after all
    /// items have their new state.
    void CheckChanged(HTREEITEM item);

  protected:
    /// Whether the user may check (`checked`) or uncheck `item` now; true unless overridden.
    virtual bool NeedAction(HTREEITEM item, bool checked);

    QTreeWidgetItem* NewItem() override;
    void OnItemInserted(QTreeWidgetItem* item) override;
    void initViewItemOption(QStyleOptionViewItem* option) const override;

  private:
    class Item;

    void RequestCheck(Item& item, bool checked);
    void ApplyCheck(QTreeWidgetItem& item, bool checked);
};
