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
      filter_(new FilterBar(names, this)),
      model_(new ResultModel(session, names, this)),
      list_(new ResultList(this)),
      counts_(new QLabel(this)) {
    list_->setObjectName("results");
    list_->SetResultModel(model_);
    counts_->setObjectName("counts");
    counts_->setTextFormat(Qt::RichText);
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
    // A reset forgets the current row without a word.
    connect(model_, &ResultModel::modelReset, this, &ResultPane::CurrentChanged);
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &ResultPane::CurrentChanged);
}

void ResultPane::Reload() {
    model_->Reload();
    filter_->SetChoices(model_->Rows());
    model_->SetFilter(filter_->Filter());
    ShowCounts();
}

bool ResultPane::HasResults() const {
    return model_->Rows().TotalCount() > 0;
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
