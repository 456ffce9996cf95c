// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

#include "desk/core/ResultMerge.h"
#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

class QLabel;
class QModelIndex;

namespace desk {

class FilterBar;
class ResultList;
class ResultModel;

/// The page of the results: what they are filtered by, the list, and how many there are.
class ResultPane : public QWidget {
    Q_OBJECT

  public:
    ResultPane(Session& session, const KindNames& names, QWidget* parent = nullptr);

    /// Takes the session's results anew. The current one stays it, where the same components clash
    /// again.
    void Reload();
    bool HasResults() const;
    /// Takes over what is being typed into the list.
    void FinishEditing();
    /// Takes no edits any more, or again.
    void SetReadOnly(bool readOnly);
    /// The result on the current row; null without one.
    Session::Item* Current() const;

    /// Goes to the field that searches the list.
    void StartSearch();

    /// Order and widths of the columns.
    QByteArray ColumnLayout() const;
    void RestoreColumnLayout(const QByteArray& layout);

  signals:
    /// Another result is the current one, or none is.
    void CurrentChanged();
    /// A state or a remark was changed.
    void Edited();

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void NoteCurrent(const QModelIndex& index);
    void RestoreCurrent();
    void ShowCounts();
    void ShowHint();

    Session& session_;
    FilterBar* filter_;
    ResultModel* model_;
    ResultList* list_;
    QLabel* counts_;
    QLabel* hint_;
    // What the current row was; a reset of the model forgets it.
    Session::Item* current_ = nullptr;
    PairKey pair_;
    int column_ = 0;
};

}  // namespace desk
