// SPDX-License-Identifier: Apache-2.0
#include "desk/view/MainWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QItemSelectionModel>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>

#include "desk/core/ModelList.h"
#include "desk/view/NotesPane.h"
#include "desk/view/OpeningList.h"
#include "desk/view/PathText.h"
#include "desk/view/Prompts.h"
#include "desk/view/ResultPane.h"
#include "desk/view/ScenePane.h"
#include "desk/view/ScopePane.h"
#include "desk/view/StatusLine.h"
#include "desk/view/ToolActions.h"
#include "desk/view/ToolIcons.h"
#include "ifchost/IfcWorkset.h"

namespace desk {
namespace {

constexpr int kPollMilliseconds = 100;
// The window takes up this much of the screen at first, but is never smaller than it needs to be.
constexpr double kShareOfScreen = 0.9;
constexpr QSize kRoomNeeded(1500, 900);

QStringList ToTexts(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& text : texts)
        list << QString::fromStdString(text);
    return list;
}

std::vector<std::filesystem::path> ToPaths(const QStringList& files) {
    std::vector<std::filesystem::path> paths;
    for (const QString& file : files)
        paths.push_back(ToPath(file));
    return paths;
}

}  // namespace

MainWindow::MainWindow(SessionOptions options, const QString& language,
                       std::unique_ptr<Prompts> prompts)
    : prompts_(std::move(prompts)),
      names_(language),
      session_(std::move(options)),
      poll_(new QTimer(this)),
      columns_(new QSplitter(this)),
      scope_(new ScopePane(names_, this)),
      pages_(new QTabWidget(this)),
      results_(new ResultPane(session_, names_, this)),
      openings_(new OpeningList(names_, this)),
      notes_(new NotesPane(names_, this)),
      scene_(new ScenePane(session_, names_, *prompts_, this)),
      status_(new StatusLine(this)) {
    setObjectName("mainWindow");
    resize(kRoomNeeded.expandedTo(screen()->availableSize() * kShareOfScreen));
    BuildActions();
    BuildPages();
    columns_->setObjectName("columns");
    columns_->setChildrenCollapsible(false);
    columns_->addWidget(scope_);
    columns_->addWidget(pages_);
    columns_->addWidget(scene_);
    columns_->setStretchFactor(1, 3);
    columns_->setStretchFactor(2, 2);
    columns_->setSizes({250, 760, 490});
    setCentralWidget(columns_);
    statusBar()->addWidget(status_, 1);
    poll_->setInterval(kPollMilliseconds);
    connect(poll_, &QTimer::timeout, this, &MainWindow::PollSession);
    ConnectPanes();
    UpdateActions();
    UpdateTitle();
}

MainWindow::~MainWindow() = default;

void MainWindow::BuildActions() {
    openModels_ = NewAction(*this, tr("Open models"), "openModels", QKeySequence::Open,
                            tr("Open IFC models; several are one building"));
    openResults_ = NewAction(*this, tr("Open results"), "openResults", QKeySequence("Ctrl+Shift+O"),
                             tr("Open saved results with their models"));
    save_ = NewAction(*this, tr("Save"), "save", QKeySequence::Save, tr("Save the results"));
    saveAs_ = NewAction(*this, tr("Save as"), "saveAs", QKeySequence("Ctrl+Shift+S"),
                        tr("Save the results in another file"));
    rules_ =
        NewAction(*this, tr("Rules"), "rules", {}, tr("Choose the rule file of the next check"));
    run_ = NewAction(*this, tr("Run check"), "run", QKeySequence("F5"),
                     tr("Check the chosen kinds on the chosen floors"));
    stop_ =
        NewAction(*this, tr("Stop"), "stop", QKeySequence("Shift+F5"), tr("Stop what is going on"));
    find_ = NewAction(*this, tr("Find"), "find", QKeySequence::Find, tr("Search the results"));

    QToolBar* bar = addToolBar(tr("Main"));
    bar->setObjectName("mainBar");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->addActions({openModels_, openResults_, save_, saveAs_});
    bar->addSeparator();
    bar->addActions({rules_, run_, stop_});
    UpdateIcons();

    connect(openModels_, &QAction::triggered, this, &MainWindow::ChooseModels);
    connect(openResults_, &QAction::triggered, this, &MainWindow::ChooseResults);
    connect(rules_, &QAction::triggered, this, &MainWindow::ChooseRules);
    connect(save_, &QAction::triggered, this, &MainWindow::SaveResults);
    connect(saveAs_, &QAction::triggered, this, &MainWindow::SaveAs);
    connect(run_, &QAction::triggered, this, &MainWindow::StartCheck);
    connect(stop_, &QAction::triggered, this, &MainWindow::StopActivity);
}

