// SPDX-License-Identifier: Apache-2.0
#include "desk/view/NotesPane.h"

namespace desk {
namespace {

QStringList ToTexts(const std::vector<std::string>& notes) {
    QStringList texts;
    for (const std::string& note : notes)
        texts << QString::fromStdString(note);
    return texts;
}

QStringList KindTexts(const QString& text, const std::vector<kyclash::ReportedKind>& kinds) {
    QStringList texts;
    for (const auto& kind : kinds)
        texts << text.arg(QString::fromStdString(kind.path)).arg(kind.components);
    return texts;
}

}  // namespace

NotesPane::NotesPane(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setPlaceholderText(tr("Nothing to say about the models and the rules."));
    setAccessibleName(tr("Notes"));
}

void NotesPane::SetReadingNotes(const std::vector<std::string>& notes) {
    reading_ = ToTexts(notes);
    ruleFile_.clear();
    checking_.clear();
    Show();
}

void NotesPane::SetCheckNotes(const std::optional<kyclash::ReportedRules>& rules,
                              const std::vector<std::string>& notes) {
    ruleFile_.clear();
    checking_ = ToTexts(notes);
    if (rules) {
        ruleFile_ = QString::fromStdString(rules->file);
        checking_ << KindTexts(tr("not checked, for want of a rule: %1 (%L2)"), rules->withoutRule)
                  << KindTexts(tr("switched off by its rule: %1 (%L2)"), rules->switchedOff)
                  << ToTexts(rules->remarks);
    }
    Show();
}

void NotesPane::Show() {
    QStringList lines;
    if (!reading_.isEmpty()) lines << tr("Models") << reading_ << QString();
    if (!ruleFile_.isEmpty()) lines << tr("Last check, with the rules %1").arg(ruleFile_);
    lines << checking_;
    setPlainText(lines.join('\n'));
}

}  // namespace desk
