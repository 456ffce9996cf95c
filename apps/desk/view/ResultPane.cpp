// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ResultPane.h"

#include <QEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "desk/view/FilterBar.h"
#include "desk/view/ResultList.h"
#include "desk/view/ResultModel.h"
#include "desk/view/SceneColors.h"
#include "desk/view/StateNames.h"

namespace desk {

ResultPane::ResultPane(Session& session, const KindNames& names, QWidget* parent)
    : QWidget(parent),
      session_(session),
      filter_(new FilterBar(names, this)),
      model_(new ResultModel(session, names, this)),
      list_(new ResultList(this)),
      counts_(new QLabel(this)),
      hint_(new QLabel(list_->viewport())) {
    list_->setObjectName("results");
    list_->SetResultModel(model_);
    counts_->setObjectName("counts");
    counts_->setTextFormat(Qt::RichText);
    hint_->setObjectName("resultHint");
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setWordWrap(true);
    hint_->setForegroundRole(QPalette::PlaceholderText);
    hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* paper = new QVBoxLayout(list_->viewport());
    paper->addWidget(hint_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(filter_);
    column->addWidget(list_, 1);
    column->addWidget(counts_);

    connect(filter_, &FilterBar::Changed, this, [this] {
        model_->SetFilter(filter_->Filter());
        ShowCounts();
    });
    connect(model_, &ResultModel::Edited, this, [this] {
        ShowCounts();
        emit Edited();
    });
    connect(model_, &ResultModel::modelReset, this, &ResultPane::RestoreCurrent);
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &ResultPane::NoteCurrent);
    ShowHint();
}

void ResultPane::Reload() {
    current_ = nullptr;  // may be gone
    model_->Reload();
    filter_->SetChoices(model_->Rows());
    model_->SetFilter(filter_->Filter());
    ShowCounts();
}

void ResultPane::NoteCurrent(const QModelIndex& index) {
    column_ = index.column();
    Session::Item* item = Current();
    if (item == current_) return;
    current_ = item;
    pair_ = item == nullptr ? PairKey() : PairOf(*item);
    emit CurrentChanged();
}

// After another filter or order the same result is the current one, after a run the same pair.
void ResultPane::RestoreCurrent() {
    const ResultRows& rows = model_->Rows();
    std::optional<std::size_t> row;
    if (current_ != nullptr) {
        row = rows.RowOf(current_);
    } else if (pair_ != PairKey()) {
        row = rows.RowOf(pair_);
    }
    if (row) {
        list_->setCurrentIndex(model_->index(static_cast<int>(*row), column_));
        return;
    }
    current_ = nullptr;
    pair_ = {};
    emit CurrentChanged();
}

bool ResultPane::HasResults() const {
    return model_->Rows().TotalCount() > 0;
}

void ResultPane::FinishEditing() {
    list_->FinishEditing();
}

void ResultPane::SetReadOnly(bool readOnly) {
    model_->SetReadOnly(readOnly);
}

Session::Item* ResultPane::Current() const {
    const QModelIndex current = list_->currentIndex();
    if (!current.isValid()) return nullptr;
    return &model_->Rows().At(static_cast<std::size_t>(current.row()));
}

void ResultPane::StartSearch() {
    auto* text = filter_->findChild<QLineEdit*>("filterText");
    text->setFocus();
    text->selectAll();
}

void ResultPane::ShowCounts() {
    const ResultRows& rows = model_->Rows();
    QStringList parts;
    parts << (rows.Count() == rows.TotalCount()
                  ? tr("Clashes: <b>%L1</b>").arg(rows.Count())
                  : tr("Clashes: <b>%L1</b> of %L2").arg(rows.Count()).arg(rows.TotalCount()));
    for (const auto& [state, count] : rows.CountByState()) {
        parts << QStringLiteral("<span style='color:%1'>%2: %L3</span>")
                     .arg(StateColor(state, palette()).name(), StateName(state).toHtmlEscaped())
                     .arg(count);
    }
    counts_->setText(parts.join(QStringLiteral(" &nbsp;&middot;&nbsp; ")));
    ShowHint();
}

// In place of rows, why there are none.
void ResultPane::ShowHint() {
    const ResultRows& rows = model_->Rows();
    hint_->setVisible(rows.Count() == 0);
    if (rows.TotalCount() > 0) {
        hint_->setText(tr("No clash passes the filters."));
    } else if (session_.IsModified() || session_.ResultFile()) {
        hint_->setText(tr("No clashes were found."));
    } else if (session_.Workset() != nullptr) {
        hint_->setText(tr("Choose what to check on the left, and run the check."));
    } else {
        hint_->setText(tr("Open models, or the results of an earlier check."));
    }
}

QByteArray ResultPane::ColumnLayout() const {
    return list_->horizontalHeader()->saveState();
}

void ResultPane::RestoreColumnLayout(const QByteArray& layout) {
    list_->horizontalHeader()->restoreState(layout);
}

void ResultPane::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) ShowCounts();
}

}  // namespace desk
