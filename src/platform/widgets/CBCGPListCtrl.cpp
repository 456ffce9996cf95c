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
        list_.PrepareCell(*option, index);
    }

  private:
    CBCGPListCtrl& list_;
};

// Without it "0~2900" would be turned round to "2900~0", and a text that is cut off would lose its
// beginning.
QString IsolatedFromRightToLeft(const QString& text) {
    return QChar(0x2066) + text + QChar(0x2069);
}

}  // namespace

CBCGPListCtrl::CBCGPListCtrl(QWidget* parent) : CListCtrl(parent) {
    setItemDelegate(new CellTextDelegate(*this));
}

void CBCGPListCtrl::PrepareCell(QStyleOptionViewItem& option, const QModelIndex& index) {
    const COLORREF color = OnGetCellTextColor(index.row(), index.column());
    option.palette.setColor(QPalette::Text,
                            QColor(GetRValue(color), GetGValue(color), GetBValue(color)));
    if (option.direction == Qt::RightToLeft && !option.text.isEmpty() &&
        !option.text.isRightToLeft()) {
        option.text = IsolatedFromRightToLeft(option.text);
    }
}

COLORREF CBCGPListCtrl::OnGetCellTextColor(int /*row*/, int /*column*/) {
    const QColor text = palette().color(QPalette::Text);
    return RGB(static_cast<std::uint8_t>(text.red()), static_cast<std::uint8_t>(text.green()),
               static_cast<std::uint8_t>(text.blue()));
}
