// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ResultList.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>
#include <algorithm>

#include "desk/core/DisposeState.h"
#include "desk/view/ResultModel.h"
#include "desk/view/SceneColors.h"
#include "desk/view/StateNames.h"

namespace desk {
namespace {

constexpr int kStateColumn = static_cast<int>(ResultColumn::kState);

// Draws a state as a dot and its name, and edits it in a box with the states to choose from.
class StateDelegate : public QStyledItemDelegate {
  public:
    explicit StateDelegate(ResultList& list) : QStyledItemDelegate(&list), list_(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const int size = option.rect.height() / 3;
        const QRect dot = QStyle::visualRect(
            option.direction, option.rect,
            QRect(option.rect.left() + size, option.rect.top() + size, size, size));
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(DotColor(index.data(Qt::EditRole).toInt(), option.palette));
        painter->drawEllipse(dot);
        painter->restore();
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        auto* box = new QComboBox(parent);
        for (const DisposeState state : kDisposeStates)
            box->addItem(StateName(static_cast<int>(state)), static_cast<int>(state));
        const int current = index.data(Qt::EditRole).toInt();
        if (box->findData(current) < 0) box->addItem(StateName(current), current);
        connect(box, &QComboBox::activated, this, [this, box] {
            auto* self = const_cast<StateDelegate*>(this);
            emit self->commitData(box);
            emit self->closeEditor(box);
        });
        return box;
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* box = static_cast<QComboBox*>(editor);
        box->setCurrentIndex(box->findData(index.data(Qt::EditRole)));
    }

    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override {
        model->setData(index, static_cast<QComboBox*>(editor)->currentData(), Qt::EditRole);
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        list_.PrepareCell(*option, index);
        // Room for the dot.
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = QSize(option->rect.height() * 2 / 3, 1);
    }

  private:
    static QColor DotColor(int state, const QPalette& palette) {
        return state == static_cast<int>(DisposeState::kOpen) ? ClashPointColor()
                                                              : StateColor(state, palette);
    }

    ResultList& list_;
};

}  // namespace

ResultList::ResultList(QWidget* parent) : CCustomColorListCtrl(parent) {
    SetPaper(ListPaper::kTheme);
    setAlternatingRowColors(true);
    // What tells components of one type apart stands at the end of their names.
    setTextElideMode(Qt::ElideMiddle);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed | SelectedClicked);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegateForColumn(kStateColumn, new StateDelegate(*this));
    setAccessibleName(tr("Results"));
}

void ResultList::SetResultModel(ResultModel* model) {
    results_ = model;
    setModel(model);
    QHeaderView* header = horizontalHeader();
    header->setSectionsMovable(true);
    header->setHighlightSections(false);
    header->setStretchLastSection(true);
    header->setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    // A third click on a heading returns to the order of priority, which is the one at first.
    header->setSortIndicatorClearable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    constexpr int kCharactersOfColumn[kResultColumnCount] = {17, 9, 20, 23, 20, 23, 13, 13, 24, 26};
    for (int column = 0; column < kResultColumnCount; ++column)
        setColumnWidth(column, kCharactersOfColumn[column] * fontMetrics().averageCharWidth());
    SetRowHeight(fontMetrics().height() * 8 / 5);
}

COLORREF ResultList::OnGetCellTextColor(int row, int /*column*/) {
    if (results_ == nullptr) return 0;
    const auto& item = results_->Rows().At(static_cast<std::size_t>(row));
    const QColor color = StateColor(item.GetDisposeState(), palette());
    return RGB(static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
               static_cast<std::uint8_t>(color.blue()));
}

std::vector<int> ResultList::SelectedRows() const {
    std::vector<int> rows;
    if (selectionModel() == nullptr) return rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void ResultList::SetStateOfSelected(int state) {
    for (const int row : SelectedRows())
        model()->setData(model()->index(row, kStateColumn), state, Qt::EditRole);
}

void ResultList::FinishEditing() {
    QWidget* editor = indexWidget(currentIndex());
    if (editor == nullptr) return;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void ResultList::keyPressEvent(QKeyEvent* event) {
    const int state = event->key() - Qt::Key_0;
    const bool isState = state >= 0 && state < static_cast<int>(kDisposeStates.size());
    if (isState && event->modifiers() == Qt::NoModifier) {
        SetStateOfSelected(static_cast<int>(kDisposeStates[static_cast<std::size_t>(state)]));
    } else {
        CCustomColorListCtrl::keyPressEvent(event);
    }
}

void ResultList::contextMenuEvent(QContextMenuEvent* event) {
    if (SelectedRows().empty()) return;
    QMenu menu(this);
    for (const DisposeState state : kDisposeStates) {
        const int number = static_cast<int>(state);
        QAction* action =
            menu.addAction(QStringLiteral("%1\t%2").arg(StateName(number)).arg(number));
        connect(action, &QAction::triggered, this, [this, number] { SetStateOfSelected(number); });
    }
    menu.exec(event->globalPos());
}

}  // namespace desk
