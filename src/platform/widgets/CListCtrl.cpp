// SPDX-License-Identifier: Apache-2.0
#include "KYCollisionBase/platform/widgets/CListCtrl.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QTextDocument>
#include <QToolTip>
#include <algorithm>
#include <vector>

const CRuntimeClass CListCtrl::classCListCtrl{"CListCtrl", &CWnd::classCWnd};

// The model behind InsertColumn and InsertItem: plain texts.
class CListCtrl::TextModel : public QAbstractTableModel {
  public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(rows_.size());
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(headings_.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (role != Qt::DisplayRole || !index.isValid()) return {};
        const Row& row = rows_[static_cast<std::size_t>(index.row())];
        const auto column = static_cast<std::size_t>(index.column());
        return column < row.size() ? row[column] : QString();
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
        return headings_.at(static_cast<std::size_t>(section));
    }

    void AddColumn(int index, const QString& heading) {
        beginInsertColumns({}, index, index);
        headings_.insert(headings_.begin() + index, heading);
        for (Row& row : rows_) {
            if (row.size() > static_cast<std::size_t>(index))
                row.insert(row.begin() + index, QString());
        }
        endInsertColumns();
    }

    void AddRow(int row, const QString& text) {
        beginInsertRows({}, row, row);
        rows_.insert(rows_.begin() + row, Row{text});
        endInsertRows();
    }

    bool SetText(int row, int column, const QString& text) {
        const QModelIndex cell = index(row, column);
        if (!cell.isValid()) return false;
        Row& texts = rows_[static_cast<std::size_t>(row)];
        texts.resize(std::max(texts.size(), static_cast<std::size_t>(column) + 1));
        texts[static_cast<std::size_t>(column)] = text;
        emit dataChanged(cell, cell);
        return true;
    }

    bool Remove(int row) {
        if (row < 0 || row >= rowCount()) return false;
        beginRemoveRows({}, row, row);
        rows_.erase(rows_.begin() + row);
        endRemoveRows();
        return true;
    }

    void Clear() {
        beginResetModel();
        rows_.clear();
        endResetModel();
    }

  private:
    using Row = std::vector<QString>;

    std::vector<QString> headings_;
    std::vector<Row> rows_;
};

namespace {

// An index outside means "behind the last".
int InsertPlace(int index, int count) {
    return index < 0 || index > count ? count : index;
}

// A tooltip takes a text that looks like markup for markup, unless it is quoted.
QString AsPlainText(const QString& text) {
    return Qt::mightBeRichText(text) ? "<span>" + text.toHtmlEscaped() + "</span>" : text;
}

}  // namespace

