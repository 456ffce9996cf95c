// SPDX-License-Identifier: Apache-2.0
#include "desk/view/DetailPane.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QStyle>
#include <cmath>

#include "desk/core/ResultFilter.h"
#include "desk/view/SceneColors.h"

namespace desk {
namespace {

using KYCOLLISION::RESULT::KyResultItem;

QLabel* NewText(QWidget& parent, const char* name) {
    auto* label = new QLabel(&parent);
    label->setObjectName(name);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

QLabel* NewSwatch(QWidget& parent, const QColor& color) {
    auto* label = new QLabel(&parent);
    const int size = parent.fontMetrics().ascent();
    QPixmap square(size, size);
    square.fill(color);
    label->setPixmap(square);
    label->setAlignment(Qt::AlignTop);
    return label;
}

QString Joined(const QStringList& parts) {
    QStringList there;
    for (const QString& part : parts) {
        if (!part.isEmpty()) there << part.toHtmlEscaped();
    }
    return there.join(QStringLiteral(" \u00B7 "));
}

QString Component(const KindNames& names, const SObjAttInfo& info, const std::wstring& sysCode,
                  const std::wstring& floor, const std::wstring& height,
                  const QString& heightLabel) {
    const QString name = QString::fromStdWString(info.Name).toHtmlEscaped();
    const QString heightText =
        height.empty() ? QString() : heightLabel.arg(QString::fromStdWString(height));
    // Where there is no system, the code stands for the specialty, which is said already.
    const QString system = sysCode == info.Specialty ? QString() : QString::fromStdWString(sysCode);
    return QStringLiteral("<b>%1</b><br>%2")
        .arg(name)
        .arg(Joined({names.Name(info.Specialty), names.Kind(info), system,
                     QString::fromStdWString(floor), heightText}));
}

}  // namespace

DetailPane::DetailPane(const KindNames& names, QWidget* parent)
    : QWidget(parent),
      names_(names),
      main_(NewText(*this, "detailMain")),
      second_(NewText(*this, "detailSecond")),
      place_(NewText(*this, "detailPlace")),
      hint_(NewText(*this, "detailHint")) {
    hint_->setText(tr("Select a clash to see its two components here."));
    hint_->setForegroundRole(QPalette::PlaceholderText);
    auto* grid = new QGridLayout(this);
    grid->setColumnStretch(1, 1);
    grid->addWidget(NewSwatch(*this, MainColor()), 0, 0);
    grid->addWidget(main_, 0, 1);
    grid->addWidget(NewSwatch(*this, SecondColor()), 1, 0);
    grid->addWidget(second_, 1, 1);
    grid->addWidget(NewSwatch(*this, ClashPointColor()), 2, 0);
    grid->addWidget(place_, 2, 1);
    grid->addWidget(hint_, 3, 0, 1, 2);
    // Room to spare is left below, not between the lines.
    grid->setRowStretch(4, 1);
    // Two components of up to three lines and the place: the pane keeps its height, whatever it
    // shows.
    constexpr int kLines = 7;
    const QMargins margins = grid->contentsMargins();
    setMinimumHeight(kLines * fontMetrics().lineSpacing() + margins.top() + margins.bottom() +
                     2 * grid->verticalSpacing());
    AlignTexts();
    Show(nullptr);
}

// By the direction of the window, not of each text: a name may run the other way.
void DetailPane::AlignTexts() {
    for (QLabel* label : {main_, second_, place_, hint_}) {
        label->setAlignment(
            QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignTop));
    }
}

void DetailPane::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) AlignTexts();
}

void DetailPane::Show(const KyResultItem* item) {
    for (QLabel* label : findChildren<QLabel*>())
        label->setVisible((item == nullptr) == (label == hint_));
    if (item == nullptr) return;
    const QString height = tr("height %1");
    main_->setText(Component(names_, item->GetAttInfoA(), item->GetSysCodeA(), item->GetFloorA(),
                             item->GetHeightA(), height));
    second_->setText(Component(names_, item->GetAttInfoB(), item->GetSysCodeB(), item->GetFloorB(),
                               item->GetHeightB(), height));
    QString elevation;
    if (const auto z = ClashElevation(*item))
        elevation = tr("elevation %1 mm").arg(QLocale().toString(std::lround(*z)));
    place_->setText(Joined({names_.Name(item->GetAxisPos()), elevation}));
}

}  // namespace desk
