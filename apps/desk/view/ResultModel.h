// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractTableModel>

#include "desk/core/ResultRows.h"
#include "desk/view/KindNames.h"

namespace desk {

class Session;

/// The rows of the result list for a table view: texts on demand, state and remark editable.
///
/// Sorting by a column is a request to the rows; column -1 is the order of priority.
class ResultModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    ResultModel(Session& session, const KindNames& names, QObject* parent);

    /// Takes all results of the session anew.
    void Reload();
    /// Takes these results; `floorOrder` ranks the names of floors, lowest first.
    void SetItems(std::vector<ResultRows::Item*> items,
                  const std::vector<std::wstring>& floorOrder);
    void SetFilter(const ResultFilter& filter);
    const ResultRows& Rows() const { return rows_; }
    /// Takes no edits any more, or again.
    void SetReadOnly(bool readOnly) { readOnly_ = readOnly; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    void sort(int column, Qt::SortOrder direction) override;

  signals:
    /// A state or a remark was changed here.
    void Edited();

  private:
    bool IsEditable(const QModelIndex& index) const;
    QString Text(const ResultRows::Item& item, ResultColumn column) const;

    Session& session_;
    const KindNames& names_;
    ResultRows rows_;
    bool readOnly_ = false;
};

}  // namespace desk
