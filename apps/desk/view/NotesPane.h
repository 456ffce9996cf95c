// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPlainTextEdit>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "kyclash/CheckReport.h"

namespace desk {

/// What a user should know beside the clashes: what of the models was left out, which rules the
/// last run had and what they did not cover.
class NotesPane : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit NotesPane(QWidget* parent = nullptr);

    /// Notes on the models (UTF-8), in place of all notes so far.
    void SetReadingNotes(const std::vector<std::string>& notes);
    /// Notes on a run, in place of those on the run before.
    void SetCheckNotes(const std::optional<kyclash::ReportedRules>& rules,
                       const std::vector<std::string>& notes);

    /// Number of notes; the name of the rule file is none.
    int Count() const { return static_cast<int>(reading_.size() + checking_.size()); }

  private:
    void Show();

    QString ruleFile_;
    QStringList reading_;
    QStringList checking_;
};

}  // namespace desk
