// SPDX-License-Identifier: Apache-2.0
#include "desk/view/SceneView.h"

#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <limits>

#include "desk/view/SceneColors.h"

namespace desk {
namespace {

// One wheel notch reports 120; this makes it a factor of about 1.2.
constexpr float kZoomPerWheelUnit = 1.0F / 650.0F;
constexpr float kZoomPerKey = 1.25F;
constexpr float kTurnPerPixel = 0.008F;
constexpr float kTurnPerKey = 0.12F;
constexpr float kMovePerKey = 0.05F;
// Of a long component only what surrounds the clash is of interest (mm).
constexpr float kClashSurroundings = 1500.0F;
// So much of the ghost stays in front of the clash (mm).
constexpr float kClashClearance = 600.0F;

constexpr float kGhostAlpha = 0.28F;
constexpr float kGhostEdgeAlpha = 0.22F;
constexpr float kEdgeAlpha = 0.55F;
constexpr float kEdgeWidth = 1.0F;
constexpr float kDiagnosticWidth = 2.0F;

// Empty for a component that is not there.
IndexRange RangeOf(std::optional<std::size_t> component, const std::vector<IndexRange>& ranges) {
    if (!component || *component >= ranges.size()) return {};
    return ranges[*component];
}

QVector4D Rgba(const QColor& color, float alpha = 1.0F) {
    return {color.redF(), color.greenF(), color.blueF(), alpha};
}

}  // namespace

// The part of the view that is drawn by OpenGL; everything else is the view's own business.
class SceneView::Canvas : public QOpenGLWidget {
  public:
    explicit Canvas(SceneView& view) : QOpenGLWidget(&view), view_(view) {
        setFormat(WantedFormat());
        setAttribute(Qt::WA_TransparentForMouseEvents);
    }
    ~Canvas() override {
        // The context goes after this object and must not call back.
        if (context() != nullptr) context()->disconnect(this);
        ReleaseGl();
    }

    static QSurfaceFormat WantedFormat() {
        QSurfaceFormat wanted;
        wanted.setVersion(3, 3);
        wanted.setProfile(QSurfaceFormat::CoreProfile);
        wanted.setDepthBufferSize(24);
        wanted.setSamples(4);
        return wanted;
    }

    // The widget itself does not survive a graphics system without OpenGL.
    static bool IsSupported() {
        QOpenGLContext probe;
        probe.setFormat(WantedFormat());
        return probe.create();
    }

  protected:
    void initializeGL() override {
        view_.InitializeGl();
        // The widget gets another context when it moves to another window.
        connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &Canvas::ReleaseGl,
                Qt::UniqueConnection);
    }
    void paintGL() override { view_.PaintGl(); }

  private:
    void ReleaseGl() {
        if (context() == nullptr) return;
        makeCurrent();
        view_.ReleaseGl();
        doneCurrent();
    }

    SceneView& view_;
};

SceneView::SceneView(QWidget* parent) : QWidget(parent), diagnostics_([this] { Redraw(); }) {
    if (Canvas::IsSupported()) {
        canvas_ = new Canvas(*this);
    } else {
        problem_ = NoGraphicsText();
    }
    hint_ = new QLabel(this);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setWordWrap(true);
    hint_->setMargin(20);
    hint_->setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(240, 200);
    setAccessibleName(tr("3-D view"));
    UpdateHint();
}

// Before the members that it draws with.
SceneView::~SceneView() {
    delete canvas_;
}

QString SceneView::NoGraphicsText() {
    return tr("This computer's graphics cannot show the model (OpenGL 3.3 is needed).");
}

void SceneView::ReleaseGl() {
    renderer_.Release();
    diagnostics_.Release();
}

void SceneView::Redraw() {
    if (canvas_ != nullptr) canvas_->update();
}

void SceneView::SetMeshes(std::shared_ptr<const SceneMeshes> meshes) {
    meshes_ = std::move(meshes);
    needsUpload_ = true;
    clash_.reset();
    UpdateHint();
    FitAll();
}

void SceneView::ShowClash(const std::optional<ShownClash>& clash) {
    clash_ = clash;
    Redraw();
}

void SceneView::SetSection(const std::optional<Section>& section) {
    section_ = section;
    Redraw();
}

void SceneView::SetCamera(const Camera& camera) {
    camera_ = camera;
    Redraw();
}

