// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPlainTextEdit>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "desk/core/ModelNote.h"
#include "desk/view/KindNames.h"
#include "kyclash/CheckReport.h"

namespace desk {

/// What a user should know beside the clashes: what of the models was left out, which rules the
/// last run had and what they did not cover.
class NotesPane : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit NotesPane(const KindNames& names, QWidget* parent = nullptr);

    /// Notes on the models, in place of all notes so far.
    void SetModelNotes(const std::vector<ModelNote>& notes);
    /// Notes on a run (UTF-8), in place of those on the run before.
    void SetCheckNotes(const std::optional<kyclash::ReportedRules>& rules,
                       const std::vector<std::string>& notes);

    /// Number of notes; the name of the rule file is none.
    int Count() const { return static_cast<int>(models_.size() + checking_.size()); }

  private:
    void Show();
    QStringList KindTexts(const QString& text,
                          const std::vector<kyclash::ReportedKind>& kinds) const;

    const KindNames& names_;
    QString ruleFile_;
    QStringList models_;
    QStringList checking_;
};

}  // namespace desk
