// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ScenePane.h"

#include "KYCollisionBase/result/CExistingHole.h"

#include <QAction>
#include <QSpinBox>
#include <QToolBar>
#include <QVBoxLayout>

#include "desk/core/FloorSection.h"
#include "desk/core/ScenePlace.h"
#include "desk/view/ClashDrawing.h"
#include "desk/view/DetailPane.h"
#include "desk/view/PathText.h"
#include "desk/view/Prompts.h"
#include "desk/view/SceneView.h"
#include "desk/view/ToolActions.h"

namespace desk {
namespace {

QVector3D ToVector(const ScenePoint& point) {
    return {static_cast<float>(point[0]), static_cast<float>(point[1]),
            static_cast<float>(point[2])};
}

QSpinBox* NewSectionHeight(QWidget& parent) {
    auto* height = new QSpinBox(&parent);
    height->setObjectName("sectionHeight");
    height->setRange(100, 20000);
    height->setSingleStep(100);
    height->setValue(2500);
    height->setSuffix(ScenePane::tr(" mm"));
    height->setToolTip(ScenePane::tr("Height of the section above the floor"));
    height->setAccessibleName(height->toolTip());
    return height;
}

}  // namespace

ScenePane::ScenePane(Session& session, const KindNames& names, Prompts& prompts, QWidget* parent)
    : QWidget(parent),
      session_(session),
      prompts_(prompts),
      sectionHeight_(NewSectionHeight(*this)),
      view_(new SceneView(this)),
      details_(new DetailPane(names, this)),
      drawing_(std::make_unique<ClashDrawing>(view_->Diagnostics())) {
    view_->setObjectName("scene");
    details_->setObjectName("details");
    BuildActions();
    auto* bar = new QToolBar(this);
    bar->addActions({fitAll_, fitClash_, keepView_, section_});
    bar->addWidget(sectionHeight_);
    bar->addAction(export_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(bar);
    column->addWidget(view_, 1);
    column->addWidget(details_);
    UpdateActions();
}

// Here the drawing is known.
ScenePane::~ScenePane() = default;

void ScenePane::BuildActions() {
    fitAll_ = NewAction(*this, tr("Fit all"), "fitAll", QKeySequence("Ctrl+Home"),
                        tr("Show the whole building"));
    fitClash_ = NewAction(*this, tr("Fit clash"), "fitClash", QKeySequence("Ctrl+E"),
                          tr("Go to the selected clash or opening"));
    keepView_ = NewAction(*this, tr("Keep view"), "keepView", QKeySequence("Ctrl+K"),
                          tr("Remember this view with the selected clash"));
    section_ = NewAction(*this, tr("Section"), "section", QKeySequence("Ctrl+T"),
                         tr("Cut the building above the floor of the selected clash"));
    section_->setCheckable(true);
    export_ = NewAction(*this, tr("Export drawing"), "export", {},
                        tr("Write the drawing (point and boxes) to a glTF file"));
    connect(fitAll_, &QAction::triggered, view_, &SceneView::FitAll);
    connect(fitClash_, &QAction::triggered, view_, &SceneView::FitClash);
    connect(keepView_, &QAction::triggered, this, &ScenePane::KeepView);
    connect(section_, &QAction::toggled, this, &ScenePane::UpdateSection);
    connect(sectionHeight_, &QSpinBox::valueChanged, this, &ScenePane::UpdateSection);
    connect(export_, &QAction::triggered, this, &ScenePane::Export);
}

void ScenePane::ShowModels() {
    view_->SetMeshes(session_.Meshes());
    ShowNothing();
}

void ScenePane::ShowClash(Session::Item* clash) {
    ShowNothing();
    clash_ = clash;
    details_->Show(clash);
    UpdateActions();
    const auto place = clash == nullptr ? std::nullopt : PlaceOf(session_, *clash);
    if (!place) return;
    floor_.emplace(clash->GetProjectA(), clash->GetFloorA());
    drawing_->Draw(*place, *session_.Meshes());
    Show({place->main, place->second, ToVector(place->point)});
    if (const auto kept = Camera::FromText(QString::fromStdWString(clash->GetViewport())))
        view_->SetCamera(*kept);
}

void ScenePane::ShowOpening(const Session::Hole* opening) {
    ShowNothing();
    const auto place = opening == nullptr ? std::nullopt : PlaceOf(session_, *opening);
    if (!place) return;
    floor_.emplace(opening->projId, opening->floorName);
    drawing_->Draw(*place);
    Show({place->component, std::nullopt, ToVector(place->Middle())});
}

void ScenePane::Show(const ShownClash& shown) {
    view_->ShowClash(shown);
    view_->FitClash();
    UpdateSection();
    UpdateActions();
}

void ScenePane::ShowNothing() {
    clash_ = nullptr;
    floor_.reset();
    details_->Show(nullptr);
    drawing_->Clear();
    view_->ShowClash(std::nullopt);
    UpdateSection();
    UpdateActions();
}

void ScenePane::SetReadOnly(bool readOnly) {
    readOnly_ = readOnly;
    UpdateActions();
}

void ScenePane::KeepView() {
    if (clash_ == nullptr) return;
    session_.SetViewport(*clash_, view_->CurrentCamera().ToText().toStdWString());
    emit ViewKept();
}

void ScenePane::Export() {
    const auto file = prompts_.ChooseDrawingFile(this);
    if (!file || drawing_->Write(ToPath(*file))) return;
    prompts_.ShowProblems(this, tr("Export drawing"), {tr("%1 cannot be written").arg(*file)});
}

// The floor of what is on display, else the lowest one.
void ScenePane::UpdateSection() {
    if (!section_->isChecked() || session_.Workset() == nullptr) {
        view_->SetSection(std::nullopt);
        return;
    }
    view_->SetSection(SectionAbove(*session_.Workset(), floor_, sectionHeight_->value()));
}

void ScenePane::UpdateActions() {
    const bool hasModels = session_.Workset() != nullptr;
    fitAll_->setEnabled(hasModels);
    section_->setEnabled(hasModels);
    sectionHeight_->setEnabled(hasModels);
    fitClash_->setEnabled(floor_.has_value());
    export_->setEnabled(floor_.has_value());
    keepView_->setEnabled(hasModels && clash_ != nullptr && !readOnly_);
}

}  // namespace desk
