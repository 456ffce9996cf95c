// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QStringList>
#include <optional>

class QWidget;

namespace desk {

/// What is to become of changes that were not saved.
enum class UnsavedAnswer { kSave, kDiscard, kCancel };

/// The questions that the window asks its user. The default asks in dialogs; tests answer.
class Prompts {
    Q_DECLARE_TR_FUNCTIONS(desk::Prompts)

  public:
    virtual ~Prompts() = default;

    virtual UnsavedAnswer AskUnsaved(QWidget* parent);
    /// Empty when the user thought better of it.
    virtual QStringList ChooseModels(QWidget* parent, const QString& reason);
    virtual std::optional<QString> ChooseResultFile(QWidget* parent);
    virtual std::optional<QString> ChooseRuleFile(QWidget* parent);
    virtual std::optional<QString> ChooseSaveFile(QWidget* parent, const QString& suggestion);
    virtual std::optional<QString> ChooseDrawingFile(QWidget* parent);
    virtual void ShowProblems(QWidget* parent, const QString& title, const QStringList& problems);
};

}  // namespace desk
