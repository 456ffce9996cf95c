// SPDX-License-Identifier: Apache-2.0
#include "desk/view/StatusLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

#include "desk/core/BackgroundTask.h"

namespace desk {
namespace {

// One phrase for each step that an activity reports.
QString StepText(const TaskProgress& progress) {
    const QString subject = QString::fromStdString(progress.subject);
    if (progress.step == "read") return StatusLine::tr("Reading %1").arg(subject);
    if (progress.step == "mesh") return StatusLine::tr("Meshing %1").arg(subject);
    if (progress.step == "scene") return StatusLine::tr("Preparing the 3-D view");
    if (progress.step == "build") return StatusLine::tr("Finding neighbours");
    if (progress.step == "rules") return StatusLine::tr("Reading the rules");
    if (progress.step == "check") return StatusLine::tr("Checking floor %1").arg(subject);
    if (progress.step == "collect") return StatusLine::tr("Collecting results");
    return {};
}

}  // namespace

StatusLine::StatusLine(QWidget* parent)
    : QWidget(parent), message_(new QLabel(this)), progress_(new QProgressBar(this)) {
    message_->setObjectName("message");
    progress_->setObjectName("progress");
    progress_->setMaximumWidth(260);
    progress_->setVisible(false);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(row->contentsMargins().left(), 0, 0, 0);
    row->addWidget(message_, 1);
    row->addWidget(progress_);
}

void StatusLine::Say(const QString& text) {
    message_->setText(text);
}

void StatusLine::ShowProgress(const TaskProgress& progress) {
    progress_->setVisible(true);
    progress_->setRange(0, static_cast<int>(progress.total));
    progress_->setValue(static_cast<int>(std::min(progress.done, progress.total)));
    const QString text = StepText(progress);
    if (!text.isEmpty()) Say(text);
}

void StatusLine::EndProgress() {
    progress_->setVisible(false);
}

}  // namespace desk