CListCtrl::CListCtrl(QWidget* parent) : QTableView(parent), textModel_(new TextModel(this)) {
    setSelectionBehavior(SelectRows);
    setWordWrap(false);
    setShowGrid(false);
    setTabKeyNavigation(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(1);
    CListCtrl::setModel(textModel_);
    verticalHeader()->setDefaultSectionSize(OwnRowHeight());
}

void CListCtrl::setModel(QAbstractItemModel* model) {
    QTableView::setModel(model);
}

CListCtrl::TextModel* CListCtrl::OwnModel() const {
    return model() == textModel_ ? textModel_ : nullptr;
}

int CListCtrl::InsertColumn(int index, const std::wstring& heading, int width) {
    TextModel* own = OwnModel();
    if (own == nullptr) return -1;
    const int place = InsertPlace(index, own->columnCount());
    own->AddColumn(place, QString::fromStdWString(heading));
    if (width > 0) setColumnWidth(place, width);
    return place;
}

int CListCtrl::InsertItem(int row, const std::wstring& text) {
    TextModel* own = OwnModel();
    if (own == nullptr) return -1;
    const int place = InsertPlace(row, own->rowCount());
    own->AddRow(place, QString::fromStdWString(text));
    return place;
}

bool CListCtrl::SetItemText(int row, int column, const std::wstring& text) {
    TextModel* own = OwnModel();
    return own != nullptr && own->SetText(row, column, QString::fromStdWString(text));
}

bool CListCtrl::DeleteItem(int row) {
    TextModel* own = OwnModel();
    return own != nullptr && own->Remove(row);
}

bool CListCtrl::DeleteAllItems() {
    TextModel* own = OwnModel();
    if (own != nullptr) own->Clear();
    return own != nullptr;
}

int CListCtrl::GetItemCount() const {
    return model() == nullptr ? 0 : model()->rowCount();
}

CString CListCtrl::GetItemText(int row, int column) const {
    if (model() == nullptr) return {};
    return model()->index(row, column).data(Qt::DisplayRole).toString().toStdWString();
}

int CListCtrl::SubItemHitTest(LVHITTESTINFO* info) const {
    const QPoint point(info->pt.x, info->pt.y);
    const QModelIndex cell = viewport()->rect().contains(point) ? indexAt(point) : QModelIndex();
    info->iItem = cell.isValid() ? cell.row() : -1;
    info->iSubItem = cell.isValid() ? cell.column() : -1;
    info->flags = LVHT_NOWHERE;
    if (!cell.isValid()) return -1;

    QStyleOptionViewItem option;
    initViewItemOption(&option);
    option.rect = visualRect(cell);
    if (cell.flags().testFlag(Qt::ItemIsUserCheckable)) {
        option.features |= QStyleOptionViewItem::HasCheckIndicator;
    }
    const QVariant decoration = cell.data(Qt::DecorationRole);
    if (decoration.isValid()) {
        option.features |= QStyleOptionViewItem::HasDecoration;
    }
    option.showDecorationSelected = true;
    const QRect label = style()->subElementRect(QStyle::SE_ItemViewItemText, &option, this);
    info->flags = label.contains(point) ? LVHT_ONITEMLABEL : LVHT_ONITEMICON;
    return info->iItem;
}

POINT CListCtrl::GetMessagePos() const {
    return {messagePos_.x(), messagePos_.y()};
}

void CListCtrl::ScreenToClient(POINT* point) const {
    const QPoint client = viewport()->mapFromGlobal(QPoint(point->x, point->y));
    *point = {client.x(), client.y()};
}

void CListCtrl::GetWindowRect(RECT* rect) const {
    const QPoint corner = mapToGlobal(QPoint(0, 0));
    *rect = {corner.x(), corner.y(), corner.x() + width(), corner.y() + height()};
}

LRESULT CListCtrl::DefWindowProc(UINT message, UINT_PTR parameter, void* argument) {
    if (message == WM_WINDOWPOSCHANGED) {
        MeasureRows();
        return 0;
    }
    return CWnd::DefWindowProc(message, parameter, argument);
}

int CListCtrl::OwnRowHeight() const {
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameVMargin, nullptr, this) + 1;
    return fontMetrics().height() + 2 * margin + 2;
}

void CListCtrl::MeasureRows() {
    MEASUREITEMSTRUCT measure;
    measure.itemHeight = static_cast<UINT>(OwnRowHeight());
    SendMessage(WM_MEASUREITEM, 0, &measure);
    verticalHeader()->setDefaultSectionSize(static_cast<int>(measure.itemHeight));
}

void CListCtrl::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) MeasureRows();
}

bool CListCtrl::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        messagePos_ = static_cast<QHelpEvent*>(event)->globalPos();
        if (ShowToolTip(messagePos_)) return true;
    } else if (const auto* mouse = dynamic_cast<QMouseEvent*>(event)) {
        messagePos_ = mouse->globalPosition().toPoint();
    }
    return QTableView::viewportEvent(event);
}

bool CListCtrl::ShowToolTip(const QPoint& globalPos) {
    TOOLTIPTEXTW question;
    question.hdr = {this, 0, TTN_NEEDTEXTW};
    question.lpszText = question.szText;
    if (SendMessage(WM_NOTIFY, 0, &question) == 0) return false;
    const QModelIndex cell = indexAt(viewport()->mapFromGlobal(globalPos));
    QToolTip::showText(globalPos, AsPlainText(QString::fromWCharArray(question.lpszText)),
                       viewport(), visualRect(cell));
    return true;
}
