// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>
#include <optional>

#include "desk/view/Prompts.h"

/// Answers the window's questions as a test wants, and counts them.
class ScriptedPrompts : public desk::Prompts {
  public:
    /// Outlives the prompts, which the window owns.
    struct Script {
        desk::UnsavedAnswer unsaved = desk::UnsavedAnswer::kCancel;
        QStringList models;
        std::optional<QString> resultFile;
        std::optional<QString> ruleFile;
        std::optional<QString> saveFile;
        std::optional<QString> drawingFile;
        int unsavedAsked = 0;
        int modelsAsked = 0;
        QStringList problems;
    };

    explicit ScriptedPrompts(Script& script) : script_(script) {}

    desk::UnsavedAnswer AskUnsaved(QWidget*) override {
        ++script_.unsavedAsked;
        return script_.unsaved;
    }
    QStringList ChooseModels(QWidget*, const QString&) override {
        ++script_.modelsAsked;
        return script_.models;
    }
    std::optional<QString> ChooseResultFile(QWidget*) override { return script_.resultFile; }
    std::optional<QString> ChooseRuleFile(QWidget*) override { return script_.ruleFile; }
    std::optional<QString> ChooseSaveFile(QWidget*, const QString&) override {
        return script_.saveFile;
    }
    std::optional<QString> ChooseDrawingFile(QWidget*) override { return script_.drawingFile; }
    void ShowProblems(QWidget*, const QString&, const QStringList& problems) override {
        script_.problems << problems;
    }

  private:
    Script& script_;
};
