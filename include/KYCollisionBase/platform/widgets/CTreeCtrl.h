// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/platform/ITreeControl.h"
#include "KYCollisionBase/platform/widgets/CWnd.h"

#include <QMetaType>
#include <QTreeWidget>

// Handles may be arguments of signals although what they point to is never defined.
Q_DECLARE_OPAQUE_POINTER(HTREEITEM)

/// A tree control: items with a text, in the order of their insertion.
///
/// It is a plain tree widget, so everything that the toolkit offers for one works too. Items are
/// named by handles, which stay valid until the item is deleted; using one after that, or a handle
/// of another tree as a parent's, is a caller's error (the latter is refused). The tree owns its
/// items. "No item" is the null handle: every query answers null, 0 or an empty text for it.
class KYCB_UI_API CTreeCtrl : public QTreeWidget, public CWnd, public ITreeControl {
    Q_OBJECT

  public:
    static const CRuntimeClass classCTreeCtrl;

    explicit CTreeCtrl(QWidget* parent = nullptr);

    const CRuntimeClass* GetRuntimeClass() const override { return &classCTreeCtrl; }

    /// Appends an item as the last child of `parent`, or at the top level for null; nothing is
    /// opened or selected by it. Null when `parent` belongs to another tree.
    HTREEITEM InsertItem(const std::wstring& text, HTREEITEM parent) override;

    /// Deletes an item with everything below it. False for null.
    virtual bool DeleteItem(HTREEITEM item);
    void DeleteAllItems();

    /// The item that `code` (TVGN_...) leads to from `item`; TVGN_ROOT is the first top-level item,
    /// whatever `item` says.
    HTREEITEM GetNextItem(HTREEITEM item, UINT code) const;
    HTREEITEM GetRootItem() const { return GetNextItem(nullptr, TVGN_ROOT); }
    HTREEITEM GetChildItem(HTREEITEM item) const { return GetNextItem(item, TVGN_CHILD); }
    HTREEITEM GetNextSiblingItem(HTREEITEM item) const { return GetNextItem(item, TVGN_NEXT); }
    HTREEITEM GetParentItem(HTREEITEM item) const { return GetNextItem(item, TVGN_PARENT); }

    bool ItemHasChildren(HTREEITEM item) const;
    /// The bits of `mask` (TVIS_...) that are set for the item. An item keeps being expanded while
    /// a collapsed ancestor hides it.
    UINT GetItemState(HTREEITEM item, UINT mask) const;
    CString GetItemText(HTREEITEM item) const;
    bool SetItemText(HTREEITEM item, const std::wstring& text);

    /// Opens or closes an item (TVE_...). False, with nothing done, for null and for leaves.
    bool Expand(HTREEITEM item, UINT code);

    bool SelectItem(HTREEITEM item);
    HTREEITEM GetSelectedItem() const;
    /// Number of items of all levels.
    UINT GetCount() const;

    void GetWindowRect(RECT* rect) const override;

    /// The toolkit's item behind a handle, and back.
    static QTreeWidgetItem* ToWidgetItem(HTREEITEM item);
    static HTREEITEM ToHandle(const QTreeWidgetItem* item);

  protected:
    /// A new item for InsertItem, before it has a text or a place.
    virtual QTreeWidgetItem* NewItem();
    /// Called once an item stands in its place.
    virtual void OnItemInserted(QTreeWidgetItem* item);

    LRESULT DefWindowProc(UINT message, UINT_PTR parameter, void* argument) override;
};
