// SPDX-License-Identifier: Apache-2.0
#include "desk/view/MainWindow.h"

#include "KYCollisionBase/result/CExistingHole.h"
#include "KYCollisionBase/ui/GltfWriter.h"
#include "KYCollisionBase/ui/KyCheckTestTool.h"

#include <QAction>
#include <QCloseEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QProgressBar>
#include <QScreen>
#include <QSettings>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>
#include <fstream>

#include "desk/core/ModelList.h"
#include "desk/view/DetailPane.h"
#include "desk/view/FilterBar.h"
#include "desk/view/KindTree.h"
#include "desk/view/NotesPane.h"
#include "desk/view/OpeningList.h"
#include "desk/view/Prompts.h"
#include "desk/view/ResultList.h"
#include "desk/view/ResultModel.h"
#include "desk/view/SceneColors.h"
#include "desk/view/SceneView.h"
#include "desk/view/StateNames.h"
#include "desk/view/ToolIcons.h"
#include "ifchost/IfcWorkset.h"

namespace desk {
namespace {

using QNIM::GeometryPrimitiveResource::CQNIMBoundingBox;
using QNIM::GeometryPrimitiveResource::CQNIMPosition;

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

QString ToText(const std::filesystem::path& path) {
    return QString::fromStdU16String(path.u16string());
}

std::filesystem::path ToPath(const QString& text) {
    return std::filesystem::path(text.toStdU16String());
}

SQNGIRGBClr ToColor(const QColor& color) {
    return {static_cast<std::uint8_t>(color.red()), static_cast<std::uint8_t>(color.green()),
            static_cast<std::uint8_t>(color.blue())};
}

CQNIMBoundingBox ToBox(const SceneBounds& bounds) {
    const auto corner = [](const std::array<float, 3>& point) {
        return CQNIMPosition(static_cast<double>(point[0]), static_cast<double>(point[1]),
                             static_cast<double>(point[2]));
    };
    return {corner(bounds.min), corner(bounds.max)};
}

// The clash point in the scene's coordinates; nothing without models, or for a position that is
// no point.
std::optional<ifchost::Point3> ScenePoint(const Session& session, const Session::Item& item) {
    if (session.Workset() == nullptr || !ClashElevation(item)) return std::nullopt;
    const auto [x, y, z] = item.GetClashPoint();
    return session.Workset()->ToLocal({x, y, z});
}

// One phrase for each step that an activity reports.
QString StepText(const TaskProgress& progress) {
    const QString subject = QString::fromStdString(progress.subject);
    if (progress.step == "read") return MainWindow::tr("Reading %1").arg(subject);
    if (progress.step == "mesh") return MainWindow::tr("Meshing %1").arg(subject);
    if (progress.step == "scene") return MainWindow::tr("Preparing the 3-D view");
    if (progress.step == "build") return MainWindow::tr("Finding neighbours");
    if (progress.step == "rules") return MainWindow::tr("Reading the rules");
    if (progress.step == "check") return MainWindow::tr("Checking floor %1").arg(subject);
    if (progress.step == "collect") return MainWindow::tr("Collecting results");
    return {};
}

}  // namespace

MainWindow::MainWindow(SessionOptions options, const QString& language,
                       std::unique_ptr<Prompts> prompts)
    : prompts_(std::move(prompts)),
      names_(language),
      session_(std::move(options)),
      poll_(new QTimer(this)) {
    setObjectName("mainWindow");
    resize(kRoomNeeded.expandedTo(screen()->availableSize() * kShareOfScreen));
    BuildActions();
    columns_ = new QSplitter(this);
    columns_->setObjectName("columns");
    columns_->setChildrenCollapsible(false);
    columns_->addWidget(BuildLeft());
    columns_->addWidget(BuildMiddle());
    columns_->addWidget(BuildRight());
    columns_->setStretchFactor(1, 3);
    columns_->setStretchFactor(2, 2);
    columns_->setSizes({250, 760, 490});
    setCentralWidget(columns_);
    BuildStatus();
    poll_->setInterval(kPollMilliseconds);
    connect(poll_, &QTimer::timeout, this, &MainWindow::PollSession);
    KyCheckTestTool::Instance()->InitQGNIContext(&view_->Diagnostics());
    UpdateActions();
    UpdateTitle();
}

MainWindow::~MainWindow() {
    KyCheckTestTool::Instance()->Reset();
}

QAction* MainWindow::AddAction(const QString& text, const char* name, const QKeySequence& key,
                               const QString& tip) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(key);
    const QString keyText = key.toString(QKeySequence::NativeText);
    action->setToolTip(keyText.isEmpty() ? tip : tr("%1 (%2)").arg(tip, keyText));
    addAction(action);
    return action;
}

