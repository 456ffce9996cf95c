// SPDX-License-Identifier: Apache-2.0
#include "desk/view/FilterBar.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "desk/view/StateNames.h"

namespace desk {
namespace {

// A pause of this length ends a word (ms).
constexpr int kTypingPause = 200;
constexpr int kHighest = 10000000;  // mm
constexpr const char* kSeparator = "\n";

QComboBox* NewChoice(QWidget& parent, const char* name, const QString& label) {
    auto* box = new QComboBox(&parent);
    box->setObjectName(name);
    box->setAccessibleName(label);
    box->setToolTip(label);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(8);
    return box;
}

QLineEdit* NewHeight(QWidget& parent, const char* name, const QString& hint) {
    auto* edit = new QLineEdit(&parent);
    edit->setObjectName(name);
    edit->setPlaceholderText(hint);
    edit->setAccessibleName(hint);
    edit->setValidator(new QIntValidator(-kHighest, kHighest, edit));
    edit->setMaximumWidth(edit->fontMetrics().averageCharWidth() * 14);
    edit->setClearButtonEnabled(true);
    return edit;
}

std::optional<double> HeightIn(const QLineEdit& edit) {
    bool isNumber = false;
    const int height = edit.text().toInt(&isNumber);
    if (!isNumber) return std::nullopt;
    return height;
}

// Keeps what was chosen, if it is still on offer.
void KeepChoice(QComboBox& box, const QVariant& chosen) {
    box.setCurrentIndex(std::max(0, box.findData(chosen)));
}

}  // namespace

FilterBar::FilterBar(const KindNames& names, QWidget* parent)
    : QWidget(parent),
      names_(names),
      text_(new QLineEdit(this)),
      floor_(NewChoice(*this, "filterFloor", tr("Floor"))),
      kind_(NewChoice(*this, "filterKind", tr("Kind"))),
      state_(NewChoice(*this, "filterState", tr("State"))),
      above_(NewHeight(*this, "filterAbove", tr("above mm"))),
      upTo_(NewHeight(*this, "filterUpTo", tr("up to mm"))),
      pause_(new QTimer(this)) {
    text_->setObjectName("filterText");
    text_->setPlaceholderText(tr("Search name, kind, axis, remark (Ctrl+F)"));
    text_->setAccessibleName(tr("Search results"));
    text_->setClearButtonEnabled(true);
    auto* clear = new QToolButton(this);
    clear->setObjectName("filterClear");
    clear->setText(tr("Show all"));
    clear->setToolTip(tr("Take all filters away"));

    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(text_);
    auto* choices = new QHBoxLayout;
    rows->addLayout(choices);
    choices->addWidget(floor_, 2);
    choices->addWidget(kind_, 3);
    choices->addWidget(state_, 2);
    choices->addWidget(above_);
    choices->addWidget(upTo_);
    choices->addWidget(clear);

    pause_->setSingleShot(true);
    pause_->setInterval(kTypingPause);
    connect(pause_, &QTimer::timeout, this, &FilterBar::Changed);
    for (const QLineEdit* edit : {text_, above_, upTo_})
        connect(edit, &QLineEdit::textChanged, pause_, qOverload<>(&QTimer::start));
    for (const QLineEdit* edit : {text_, above_, upTo_})
        connect(edit, &QLineEdit::returnPressed, this, &FilterBar::ApplyNow);
    for (const QComboBox* box : {floor_, kind_, state_})
        connect(box, &QComboBox::activated, this, &FilterBar::Changed);
    connect(clear, &QToolButton::clicked, this, &FilterBar::Clear);
    SetChoices({});
}

void FilterBar::SetChoices(const ResultRows& rows) {
    const QVariant floor = floor_->currentData();
    const QVariant kind = kind_->currentData();
    const QVariant state = state_->currentData();
    floor_->clear();
    floor_->addItem(tr("All floors"));
    for (const std::wstring& name : rows.Floors())
        floor_->addItem(QString::fromStdWString(name), QString::fromStdWString(name));
    kind_->clear();
    kind_->addItem(tr("All kinds"));
    for (const KindChoice& choice : rows.Kinds()) {
        const QString text = choice.category.empty()
                                 ? names_.Name(choice.specialty)
                                 : QStringLiteral("    ") + names_.Name(choice.category);
        kind_->addItem(text, QString::fromStdWString(choice.specialty) + kSeparator +
                                 QString::fromStdWString(choice.category));
    }
    state_->clear();
    state_->addItem(tr("All states"));
    for (const DisposeState each : kDisposeStates)
        state_->addItem(StateName(static_cast<int>(each)), static_cast<int>(each));
    KeepChoice(*floor_, floor);
    KeepChoice(*kind_, kind);
    KeepChoice(*state_, state);
}

ResultFilter FilterBar::Filter() const {
    ResultFilter filter;
    filter.text = text_->text().toStdWString();
    if (const QVariant floor = floor_->currentData(); floor.isValid())
        filter.floor = floor.toString().toStdWString();
    if (const QVariant kind = kind_->currentData(); kind.isValid()) {
        const QStringList parts = kind.toString().split(kSeparator);
        filter.kind = KindChoice{parts.at(0).toStdWString(), parts.at(1).toStdWString()};
    }
    if (const QVariant state = state_->currentData(); state.isValid()) filter.state = state.toInt();
    filter.above = HeightIn(*above_);
    filter.upTo = HeightIn(*upTo_);
    return filter;
}

void FilterBar::ApplyNow() {
    pause_->stop();
    emit Changed();
}

void FilterBar::Clear() {
    for (QLineEdit* edit : {text_, above_, upTo_})
        edit->clear();
    for (QComboBox* box : {floor_, kind_, state_})
        box->setCurrentIndex(0);
    ApplyNow();
}

}  // namespace desk
