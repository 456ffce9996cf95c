// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CTreeCtrl.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QTreeWidgetItemIterator>

const CRuntimeClass CTreeCtrl::classCTreeCtrl{"CTreeCtrl", &CWnd::classCWnd};

namespace {

QTreeWidgetItem* Sibling(const QTreeWidget& tree, QTreeWidgetItem* item, int step) {
    if (QTreeWidgetItem* parent = item->parent()) {
        return parent->child(parent->indexOfChild(item) + step);
    }
    return tree.topLevelItem(tree.indexOfTopLevelItem(item) + step);
}

}  // namespace

CTreeCtrl::CTreeCtrl(QWidget* parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setUniformRowHeights(true);
}

QTreeWidgetItem* CTreeCtrl::ToWidgetItem(HTREEITEM item) {
    return reinterpret_cast<QTreeWidgetItem*>(item);
}

HTREEITEM CTreeCtrl::ToHandle(const QTreeWidgetItem* item) {
    return reinterpret_cast<HTREEITEM>(const_cast<QTreeWidgetItem*>(item));
}

HTREEITEM CTreeCtrl::InsertItem(const std::wstring& text, HTREEITEM parent) {
    QTreeWidgetItem* above = ToWidgetItem(parent);
    if (above != nullptr && above->treeWidget() != this) return nullptr;
    QTreeWidgetItem* item = NewItem();
    item->setText(0, QString::fromStdWString(text));
    if (above != nullptr) {
        above->addChild(item);
    } else {
        addTopLevelItem(item);
    }
    OnItemInserted(item);
    return ToHandle(item);
}

QTreeWidgetItem* CTreeCtrl::NewItem() {
    return new QTreeWidgetItem;
}

void CTreeCtrl::OnItemInserted(QTreeWidgetItem* /*item*/) {}

bool CTreeCtrl::DeleteItem(HTREEITEM item) {
    delete ToWidgetItem(item);
    return item != nullptr;
}

void CTreeCtrl::DeleteAllItems() {
    clear();
}

HTREEITEM CTreeCtrl::GetNextItem(HTREEITEM item, UINT code) const {
    if (code == TVGN_ROOT) return ToHandle(topLevelItem(0));
    QTreeWidgetItem* from = ToWidgetItem(item);
    if (from == nullptr) return nullptr;
    switch (code) {
        case TVGN_NEXT:
            return ToHandle(Sibling(*this, from, 1));
        case TVGN_PREVIOUS:
            return ToHandle(Sibling(*this, from, -1));
        case TVGN_PARENT:
            return ToHandle(from->parent());
        case TVGN_CHILD:
            return ToHandle(from->child(0));
        default:
            return nullptr;
    }
}

bool CTreeCtrl::ItemHasChildren(HTREEITEM item) const {
    return item != nullptr && ToWidgetItem(item)->childCount() > 0;
}

UINT CTreeCtrl::GetItemState(HTREEITEM item, UINT mask) const {
    if (item == nullptr) return 0;
    UINT state = 0;
    if (ToWidgetItem(item)->isExpanded()) state |= TVIS_EXPANDED;
    if (ToWidgetItem(item)->isSelected()) state |= TVIS_SELECTED;
    return state & mask;
}

CString CTreeCtrl::GetItemText(HTREEITEM item) const {
    return item == nullptr ? CString() : ToWidgetItem(item)->text(0).toStdWString();
}

bool CTreeCtrl::SetItemText(HTREEITEM item, const std::wstring& text) {
    if (item == nullptr) return false;
    ToWidgetItem(item)->setText(0, QString::fromStdWString(text));
    return true;
}

bool CTreeCtrl::Expand(HTREEITEM item, UINT code) {
    // A leaf must not remember that it was opened: it would show children that it gets later.
    if (!ItemHasChildren(item)) return false;
    QTreeWidgetItem* branch = ToWidgetItem(item);
    switch (code) {
        case TVE_COLLAPSE:
            branch->setExpanded(false);
            return true;
        case TVE_EXPAND:
            branch->setExpanded(true);
            return true;
        case TVE_TOGGLE:
            branch->setExpanded(!branch->isExpanded());
            return true;
        default:
            return false;
    }
}

bool CTreeCtrl::SelectItem(HTREEITEM item) {
    setCurrentItem(ToWidgetItem(item));
    return true;
}

HTREEITEM CTreeCtrl::GetSelectedItem() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    return selected.isEmpty() ? nullptr : ToHandle(selected.front());
}

UINT CTreeCtrl::GetCount() const {
    UINT count = 0;
    for (QTreeWidgetItemIterator each(const_cast<CTreeCtrl*>(this)); *each != nullptr; ++each)
        ++count;
    return count;
}

void CTreeCtrl::GetWindowRect(RECT* rect) const {
    const QRect frame(mapToGlobal(QPoint(0, 0)), size());
    *rect = {frame.left(), frame.top(), frame.left() + frame.width(), frame.top() + frame.height()};
}

LRESULT CTreeCtrl::DefWindowProc(UINT message, UINT_PTR parameter, void* argument) {
    if (message == WM_VSCROLL && parameter == SB_TOP) {
        scrollToTop();
        return 0;
    }
    return CWnd::DefWindowProc(message, parameter, argument);
}
