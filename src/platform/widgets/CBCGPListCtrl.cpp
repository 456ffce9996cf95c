// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CBCGPListCtrl.h"

#include <QStyledItemDelegate>

const CRuntimeClass CBCGPListCtrl::classCBCGPListCtrl{"CBCGPListCtrl", &CListCtrl::classCListCtrl};

namespace {

class CellTextDelegate : public QStyledItemDelegate {
  public:
    explicit CellTextDelegate(CBCGPListCtrl& list) : QStyledItemDelegate(&list), list_(list) {}

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        const COLORREF color = list_.OnGetCellTextColor(index.row(), index.column());
        option->palette.setColor(QPalette::Text,
                                 QColor(GetRValue(color), GetGValue(color), GetBValue(color)));
    }

  private:
    CBCGPListCtrl& list_;
};

}  // namespace

CBCGPListCtrl::CBCGPListCtrl(QWidget* parent) : CListCtrl(parent) {
    setItemDelegate(new CellTextDelegate(*this));
}

COLORREF CBCGPListCtrl::OnGetCellTextColor(int /*row*/, int /*column*/) {
    const QColor text = palette().color(QPalette::Text);
    return RGB(static_cast<std::uint8_t>(text.red()), static_cast<std::uint8_t>(text.green()),
               static_cast<std::uint8_t>(text.blue()));
}
