// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CThreeStateTree.h"

const CRuntimeClass CThreeStateTree::classCThreeStateTree{"CThreeStateTree",
                                                          &CTreeCtrl::classCTreeCtrl};

// The view, its delegate and accessibility all change a check box through the item's data. The
// item turns that into a request; the tree alone writes states.
class CThreeStateTree::Item : public QTreeWidgetItem {
  public:
    explicit Item(CThreeStateTree& tree) : tree_(tree) {
        setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        Write(Qt::Unchecked);
    }

    void setData(int column, int role, const QVariant& value) override {
        if (column == 0 && role == Qt::CheckStateRole) {
            tree_.RequestCheck(*this, value.toInt() != Qt::Unchecked);
        } else {
            QTreeWidgetItem::setData(column, role, value);
        }
    }

    void Write(Qt::CheckState state) { QTreeWidgetItem::setData(0, Qt::CheckStateRole, state); }

  private:
    CThreeStateTree& tree_;
};

namespace {

Qt::CheckState StateOf(const QTreeWidgetItem& item) {
    return item.checkState(0);
}

// What a parent shows for its children; it has at least one.
Qt::CheckState Summary(const QTreeWidgetItem& parent) {
    const Qt::CheckState first = StateOf(*parent.child(0));
    for (int i = 1; i < parent.childCount(); ++i) {
        if (StateOf(*parent.child(i)) != first) return Qt::PartiallyChecked;
    }
    return first;
}

}  // namespace

CThreeStateTree::CThreeStateTree(QWidget* parent) : CTreeCtrl(parent) {}

QTreeWidgetItem* CThreeStateTree::NewItem() {
    return new Item(*this);
}

void CThreeStateTree::OnItemInserted(QTreeWidgetItem* item) {
    const QTreeWidgetItem* parent = item->parent();
    if (parent != nullptr && StateOf(*parent) == Qt::Checked) {
        static_cast<Item*>(item)->Write(Qt::Checked);
    }
}

// A style draws the frame of a box in a darker shade of the window's colour. On a dark ground that
// cannot be seen, and an unchecked box is nothing but its frame.
void CThreeStateTree::initViewItemOption(QStyleOptionViewItem* option) const {
    CTreeCtrl::initViewItemOption(option);
    const QColor text = option->palette.color(QPalette::Text);
    if (qGray(text.rgb()) > qGray(option->palette.color(QPalette::Base).rgb()))
        option->palette.setColor(QPalette::Window, text);
}

CThreeStateTree::CheckState CThreeStateTree::GetCheckState(HTREEITEM item) const {
    if (item == nullptr) return CheckState::kUnchecked;
    switch (StateOf(*ToWidgetItem(item))) {
        case Qt::Checked:
            return CheckState::kChecked;
        case Qt::PartiallyChecked:
            return CheckState::kPartial;
        default:
            return CheckState::kUnchecked;
    }
}

bool CThreeStateTree::SetCheck(HTREEITEM item, bool checked) {
    if (item == nullptr) return false;
    ApplyCheck(*ToWidgetItem(item), checked);
    return true;
}

bool CThreeStateTree::NeedAction(HTREEITEM /*item*/, bool /*checked*/) {
    return true;
}

void CThreeStateTree::RequestCheck(Item& item, bool checked) {
    if (NeedAction(ToHandle(&item), checked)) ApplyCheck(item, checked);
}

namespace {

template <class Item>
void WriteDown(QTreeWidgetItem& item, Qt::CheckState state) {
    static_cast<Item&>(item).Write(state);
    for (int i = 0; i < item.childCount(); ++i)
        WriteDown<Item>(*item.child(i), state);
}

template <class Item>
void WriteUp(QTreeWidgetItem* parent) {
    for (; parent != nullptr; parent = parent->parent()) {
        if (parent->childCount() > 0) static_cast<Item*>(parent)->Write(Summary(*parent));
    }
}

}  // namespace

void CThreeStateTree::ApplyCheck(QTreeWidgetItem& item, bool checked) {
    WriteDown<Item>(item, checked ? Qt::Checked : Qt::Unchecked);
    WriteUp<Item>(item.parent());
    emit CheckChanged(ToHandle(&item));
}

bool CThreeStateTree::DeleteItem(HTREEITEM item) {
    QTreeWidgetItem* parent = item == nullptr ? nullptr : ToWidgetItem(item)->parent();
    const bool deleted = CTreeCtrl::DeleteItem(item);
    WriteUp<Item>(parent);
    return deleted;
}
