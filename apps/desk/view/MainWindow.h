// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMainWindow>
#include <filesystem>
#include <memory>
#include <vector>

#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

class QAction;
class QSettings;
class QSplitter;
class QTabWidget;
class QTimer;

namespace desk {

class NotesPane;
class OpeningList;
class Prompts;
class ResultPane;
class ScenePane;
class SceneView;
class ScopePane;
class StatusLine;

/// The window: what to check on the left, the results in the middle, the model on the right.
///
/// It passes on what the user wants to the session, and what comes of it to the panes, which it
/// connects; it decides nothing about clashes. While the session is busy the window asks it ten
/// times a second how far it is.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    MainWindow(SessionOptions options, const QString& language, std::unique_ptr<Prompts> prompts);
    ~MainWindow() override;

    /// Starts to read models, after asking about unsaved changes.
    void OpenModels(const std::vector<std::filesystem::path>& models);
    /// Reads results, and then their models.
    void OpenResults(const std::filesystem::path& file);
    /// Whether all is saved now.
    bool SaveResults();
    void StartCheck();
    void StopActivity();

    /// How the user arranged the window, from one start of the program to the next.
    void RestoreLayout(const QSettings& settings);
    void KeepLayout(QSettings& settings) const;

    bool IsBusy() const { return session_.CurrentActivity() != Activity::kIdle; }
    Session& CurrentSession() { return session_; }
    SceneView& View();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// Whose results the models are for that are being read.
    enum class OpenedFor { kNewWork, kResults };

    void BuildActions();
    void BuildPages();
    void ConnectPanes();
    void UpdateIcons();

    void ChooseModels();
    void ChooseResults();
    void ChooseRules();
    bool SaveAs();
    bool SaveTo(const std::filesystem::path& file);
    /// Whether the results may go: they are saved, or need not be.
    bool MayDropResults();
    /// Whether others take the place of the results when the activity has succeeded.
    bool AreResultsLeaving() const;
    void OpenModelsOfResults();
    void StartReading(std::vector<std::filesystem::path> models, OpenedFor openedFor);

    void WatchActivity();
    void PollSession();
    void ShowOutcome(const ActivityOutcome& outcome);
    void ShowOpened(const ActivityOutcome& outcome);
    void ShowRead(const ActivityOutcome& outcome);
    void ShowChecked(const ActivityOutcome& outcome);
    void ShowModels();
    void ShowResults();
    void ShowNotes();
    void ShowSelected();
    void ShowOpening(int row);
    void ShowPage(int page);
    void NoteChanges();
    void UpdateActions();
    void UpdateTitle();

    std::unique_ptr<Prompts> prompts_;
    KindNames names_;
    Session session_;
    OpenedFor openedFor_ = OpenedFor::kNewWork;
    bool showsOpening_ = false;  // the model shows one of these, not a clash

    QTimer* poll_;
    QSplitter* columns_;
    // In the order in which the tabulator key goes through them, which is that of their making.
    ScopePane* scope_;
    QTabWidget* pages_;
    ResultPane* results_;
    OpeningList* openings_;
    NotesPane* notes_;
    ScenePane* scene_;
    StatusLine* status_;

    QAction* openModels_ = nullptr;
    QAction* openResults_ = nullptr;
    QAction* save_ = nullptr;
    QAction* saveAs_ = nullptr;
    QAction* rules_ = nullptr;
    QAction* run_ = nullptr;
    QAction* stop_ = nullptr;
    QAction* find_ = nullptr;
};

}  // namespace desk