float SceneView::Aspect() const {
    return static_cast<float>(width()) / static_cast<float>(std::max(height(), 1));
}

void SceneView::FitAll() {
    if (meshes_ != nullptr) camera_.Fit(meshes_->bounds, Aspect());
    Redraw();
}

SceneBounds SceneView::ClashBounds() const {
    SceneBounds bounds;
    if (!clash_) return bounds;
    const QVector3D& point = clash_->point;
    for (const float side : {-kClashSurroundings, kClashSurroundings})
        bounds.Add(point.x() + side, point.y() + side, point.z() + side);
    return bounds;
}

void SceneView::FitClash() {
    camera_.Fit(ClashBounds(), Aspect());
    Redraw();
}

void SceneView::InitializeGl() {
    needsUpload_ = true;
    if (renderer_.Initialize() && diagnostics_.Initialize()) return;
    problem_ = NoGraphicsText();
    UpdateHint();
}

void SceneView::PaintGl() {
    auto* gl = QOpenGLContext::currentContext()->functions();
    const QColor ground = SceneGround(palette());
    gl->glClearColor(ground.redF(), ground.greenF(), ground.blueF(), 1.0F);
    gl->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    if (!problem_.isEmpty() || meshes_ == nullptr) return;
    const QMatrix4x4 viewProjection = camera_.ViewProjection(Aspect(), meshes_->bounds);
    DrawMeshes(viewProjection);
    // What diagnostics point at lies inside of components as a rule.
    gl->glDisable(GL_DEPTH_TEST);
    diagnostics_.Draw(viewProjection, Lines(kDiagnosticWidth));
}

// Widths are those of a plain display; a dense one has more pixels for the same line.
LinePixels SceneView::Lines(float width) const {
    const auto density = static_cast<float>(devicePixelRatioF());
    return {QVector2D(static_cast<float>(this->width()), static_cast<float>(height())) * density,
            width * density};
}

void SceneView::DrawMeshes(const QMatrix4x4& viewProjection) {
    auto* gl = QOpenGLContext::currentContext()->functions();
    if (needsUpload_) renderer_.Upload(meshes_.get());
    needsUpload_ = false;
    constexpr float kEverywhere = std::numeric_limits<float>::max();
    renderer_.Begin(viewProjection, camera_, section_ ? section_->bottom : -kEverywhere,
                    section_ ? section_->top : kEverywhere, Lines(kEdgeWidth));
    gl->glEnable(GL_DEPTH_TEST);
    gl->glDepthFunc(GL_LEQUAL);
    if (clash_) {
        DrawGhost();
        DrawClash();
    } else {
        DrawBuilding();
    }
    renderer_.End();
}

// So that the edges on them are not hidden: by rounding, and where a face is steep, by as much as
// it comes nearer within the width of a line.
void SceneView::StepFacesBack() {
    auto* gl = QOpenGLContext::currentContext()->functions();
    gl->glEnable(GL_POLYGON_OFFSET_FILL);
    gl->glPolygonOffset(Lines(kEdgeWidth).width, 1.0F);
}

void SceneView::DrawBuilding() {
    auto* gl = QOpenGLContext::currentContext()->functions();
    StepFacesBack();
    for (const auto& group : meshes_->groups)
        renderer_.Draw(group.range, Rgba(SpecialtyColor(group.specialty)));
    gl->glDisable(GL_POLYGON_OFFSET_FILL);
    DrawAllEdges(kEdgeAlpha);
}

void SceneView::DrawAllEdges(float alpha) {
    auto* gl = QOpenGLContext::currentContext()->functions();
    const IndexRange all{0, static_cast<std::uint32_t>(meshes_->edges.size())};
    gl->glEnable(GL_BLEND);
    gl->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    renderer_.DrawEdges(all, Rgba(EdgeColor(palette()), alpha));
    gl->glDisable(GL_BLEND);
}

// What stands between the eye and the clash is cut away. Of the rest only the nearest surface is
// drawn (the depth goes first, the colour second), so that the ghost stays equally thin however
// many walls stand behind each other.
void SceneView::DrawGhost() {
    auto* gl = QOpenGLContext::currentContext()->functions();
    const IndexRange all{0, static_cast<std::uint32_t>(meshes_->indices.size())};
    const QVector4D color = Rgba(GhostColor(palette()), kGhostAlpha);
    const QVector3D toClash = clash_->point - camera_.Position();
    renderer_.SetNearCut(QVector3D::dotProduct(toClash, camera_.Forward()) - kClashClearance);
    StepFacesBack();
    gl->glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    renderer_.Draw(all, color);
    gl->glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    gl->glEnable(GL_BLEND);
    gl->glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    renderer_.Draw(all, color);
    gl->glDisable(GL_BLEND);
    gl->glDisable(GL_POLYGON_OFFSET_FILL);
    DrawAllEdges(kGhostEdgeAlpha);
    renderer_.SetNearCut(0.0F);
}

