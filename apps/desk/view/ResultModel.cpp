// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ResultModel.h"

#include "desk/core/Session.h"
#include "desk/view/StateNames.h"

namespace desk {
namespace {

ResultColumn ColumnOf(const QModelIndex& index) {
    return static_cast<ResultColumn>(index.column());
}

}  // namespace

ResultModel::ResultModel(Session& session, const KindNames& names, QObject* parent)
    : QAbstractTableModel(parent), session_(session), names_(names) {
    rows_.SetTranslator(
        [this](const std::wstring& name) { return names_.Name(name).toStdWString(); });
}

void ResultModel::Reload() {
    std::vector<std::wstring> floors;
    for (const SCollisionFloor& floor : session_.Floors()) {
        for (const auto& [project, name] : floor.floorKeys)
            floors.push_back(name);
    }
    SetItems(session_.Results(), floors);
}

void ResultModel::SetItems(std::vector<ResultRows::Item*> items,
                           const std::vector<std::wstring>& floorOrder) {
    beginResetModel();
    rows_.SetItems(std::move(items), floorOrder);
    endResetModel();
}

void ResultModel::SetFilter(const ResultFilter& filter) {
    beginResetModel();
    rows_.SetFilter(filter);
    endResetModel();
}

void ResultModel::sort(int column, Qt::SortOrder direction) {
    ResultOrder order;
    if (column >= 0) order.column = static_cast<ResultColumn>(column);
    if (direction == Qt::DescendingOrder && column >= 0)
        order.direction = SortDirection::kDescending;
    if (order == rows_.Order()) return;
    beginResetModel();
    rows_.SetOrder(order);
    endResetModel();
}

bool ResultModel::IsEditable(const QModelIndex& index) const {
    if (!index.isValid() || readOnly_) return false;
    const ResultColumn column = ColumnOf(index);
    return column == ResultColumn::kState || column == ResultColumn::kRemark;
}

int ResultModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.Count());
}

int ResultModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : kResultColumnCount;
}

QString ResultModel::Text(const ResultRows::Item& item, ResultColumn column) const {
    switch (column) {
        case ResultColumn::kState:
            return StateName(item.GetDisposeState());
        case ResultColumn::kMainKind:
            return names_.Name(KindText(item.GetAttInfoA()));
        case ResultColumn::kSecondKind:
            return names_.Name(KindText(item.GetAttInfoB()));
        case ResultColumn::kAxisPosition:
            return names_.Name(item.GetAxisPos());
        default:
            return QString::fromStdWString(ColumnText(item, column));
    }
}

QVariant ResultModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)) return {};
    const auto& item = rows_.At(static_cast<std::size_t>(index.row()));
    if (role == Qt::EditRole && ColumnOf(index) == ResultColumn::kState)
        return item.GetDisposeState();
    QString text = Text(item, ColumnOf(index));
    // A remark may have several lines; a row shows them one behind the other.
    if (role == Qt::DisplayRole) text.replace('\n', ' ');
    return text;
}

QVariant ResultModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
    switch (static_cast<ResultColumn>(section)) {
        case ResultColumn::kState:
            return tr("State");
        case ResultColumn::kFloor:
            return tr("Floor");
        case ResultColumn::kMainKind:
            return tr("Main kind");
        case ResultColumn::kMainName:
            return tr("Main component");
        case ResultColumn::kSecondKind:
            return tr("Second kind");
        case ResultColumn::kSecondName:
            return tr("Second component");
        case ResultColumn::kMainHeight:
            return tr("Main height");
        case ResultColumn::kSecondHeight:
            return tr("Second height");
        case ResultColumn::kAxisPosition:
            return tr("Axis position");
        case ResultColumn::kRemark:
            return tr("Remark");
    }
    return {};
}

Qt::ItemFlags ResultModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (IsEditable(index)) flags |= Qt::ItemIsEditable;
    return flags;
}

bool ResultModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !IsEditable(index)) return false;
    const auto row = static_cast<std::size_t>(index.row());
    ResultRows::Item& item = rows_.At(row);
    if (ColumnOf(index) == ResultColumn::kState) {
        session_.SetDisposeState(item, value.toInt());
    } else {
        session_.SetRemark(item, value.toString().toStdWString());
    }
    rows_.NoteEdit(row);
    emit dataChanged(this->index(index.row(), 0), this->index(index.row(), kResultColumnCount - 1));
    emit Edited();
    return true;
}

}  // namespace desk
