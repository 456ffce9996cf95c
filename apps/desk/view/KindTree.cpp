// SPDX-License-Identifier: Apache-2.0
#include "desk/view/KindTree.h"

#include "KYCollisionBase/model/KyEntityCategoryMgr.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeWidgetItemIterator>

namespace desk {
namespace {

using KYCOLLISION::MODEL::AttCategory;
using KYCOLLISION::MODEL::KyEntityCategoryMgr;

constexpr int kCountColumn = 1;

// The items hold the names of the category tree; on the screen they are translated.
class NameDelegate : public QStyledItemDelegate {
  public:
    NameDelegate(const KindNames& names, QObject* parent)
        : QStyledItemDelegate(parent), names_(names) {}

    QString displayText(const QVariant& value, const QLocale&) const override {
        return names_.Name(value.toString().toStdWString());
    }

  private:
    const KindNames& names_;
};

}  // namespace

KindTree::KindTree(const KindNames& names, QWidget* parent)
    : KyCustomTreeCtrl(parent), names_(names) {
    setColumnCount(2);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(kCountColumn, QHeaderView::ResizeToContents);
    setItemDelegateForColumn(0, new NameDelegate(names_, this));
    setTextElideMode(Qt::ElideRight);
    setAccessibleName(tr("Kinds that take part"));
}

HTREEITEM KindTree::FindOrInsert(HTREEITEM parent, const std::wstring& text) {
    for (HTREEITEM child = GetChildItem(parent); child != nullptr;
         child = GetNextSiblingItem(child)) {
        if (GetItemText(child) == text) return child;
    }
    return InsertItem(text, parent);
}

void KindTree::AddCount(HTREEITEM item, std::size_t count) {
    for (; item != nullptr; item = GetParentItem(item)) {
        QTreeWidgetItem* shown = ToWidgetItem(item);
        const qulonglong sum = shown->data(kCountColumn, Qt::DisplayRole).toULongLong() + count;
        shown->setData(kCountColumn, Qt::DisplayRole, sum);
        shown->setTextAlignment(kCountColumn, Qt::AlignTrailing | Qt::AlignVCenter);
        shown->setHidden(false);
    }
}

void KindTree::SetKinds(const std::vector<KindCount>& kinds) {
    DeleteAllItems();
    leaves_.clear();
    if (kinds.empty()) return;
    // One item above all specialties: opening and closing by level works below the first item.
    const HTREEITEM root = InsertItem(tr("All kinds").toStdWString(), nullptr);
    KyEntityCategoryMgr::GetInstance()->InitTreeControl(this, root, nullptr);
    for (QTreeWidgetItemIterator each(this); *each != nullptr; ++each)
        (*each)->setHidden(true);
    for (const KindCount& each : kinds) {
        AttCategory kind = each.kind;
        HTREEITEM item = FindOrInsert(FindOrInsert(root, kind.specialty), kind.dalei);
        if (!kind.xiaolei.empty()) item = FindOrInsert(item, kind.xiaolei);
        AddCount(item, each.count);
        leaves_.emplace_back(item, kind.categoryIndex());
    }
    SetCheck(root, true);
    ExpandByLevel(true);
}

std::vector<std::wstring> KindTree::CheckedKinds() const {
    std::vector<std::wstring> kinds;
    for (const auto& [item, path] : leaves_) {
        if (GetCheckState(item) == CheckState::kChecked) kinds.push_back(path);
    }
    return kinds;
}

}  // namespace desk
