// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMainWindow>
#include <filesystem>
#include <memory>
#include <vector>

#include "desk/core/Session.h"
#include "desk/view/KindNames.h"

class QAction;
class QLabel;
class QListWidget;
class QProgressBar;
class QSettings;
class QSpinBox;
class QSplitter;
class QTabWidget;
class QTimer;
class QTreeWidgetItem;

namespace desk {

class DetailPane;
class FilterBar;
class KindTree;
class NotesPane;
class OpeningList;
class Prompts;
class ResultList;
class ResultModel;
class SceneView;

/// The window: what to check on the left, the results in the middle, the model on the right.
///
/// It shows the session and passes on what the user wants; it decides nothing about clashes. While
/// the session is busy the window asks it ten times a second how far it is.
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
    SceneView& View() { return *view_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    /// Whose results the models are for that are being read.
    enum class OpenedFor { kNewWork, kResults };

    QAction* AddAction(const QString& text, const char* name, const QKeySequence& key,
                       const QString& tip);
    void BuildActions();
    QWidget* BuildLeft();
    QWidget* BuildMiddle();
    QWidget* BuildRight();
    void BuildStatus();
    void UpdateIcons();

    void ChooseModels();
    void ChooseResults();
    void ChooseRules();
    bool SaveAs();
    bool SaveTo(const std::filesystem::path& file);
    /// Whether the results may go: they are saved, or need not be.
    bool MayDropResults();
    void StartReading(std::vector<std::filesystem::path> models, OpenedFor openedFor);
    void ExportDiagnostics();

    void PollSession();
    void ShowProgress();
    void ShowOutcome(const ActivityOutcome& outcome);
    void ShowModels();
    void ShowResults();
    void ShowNotes();
    void ShowCounts();
    void ShowSelected();
    void ShowOpening(int row);
    void ShowClashIn3d(const Session::Item* item);
    void DrawDiagnostics(const Session::Item& item);
    void KeepView();
    void UpdateSection();
    void UpdateActions();
    void UpdateTitle();
    Session::Item* CurrentItem() const;
    std::vector<std::wstring> CheckedFloors() const;

    std::unique_ptr<Prompts> prompts_;
    KindNames names_;
    Session session_;
    OpenedFor openedFor_ = OpenedFor::kNewWork;
    QTimer* poll_;

    KindTree* kinds_ = nullptr;
    QListWidget* floors_ = nullptr;
    FilterBar* filter_ = nullptr;
    ResultModel* model_ = nullptr;
    ResultList* list_ = nullptr;
    OpeningList* openings_ = nullptr;
    NotesPane* notes_ = nullptr;
    QTabWidget* pages_ = nullptr;
    bool showsOpening_ = false;  // the model shows one of these, not a clash
    QSplitter* columns_ = nullptr;
    QLabel* counts_ = nullptr;
    SceneView* view_ = nullptr;
    DetailPane* details_ = nullptr;
    QSpinBox* sectionHeight_ = nullptr;
    QLabel* message_ = nullptr;
    QProgressBar* progress_ = nullptr;

    QAction* openModels_ = nullptr;
    QAction* openResults_ = nullptr;
    QAction* save_ = nullptr;
    QAction* saveAs_ = nullptr;
    QAction* rules_ = nullptr;
    QAction* run_ = nullptr;
    QAction* stop_ = nullptr;
    QAction* expand_ = nullptr;
    QAction* collapse_ = nullptr;
    QAction* fitAll_ = nullptr;
    QAction* fitClash_ = nullptr;
    QAction* keepView_ = nullptr;
    QAction* section_ = nullptr;
    QAction* export_ = nullptr;
    QAction* find_ = nullptr;
};

}  // namespace desk