void MainWindow::UpdateIcons() {
    const std::pair<QAction*, ToolGlyph> icons[] = {{openModels_, ToolGlyph::kOpenModels},
                                                    {openResults_, ToolGlyph::kOpenResults},
                                                    {save_, ToolGlyph::kSave},
                                                    {saveAs_, ToolGlyph::kSaveAs},
                                                    {rules_, ToolGlyph::kRules},
                                                    {run_, ToolGlyph::kRun},
                                                    {stop_, ToolGlyph::kStop}};
    for (const auto& [action, glyph] : icons)
        action->setIcon(ToolIcon(glyph, palette()));
}

void MainWindow::BuildPages() {
    openings_->setObjectName("openings");
    notes_->setObjectName("notes");
    pages_->setObjectName("pages");
    pages_->setDocumentMode(true);
    pages_->addTab(results_, tr("Clashes"));
    pages_->addTab(openings_, tr("Openings"));
    pages_->addTab(notes_, tr("Notes"));
}

void MainWindow::ConnectPanes() {
    connect(scope_, &ScopePane::ChoiceChanged, this, &MainWindow::UpdateActions);
    connect(results_, &ResultPane::CurrentChanged, this, &MainWindow::ShowSelected);
    connect(results_, &ResultPane::Edited, this, &MainWindow::NoteChanges);
    connect(find_, &QAction::triggered, this, [this] {
        pages_->setCurrentWidget(results_);
        results_->StartSearch();
    });
    connect(openings_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { ShowOpening(current.row()); });
    connect(pages_, &QTabWidget::currentChanged, this, &MainWindow::ShowPage);
    connect(scene_, &ScenePane::ViewKept, this, [this] {
        status_->Say(tr("This view is kept with the clash"));
        NoteChanges();
    });
}

SceneView& MainWindow::View() {
    return scene_->View();
}

void MainWindow::ChooseModels() {
    OpenModels(ToPaths(prompts_->ChooseModels(this, tr("Open models"))));
}

void MainWindow::OpenModels(const std::vector<std::filesystem::path>& models) {
    if (models.empty() || IsBusy() || !MayDropResults()) return;
    StartReading(models, OpenedFor::kNewWork);
}

void MainWindow::ChooseResults() {
    if (const auto file = prompts_->ChooseResultFile(this)) OpenResults(ToPath(*file));
}

void MainWindow::ChooseRules() {
    const auto file = prompts_->ChooseRuleFile(this);
    if (!file) return;
    session_.SetRuleFile(ToPath(*file));
    status_->Say(tr("The next check uses the rules %1").arg(*file));
}

void MainWindow::OpenResults(const std::filesystem::path& file) {
    if (IsBusy() || !MayDropResults()) return;
    session_.StartOpenResults(file);
    WatchActivity();
}

void MainWindow::OpenModelsOfResults() {
    std::string error;
    auto models = ReadModelList(*session_.ResultFile(), error);
    if (!error.empty())
        prompts_->ShowProblems(this, tr("Open results"), {QString::fromStdString(error)});
    if (!models) {
        models = ToPaths(prompts_->ChooseModels(this, tr("Which models are these results of?")));
    }
    if (!models->empty()) StartReading(std::move(*models), OpenedFor::kResults);
}

