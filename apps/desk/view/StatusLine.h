// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class QLabel;
class QProgressBar;

namespace desk {

struct TaskProgress;

/// What goes on, or how it ended, in one line, with a bar while something goes on.
class StatusLine : public QWidget {
    Q_OBJECT

  public:
    explicit StatusLine(QWidget* parent = nullptr);

    void Say(const QString& text);
    void ShowProgress(const TaskProgress& progress);
    void EndProgress();

  private:
    QLabel* message_;
    QProgressBar* progress_;
};

}  // namespace desk
