// SPDX-License-Identifier: Apache-2.0
#include "desk/view/Prompts.h"

#include <QFileDialog>
#include <QMessageBox>

namespace desk {
namespace {

std::optional<QString> Chosen(const QString& file) {
    if (file.isEmpty()) return std::nullopt;
    return file;
}

}  // namespace

UnsavedAnswer Prompts::AskUnsaved(QWidget* parent) {
    QMessageBox box(QMessageBox::Question, tr("Unsaved results"),
                    tr("The results have changed since they were last saved."),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, parent);
    box.setInformativeText(tr("Save them first?"));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
        case QMessageBox::Save:
            return UnsavedAnswer::kSave;
        case QMessageBox::Discard:
            return UnsavedAnswer::kDiscard;
        default:
            return UnsavedAnswer::kCancel;
    }
}

QStringList Prompts::ChooseModels(QWidget* parent, const QString& reason) {
    return QFileDialog::getOpenFileNames(parent, reason, {}, tr("IFC models (*.ifc *.ifczip)"));
}

std::optional<QString> Prompts::ChooseResultFile(QWidget* parent) {
    return Chosen(
        QFileDialog::getOpenFileName(parent, tr("Open results"), {}, tr("Clash results (*.xml)")));
}

std::optional<QString> Prompts::ChooseRuleFile(QWidget* parent) {
    return Chosen(
        QFileDialog::getOpenFileName(parent, tr("Choose rules"), {}, tr("Rule files (*.xml)")));
}

std::optional<QString> Prompts::ChooseSaveFile(QWidget* parent, const QString& suggestion) {
    return Chosen(QFileDialog::getSaveFileName(parent, tr("Save results"), suggestion,
                                               tr("Clash results (*.xml)")));
}

std::optional<QString> Prompts::ChooseDrawingFile(QWidget* parent) {
    return Chosen(QFileDialog::getSaveFileName(
        parent, tr("Export drawing"), QStringLiteral("clash.gltf"), tr("glTF scenes (*.gltf)")));
}

void Prompts::ShowProblems(QWidget* parent, const QString& title, const QStringList& problems) {
    QMessageBox box(QMessageBox::Warning, title, problems.value(0), QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    if (problems.size() > 1) box.setDetailedText(problems.mid(1).join('\n'));
    box.exec();
}

}  // namespace desk