void MainWindow::StartReading(std::vector<std::filesystem::path> models, OpenedFor openedFor) {
    openedFor_ = openedFor;
    session_.StartOpen(std::move(models));
    WatchActivity();
}

bool MainWindow::SaveResults() {
    return session_.ResultFile() ? SaveTo(*session_.ResultFile()) : SaveAs();
}

bool MainWindow::SaveAs() {
    const QString suggestion =
        session_.ResultFile() ? ToText(*session_.ResultFile()) : QStringLiteral("results.xml");
    const auto file = prompts_->ChooseSaveFile(this, suggestion);
    return file && SaveTo(ToPath(*file));
}

bool MainWindow::SaveTo(const std::filesystem::path& file) {
    results_->FinishEditing();
    std::string error;
    const bool saved = session_.SaveResults(file, error);
    if (saved) {
        status_->Say(tr("Saved to %1").arg(ToText(file)));
    } else {
        prompts_->ShowProblems(this, tr("Save results"), {QString::fromStdString(error)});
    }
    NoteChanges();
    return saved;
}

bool MainWindow::MayDropResults() {
    results_->FinishEditing();
    if (!session_.IsModified()) return true;
    switch (prompts_->AskUnsaved(this)) {
        case UnsavedAnswer::kSave:
            return SaveResults();
        case UnsavedAnswer::kDiscard:
            return true;
        case UnsavedAnswer::kCancel:
            return false;
    }
    return false;
}

bool MainWindow::AreResultsLeaving() const {
    const Activity activity = session_.CurrentActivity();
    return activity == Activity::kReadingResults ||
           (activity == Activity::kOpening && openedFor_ == OpenedFor::kNewWork);
}

void MainWindow::StartCheck() {
    if (IsBusy() || session_.Workset() == nullptr) return;
    session_.StartCheck(scope_->Chosen());
    WatchActivity();
}

void MainWindow::StopActivity() {
    if (!IsBusy()) return;
    session_.RequestStop();
    status_->Say(tr("Stopping ..."));
}

void MainWindow::WatchActivity() {
    poll_->start();
    UpdateActions();
    status_->ShowProgress(session_.Progress());
}

void MainWindow::PollSession() {
    // The outcome may replace the clash whose remark is being typed.
    if (session_.HasOutcome()) results_->FinishEditing();
    const auto outcome = session_.Poll();
    if (!outcome) {
        status_->ShowProgress(session_.Progress());
        return;
    }
    poll_->stop();
    status_->EndProgress();
    ShowOutcome(*outcome);
}

void MainWindow::ShowOutcome(const ActivityOutcome& outcome) {
    switch (outcome.activity) {
        case Activity::kOpening:
            ShowOpened(outcome);
            break;
        case Activity::kReadingResults:
            ShowRead(outcome);
            break;
        default:
            ShowChecked(outcome);
    }
    ShowResults();
    ShowNotes();
    if (!outcome.errors.empty())
        prompts_->ShowProblems(this, windowTitle(), ToTexts(outcome.errors));
    if (outcome.activity == Activity::kReadingResults && outcome.succeeded) OpenModelsOfResults();
}

void MainWindow::ShowRead(const ActivityOutcome& outcome) {
    status_->Say(outcome.succeeded ? tr("Results read, clashes: %L1").arg(outcome.clashes)
                 : outcome.stopped ? tr("Stopped: no results were opened")
                                   : tr("The results could not be opened"));
}