void MainWindow::BuildActions() {
    openModels_ = AddAction(tr("Open models"), "openModels", QKeySequence::Open,
                            tr("Open IFC models; several are one building"));
    openResults_ = AddAction(tr("Open results"), "openResults", QKeySequence("Ctrl+Shift+O"),
                             tr("Open saved results with their models"));
    save_ = AddAction(tr("Save"), "save", QKeySequence::Save, tr("Save the results"));
    saveAs_ = AddAction(tr("Save as"), "saveAs", QKeySequence("Ctrl+Shift+S"),
                        tr("Save the results in another file"));
    rules_ = AddAction(tr("Rules"), "rules", {}, tr("Choose the rule file of the next check"));
    run_ = AddAction(tr("Run check"), "run", QKeySequence("F5"),
                     tr("Check the chosen kinds on the chosen floors"));
    stop_ = AddAction(tr("Stop"), "stop", QKeySequence("Shift+F5"), tr("Stop what is going on"));
    expand_ = AddAction(tr("Open level"), "expandLevel", QKeySequence("Ctrl+Shift+Right"),
                        tr("Open the next level of the tree"));
    collapse_ = AddAction(tr("Close level"), "collapseLevel", QKeySequence("Ctrl+Shift+Left"),
                          tr("Close the deepest open level of the tree"));
    fitAll_ = AddAction(tr("Fit all"), "fitAll", QKeySequence("Ctrl+Home"),
                        tr("Show the whole building"));
    fitClash_ = AddAction(tr("Fit clash"), "fitClash", QKeySequence("Ctrl+E"),
                          tr("Go to the selected clash"));
    keepView_ = AddAction(tr("Keep view"), "keepView", QKeySequence("Ctrl+K"),
                          tr("Remember this view with the selected clash"));
    section_ = AddAction(tr("Section"), "section", QKeySequence("Ctrl+T"),
                         tr("Cut the building above the floor of the selected clash"));
    section_->setCheckable(true);
    export_ = AddAction(tr("Export drawing"), "export", {},
                        tr("Write the clash point and boxes to a glTF file"));
    find_ = AddAction(tr("Find"), "find", QKeySequence::Find, tr("Search the results"));

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
    connect(keepView_, &QAction::triggered, this, &MainWindow::KeepView);
    connect(export_, &QAction::triggered, this, &MainWindow::ExportDiagnostics);
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

QWidget* MainWindow::BuildLeft() {
    auto* left = new QWidget(this);
    auto* column = new QVBoxLayout(left);
    kinds_ = new KindTree(names_, left);
    kinds_->setObjectName("kinds");
    floors_ = new QListWidget(left);
    floors_->setObjectName("floors");
    floors_->setAccessibleName(tr("Floors to check"));

    auto* levels = new QToolBar(left);
    levels->addActions({expand_, collapse_});
    column->addWidget(new QLabel(tr("<b>Kinds to check</b>"), left));
    column->addWidget(levels);
    column->addWidget(kinds_, 3);
    column->addWidget(new QLabel(tr("<b>Floors to check</b>"), left));
    column->addWidget(floors_, 1);
    connect(expand_, &QAction::triggered, kinds_, [this] { kinds_->ExpandByLevel(true); });
    connect(collapse_, &QAction::triggered, kinds_, [this] { kinds_->ExpandByLevel(false); });
    connect(kinds_, &KindTree::CheckChanged, this, &MainWindow::UpdateActions);
    connect(floors_, &QListWidget::itemChanged, this, &MainWindow::UpdateActions);
    return left;
}

QWidget* MainWindow::BuildMiddle() {
    auto* results = new QWidget(this);
    auto* column = new QVBoxLayout(results);
    filter_ = new FilterBar(names_, results);
    list_ = new ResultList(results);
    list_->setObjectName("results");
    model_ = new ResultModel(session_, names_, this);
    list_->SetResultModel(model_);
    counts_ = new QLabel(results);
    counts_->setObjectName("counts");
    counts_->setTextFormat(Qt::RichText);
    column->addWidget(filter_);
    column->addWidget(list_, 1);
    column->addWidget(counts_);

    openings_ = new OpeningList(names_, this);
    openings_->setObjectName("openings");
    notes_ = new NotesPane(this);
    notes_->setObjectName("notes");
    pages_ = new QTabWidget(this);
    pages_->setObjectName("pages");
    pages_->setDocumentMode(true);
    pages_->addTab(results, tr("Clashes"));
    pages_->addTab(openings_, tr("Openings"));
    pages_->addTab(notes_, tr("Notes"));

    connect(filter_, &FilterBar::Changed, this, [this] {
        model_->SetFilter(filter_->Filter());
        ShowCounts();
    });
    connect(model_, &ResultModel::Edited, this, [this] {
        ShowCounts();
        UpdateTitle();
        UpdateActions();
    });
    // A reset forgets the current row without a word.
    connect(model_, &ResultModel::modelReset, this, &MainWindow::ShowSelected);
    connect(list_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &MainWindow::ShowSelected);
    connect(find_, &QAction::triggered, filter_, [this] {
        auto* text = filter_->findChild<QLineEdit*>("filterText");
        text->setFocus();
        text->selectAll();
    });
    connect(openings_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { ShowOpening(current.row()); });
    connect(pages_, &QTabWidget::currentChanged, this, [this](int page) {
        if (pages_->widget(page) == openings_) {
            ShowOpening(openings_->currentIndex().row());
        } else if (showsOpening_) {
            ShowSelected();
        }
    });
    return pages_;
}

QWidget* MainWindow::BuildRight() {
    auto* right = new QWidget(this);
    auto* column = new QVBoxLayout(right);
    auto* bar = new QToolBar(right);
    bar->addActions({fitAll_, fitClash_, keepView_, section_});
    sectionHeight_ = new QSpinBox(right);
    sectionHeight_->setObjectName("sectionHeight");
    sectionHeight_->setRange(100, 20000);
    sectionHeight_->setSingleStep(100);
    sectionHeight_->setValue(2500);
    sectionHeight_->setSuffix(tr(" mm"));
    sectionHeight_->setToolTip(tr("Height of the section above the floor"));
    sectionHeight_->setAccessibleName(sectionHeight_->toolTip());
    bar->addWidget(sectionHeight_);
    bar->addAction(export_);
    view_ = new SceneView(right);
    view_->setObjectName("scene");
    details_ = new DetailPane(names_, right);
    details_->setObjectName("details");
    column->addWidget(bar);
    column->addWidget(view_, 1);
    column->addWidget(details_);
    connect(fitAll_, &QAction::triggered, view_, &SceneView::FitAll);
    connect(fitClash_, &QAction::triggered, view_, &SceneView::FitClash);
    connect(section_, &QAction::toggled, this, &MainWindow::UpdateSection);
    connect(sectionHeight_, &QSpinBox::valueChanged, this, &MainWindow::UpdateSection);
    return right;
}

void MainWindow::BuildStatus() {
    message_ = new QLabel(this);
    message_->setObjectName("message");
    progress_ = new QProgressBar(this);
    progress_->setObjectName("progress");
    progress_->setMaximumWidth(260);
    progress_->setVisible(false);
    statusBar()->addWidget(message_, 1);
    statusBar()->addPermanentWidget(progress_);
}

void MainWindow::ChooseModels() {
    std::vector<std::filesystem::path> models;
    for (const QString& file : prompts_->ChooseModels(this, tr("Open models")))
        models.push_back(ToPath(file));
    OpenModels(models);
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
    message_->setText(tr("The next check uses the rules %1").arg(*file));
}

void MainWindow::OpenResults(const std::filesystem::path& file) {
    if (IsBusy() || !MayDropResults()) return;
    std::string error;
    if (!session_.OpenResults(file, error)) {
        prompts_->ShowProblems(this, tr("Open results"), {QString::fromStdString(error)});
        return;
    }
    ShowResults();
    auto models = ReadModelList(file, error);
    if (!error.empty())
        prompts_->ShowProblems(this, tr("Open results"), {QString::fromStdString(error)});
    if (!models) {
        models.emplace();
        for (const QString& model :
             prompts_->ChooseModels(this, tr("Which models are these results of?")))
            models->push_back(ToPath(model));
    }
    if (!models->empty()) StartReading(std::move(*models), OpenedFor::kResults);
}

void MainWindow::StartReading(std::vector<std::filesystem::path> models, OpenedFor openedFor) {
    openedFor_ = openedFor;
    session_.StartOpen(std::move(models));
    poll_->start();
    UpdateActions();
    ShowProgress();
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
    std::string error;
    const bool saved = session_.SaveResults(file, error);
    if (saved) {
        message_->setText(tr("Saved to %1").arg(ToText(file)));
    } else {
        prompts_->ShowProblems(this, tr("Save results"), {QString::fromStdString(error)});
    }
    UpdateTitle();
    UpdateActions();
    return saved;
}

bool MainWindow::MayDropResults() {
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

void MainWindow::StartCheck() {
    if (IsBusy() || session_.Workset() == nullptr) return;
    session_.StartCheck({CheckedFloors(), kinds_->CheckedKinds()});
    poll_->start();
    UpdateActions();
    ShowProgress();
}

void MainWindow::StopActivity() {
    if (!IsBusy()) return;
    session_.RequestStop();
    message_->setText(tr("Stopping ..."));
}

void MainWindow::PollSession() {
    const auto outcome = session_.Poll();
    if (!outcome) {
        ShowProgress();
        return;
    }
    poll_->stop();
    progress_->setVisible(false);
    ShowOutcome(*outcome);
    UpdateActions();
    UpdateTitle();
}

void MainWindow::ShowProgress() {
    const TaskProgress progress = session_.Progress();
    progress_->setVisible(true);
    progress_->setRange(0, static_cast<int>(progress.total));
    progress_->setValue(static_cast<int>(std::min(progress.done, progress.total)));
    const QString text = StepText(progress);
    if (!text.isEmpty()) message_->setText(text);
}

void MainWindow::ShowOutcome(const ActivityOutcome& outcome) {
    if (outcome.activity == Activity::kOpening) {
        if (outcome.succeeded) {
            if (openedFor_ == OpenedFor::kNewWork) session_.CloseResults();
            ShowModels();
            notes_->SetReadingNotes(outcome.warnings);
        }
        message_->setText(outcome.succeeded ? tr("Models: %L1, components: %L2")
                                                  .arg(session_.Models().size())
                                                  .arg(session_.Workset()->Components().size())
                          : outcome.stopped ? tr("Stopped: no models were opened")
                                            : tr("The models could not be opened"));
    } else {
        message_->setText(outcome.succeeded ? tr("Check done, clashes: %L1").arg(outcome.clashes)
                          : outcome.stopped ? tr("Check stopped: the list is not complete")
                                            : tr("The check could not be done"));
        if (outcome.rules) notes_->SetCheckNotes(outcome.rules, outcome.warnings);
    }
    ShowResults();
    ShowNotes();
    if (!outcome.errors.empty())
        prompts_->ShowProblems(this, windowTitle(), ToTexts(outcome.errors));
}

void MainWindow::ShowModels() {
    kinds_->SetKinds(session_.Kinds());
    floors_->clear();
    for (const SCollisionFloor& floor : session_.Floors()) {
        auto* item = new QListWidgetItem(QString::fromStdWString(floor.name), floors_);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    openings_->SetOpenings(session_.Openings());
    view_->SetMeshes(session_.Meshes());
}

void MainWindow::ShowResults() {
    model_->Reload();
    filter_->SetChoices(model_->Rows());
    model_->SetFilter(filter_->Filter());
    ShowCounts();
    UpdateTitle();
    UpdateActions();
}

void MainWindow::ShowNotes() {
    const int count = notes_->Count();
    pages_->setTabText(pages_->indexOf(notes_),
                       count == 0 ? tr("Notes") : tr("Notes (%L1)").arg(count));
}

void MainWindow::ShowCounts() {
    const ResultRows& rows = model_->Rows();
    QStringList parts;
    parts << (rows.Count() == rows.TotalCount()
                  ? tr("Clashes: <b>%L1</b>").arg(rows.Count())
                  : tr("Clashes: <b>%L1</b> of %L2").arg(rows.Count()).arg(rows.TotalCount()));
    for (const auto& [state, count] : rows.CountByState()) {
        parts << QStringLiteral("<span style='color:%1'>%2: %L3</span>")
                     .arg(StateColor(state, palette()).name(), StateName(state).toHtmlEscaped())
                     .arg(count);
    }
    counts_->setText(parts.join(QStringLiteral(" &nbsp;&middot;&nbsp; ")));
}

Session::Item* MainWindow::CurrentItem() const {
    const QModelIndex current = list_->currentIndex();
    if (!current.isValid()) return nullptr;
    return &model_->Rows().At(static_cast<std::size_t>(current.row()));
}

void MainWindow::ShowSelected() {
    const Session::Item* item = CurrentItem();
    showsOpening_ = false;
    details_->Show(item);
    ShowClashIn3d(item);
    UpdateActions();
}

// An opening is shown like a clash with one component, at the middle of its box.
void MainWindow::ShowOpening(int row) {
    showsOpening_ = true;
    KyCheckTestTool::Instance()->ClearAll();
    view_->Diagnostics().MarkChanged();
    details_->Show(nullptr);
    const auto& openings = session_.Openings();
    if (row < 0 || static_cast<std::size_t>(row) >= openings.size()) {
        view_->ShowClash(std::nullopt);
        return;
    }
    const Session::Hole& hole = *openings[static_cast<std::size_t>(row)];
    const auto component = session_.ComponentIndex(hole.projId, hole.objGuid);
    if (!component) return;
    const auto& box = session_.Workset()->Components()[*component].box;
    const auto low = session_.Workset()->ToLocal(box.min);
    const auto high = session_.Workset()->ToLocal(box.max);
    ShownClash shown;
    shown.main = component;
    shown.point = QVector3D(static_cast<float>((low[0] + high[0]) / 2),
                            static_cast<float>((low[1] + high[1]) / 2),
                            static_cast<float>((low[2] + high[2]) / 2));
    view_->ShowClash(shown);
    KyCheckTestTool::Instance()->DrawBoundingBox(
        CQNIMBoundingBox(CQNIMPosition(low[0], low[1], low[2]),
                         CQNIMPosition(high[0], high[1], high[2])),
        ToColor(MainColor()));
    view_->FitClash();
}

void MainWindow::ShowClashIn3d(const Session::Item* item) {
    KyCheckTestTool::Instance()->ClearAll();
    view_->Diagnostics().MarkChanged();
    const auto point = item == nullptr ? std::nullopt : ScenePoint(session_, *item);
    if (!point) {
        view_->ShowClash(std::nullopt);
        UpdateSection();
        return;
    }
    ShownClash clash;
    clash.main = session_.ComponentIndex(item->GetProjectA(), item->GetObjGuidA());
    clash.second = session_.ComponentIndex(item->GetProjectB(), item->GetObjGuidB());
    clash.point = QVector3D(static_cast<float>((*point)[0]), static_cast<float>((*point)[1]),
                            static_cast<float>((*point)[2]));
    view_->ShowClash(clash);
    DrawDiagnostics(*item);
    UpdateSection();
    if (const auto kept = Camera::FromText(QString::fromStdWString(item->GetViewport()))) {
        view_->SetCamera(*kept);
    } else {
        view_->FitClash();
    }
}

void MainWindow::DrawDiagnostics(const Session::Item& item) {
    KyCheckTestTool& tool = *KyCheckTestTool::Instance();
    const auto drawBox = [&](int project, const std::wstring& guid, const QColor& color) {
        const auto component = session_.ComponentIndex(project, guid);
        if (!component) return;
        const SceneBounds& bounds = session_.Meshes()->boundsOfComponent[*component];
        if (!bounds.IsEmpty()) tool.DrawBoundingBox(ToBox(bounds), ToColor(color));
    };
    drawBox(item.GetProjectA(), item.GetObjGuidA(), MainColor());
    drawBox(item.GetProjectB(), item.GetObjGuidB(), SecondColor());
    const auto point = ScenePoint(session_, item);
    tool.DrawCollisionPoint({(*point)[0], (*point)[1], (*point)[2]}, ToColor(ClashPointColor()));
}

void MainWindow::KeepView() {
    Session::Item* item = CurrentItem();
    if (item == nullptr) return;
    session_.SetViewport(*item, view_->CurrentCamera().ToText().toStdWString());
    message_->setText(tr("This view is kept with the clash"));
    UpdateTitle();
    UpdateActions();
}

// The floor of the selected clash, else the lowest one.
void MainWindow::UpdateSection() {
    const auto& workset = session_.Workset();
    if (!section_->isChecked() || workset == nullptr || workset->Projects().empty()) {
        view_->SetSection(std::nullopt);
        return;
    }
    const Session::Item* item = CurrentItem();
    const int project = item == nullptr ? workset->Projects().front().id : item->GetProjectA();
    const auto* model = workset->Project(project);
    if (model == nullptr || model->floors.empty()) return;
    const ifchost::WorksetFloor* floor = &model->floors.front();
    for (const auto& each : model->floors) {
        if (item != nullptr && each.name == item->GetFloorA()) floor = &each;
    }
    // The slab of the floor belongs to the section.
    constexpr double kSlab = 600.0;
    const double origin = workset->Origin().origin[2];
    view_->SetSection(Section{static_cast<float>(floor->under - origin - kSlab),
                              static_cast<float>(floor->under - origin + sectionHeight_->value())});
}

void MainWindow::ExportDiagnostics() {
    const auto file = prompts_->ChooseDrawingFile(this);
    if (!file) return;
    std::ofstream out(ToPath(*file), std::ios::binary);
    kycb::WriteGltf(view_->Diagnostics().Scene(), out);
    out.close();
    if (!out) {
        prompts_->ShowProblems(this, tr("Export drawing"), {tr("%1 cannot be written").arg(*file)});
    }
}

std::vector<std::wstring> MainWindow::CheckedFloors() const {
    std::vector<std::wstring> names;
    for (int row = 0; row < floors_->count(); ++row) {
        const QListWidgetItem* item = floors_->item(row);
        if (item->checkState() == Qt::Checked) names.push_back(item->text().toStdWString());
    }
    return names;
}

void MainWindow::UpdateActions() {
    const bool idle = !IsBusy();
    const bool hasModels = session_.Workset() != nullptr;
    const bool hasResults = model_ != nullptr && model_->Rows().TotalCount() > 0;
    const bool hasCurrent = list_ != nullptr && CurrentItem() != nullptr;
    openModels_->setEnabled(idle);
    openResults_->setEnabled(idle);
    save_->setEnabled(session_.IsModified());
    saveAs_->setEnabled(hasResults || session_.IsModified());
    run_->setEnabled(idle && hasModels && !CheckedFloors().empty() &&
                     !kinds_->CheckedKinds().empty());
    stop_->setEnabled(!idle);
    fitAll_->setEnabled(hasModels);
    fitClash_->setEnabled(hasModels && hasCurrent);
    keepView_->setEnabled(hasModels && hasCurrent);
    section_->setEnabled(hasModels);
    export_->setEnabled(hasModels && hasCurrent);
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
    list_->horizontalHeader()->restoreState(settings.value("resultColumns").toByteArray());
}

void MainWindow::KeepLayout(QSettings& settings) const {
    settings.setValue("window", saveGeometry());
    settings.setValue("columns", columns_->saveState());
    settings.setValue("resultColumns", list_->horizontalHeader()->saveState());
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
    if (event->type() != QEvent::PaletteChange || counts_ == nullptr) return;
    UpdateIcons();
    ShowCounts();
}

}  // namespace desk
