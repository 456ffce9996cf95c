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

// Why products take no part is said in the words of the reader, who knows no translations.
[[maybe_unused]] constexpr const char* kReasons[] = {
    QT_TRANSLATE_NOOP("desk::NotesPane", "an opening: listed, not checked"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "an opening that a door, a window or the like stands for"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "an assembly: checked through its parts"),
    QT_TRANSLATE_NOOP("desk::NotesPane",
                      "no body: space, storey, annotation, grid, port or the like"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "the file gives it no body"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "its body has no triangles"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "its body could not be read"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "left out by the mapping"),
    QT_TRANSLATE_NOOP("desk::NotesPane", "no rule of the mapping matches"),
};

QString Text(const UncheckedProducts& products) {
    const std::string reason(ifchost::FateText(products.fate));
    return NotesPane::tr("not checked: %L1 (%2)")
        .arg(products.count)
        .arg(NotesPane::tr(reason.c_str()));
}

QString Text(const ifchost::UnmappedClass& unmapped) {
    return NotesPane::tr("no mapping rule for %L1 x %2, as %3")
        .arg(unmapped.count)
        .arg(QString::fromStdString(unmapped.ifcClass), QString::fromStdString(unmapped.example));
}

QString Text(const std::string& words) {
    return QString::fromStdString(words);
}

QString Text(const ModelNote& note) {
    const QString what = std::visit([](const auto& each) { return Text(each); }, note.what);
    if (note.file.empty()) return what;
    return NotesPane::tr("%1: %2").arg(QString::fromStdString(note.file), what);
}

}  // namespace

NotesPane::NotesPane(const KindNames& names, QWidget* parent)
    : QPlainTextEdit(parent), names_(names) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setPlaceholderText(tr("Nothing to say about the models and the rules."));
    setAccessibleName(tr("Notes"));
}

void NotesPane::SetModelNotes(const std::vector<ModelNote>& notes) {
    models_.clear();
    for (const ModelNote& note : notes)
        models_ << Text(note);
    ruleFile_.clear();
    checking_.clear();
    Show();
}

QStringList NotesPane::KindTexts(const QString& text,
                                 const std::vector<kyclash::ReportedKind>& kinds) const {
    QStringList texts;
    for (const auto& kind : kinds)
        texts << text.arg(names_.Path(QString::fromStdString(kind.path))).arg(kind.components);
    return texts;
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
    if (!models_.isEmpty()) lines << tr("Models") << models_ << QString();
    if (!ruleFile_.isEmpty()) lines << tr("Last check, with the rules %1").arg(ruleFile_);
    lines << checking_;
    setPlainText(lines.join('\n'));
}

}  // namespace desk