void MainWindow::ShowOpened(const ActivityOutcome& outcome) {
    if (!outcome.succeeded) {
        status_->Say(outcome.stopped ? tr("Stopped: no models were opened")
                                     : tr("The models could not be opened"));
        return;
    }
    if (openedFor_ == OpenedFor::kNewWork) session_.CloseResults();
    ShowModels();
    notes_->SetModelNotes(outcome.modelNotes);
    status_->Say(tr("Models: %L1, components: %L2")
                     .arg(session_.Models().size())
                     .arg(session_.Workset()->Components().size()));
}

void MainWindow::ShowChecked(const ActivityOutcome& outcome) {
    status_->Say(outcome.succeeded ? tr("Check done, clashes: %L1").arg(outcome.clashes)
                 : outcome.stopped ? tr("Check stopped: the list is not complete")
                                   : tr("The check could not be done"));
    if (outcome.rules) notes_->SetCheckNotes(outcome.rules, outcome.bodyNotes);
}

void MainWindow::ShowModels() {
    scope_->ShowModels(session_);
    openings_->SetOpenings(session_.Openings());
    scene_->ShowModels();
}

void MainWindow::ShowResults() {
    results_->Reload();
    NoteChanges();
}

void MainWindow::ShowNotes() {
    const int count = notes_->Count();
    pages_->setTabText(pages_->indexOf(notes_),
                       count == 0 ? tr("Notes") : tr("Notes (%L1)").arg(count));
}

void MainWindow::ShowSelected() {
    showsOpening_ = false;
    scene_->ShowClash(results_->Current());
}

void MainWindow::ShowOpening(int row) {
    showsOpening_ = true;
    const auto& openings = session_.Openings();
    const bool exists = row >= 0 && static_cast<std::size_t>(row) < openings.size();
    scene_->ShowOpening(exists ? openings[static_cast<std::size_t>(row)].get() : nullptr);
}

void MainWindow::ShowPage(int page) {
    if (pages_->widget(page) == openings_) {
        ShowOpening(openings_->currentIndex().row());
    } else if (showsOpening_) {
        ShowSelected();
    }
}

void MainWindow::NoteChanges() {
    UpdateTitle();
    UpdateActions();
}

void MainWindow::UpdateActions() {
    const bool idle = !IsBusy();
    const CheckRequest chosen = scope_->Chosen();
    openModels_->setEnabled(idle);
    openResults_->setEnabled(idle);
    save_->setEnabled(session_.IsModified());
    saveAs_->setEnabled(results_->HasResults() || session_.IsModified());
    run_->setEnabled(idle && session_.Workset() != nullptr && !chosen.floors.empty() &&
                     !chosen.kinds.empty());
    stop_->setEnabled(!idle);
    // The user has been asked about them already; a later edit would go without a question.
    results_->SetReadOnly(AreResultsLeaving());
    scene_->SetReadOnly(AreResultsLeaving());
}

void MainWindow::UpdateTitle() {
    QStringList names;
    for (const auto& model : session_.Models())
        names << ToText(model.filename());
    if (session_.ResultFile()) names.prepend(ToText(session_.ResultFile()->filename()));
    const QString what = names.isEmpty() ? QString() : names.join(", ") + " - ";
    setWindowTitle(what + QStringLiteral("kyclash-desk[*]"));
    setWindowModified(session_.IsModified());
}

void MainWindow::RestoreLayout(const QSettings& settings) {
    restoreGeometry(settings.value("window").toByteArray());
    columns_->restoreState(settings.value("columns").toByteArray());
    results_->RestoreColumnLayout(settings.value("resultColumns").toByteArray());
}

void MainWindow::KeepLayout(QSettings& settings) const {
    settings.setValue("window", saveGeometry());
    settings.setValue("columns", columns_->saveState());
    settings.setValue("resultColumns", results_->ColumnLayout());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!MayDropResults()) {
        event->ignore();
        return;
    }
    session_.RequestStop();
    event->accept();
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    // A palette may come before there are actions.
    if (event->type() == QEvent::PaletteChange && stop_ != nullptr) UpdateIcons();
}

}  // namespace desk