// The clash is seen through everything else.
void SceneView::DrawClash() {
    auto* gl = QOpenGLContext::currentContext()->functions();
    gl->glClear(GL_DEPTH_BUFFER_BIT);
    renderer_.Draw(RangeOf(clash_->main, meshes_->ofComponent), Rgba(MainColor()));
    renderer_.Draw(RangeOf(clash_->second, meshes_->ofComponent), Rgba(SecondColor()));
    // What one of the two hides of the other shines through.
    gl->glDisable(GL_DEPTH_TEST);
    gl->glEnable(GL_BLEND);
    renderer_.Draw(RangeOf(clash_->second, meshes_->ofComponent), Rgba(SecondColor(), 0.35F));
    renderer_.Draw(RangeOf(clash_->main, meshes_->ofComponent), Rgba(MainColor(), 0.2F));
    renderer_.DrawEdges(RangeOf(clash_->second, meshes_->edgesOfComponent),
                        Rgba(SecondColor().darker(), kEdgeAlpha));
    renderer_.DrawEdges(RangeOf(clash_->main, meshes_->edgesOfComponent),
                        Rgba(MainColor().darker(), kEdgeAlpha));
    gl->glDisable(GL_BLEND);
    gl->glEnable(GL_DEPTH_TEST);
}

void SceneView::UpdateHint() {
    hint_->setText(problem_.isEmpty() ? tr("Open IFC models to see them here.") : problem_);
    hint_->setVisible(!problem_.isEmpty() || meshes_ == nullptr);
}

void SceneView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (canvas_ != nullptr) canvas_->setGeometry(rect());
    hint_->setGeometry(rect());
}

void SceneView::mousePressEvent(QMouseEvent* event) {
    lastMouse_ = event->position().toPoint();
}

void SceneView::mouseMoveEvent(QMouseEvent* event) {
    const QPoint moved = event->position().toPoint() - lastMouse_;
    lastMouse_ = event->position().toPoint();
    const auto right = static_cast<float>(moved.x());
    const auto down = static_cast<float>(moved.y());
    const bool shifted = event->modifiers().testFlag(Qt::ShiftModifier);
    if (event->buttons().testFlag(Qt::LeftButton) && !shifted) {
        camera_.Orbit(-right * kTurnPerPixel, down * kTurnPerPixel);
    } else if (event->buttons() != Qt::NoButton) {
        const auto viewHeight = static_cast<float>(std::max(height(), 1));
        camera_.Pan(-right / viewHeight, down / viewHeight);
    }
    Redraw();
}

void SceneView::wheelEvent(QWheelEvent* event) {
    camera_.Zoom(std::exp(static_cast<float>(event->angleDelta().y()) * kZoomPerWheelUnit));
    Redraw();
}

void SceneView::keyPressEvent(QKeyEvent* event) {
    const bool move = event->modifiers().testFlag(Qt::ShiftModifier);
    const auto step = [&](float right, float up) {
        if (move) {
            camera_.Pan(right * kMovePerKey, up * kMovePerKey);
        } else {
            camera_.Orbit(-right * kTurnPerKey, up * kTurnPerKey);
        }
    };
    switch (event->key()) {
        case Qt::Key_Left:
            step(-1, 0);
            break;
        case Qt::Key_Right:
            step(1, 0);
            break;
        case Qt::Key_Up:
            step(0, 1);
            break;
        case Qt::Key_Down:
            step(0, -1);
            break;
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            camera_.Zoom(kZoomPerKey);
            break;
        case Qt::Key_Minus:
            camera_.Zoom(1.0F / kZoomPerKey);
            break;
        case Qt::Key_F:
            FitClash();
            break;
        case Qt::Key_Home:
            FitAll();
            break;
        default:
            QWidget::keyPressEvent(event);
            return;
    }
    Redraw();
}

}  // namespace desk
