// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPoint>
#include <QWidget>
#include <memory>
#include <optional>

#include "desk/core/FloorSection.h"
#include "desk/core/SceneMeshes.h"
#include "desk/view/Camera.h"
#include "desk/view/GlSceneContext.h"
#include "desk/view/MeshRenderer.h"

class QLabel;

namespace desk {

/// What of the scene a clash is about.
struct ShownClash {
    std::optional<std::size_t> main;    ///< component
    std::optional<std::size_t> second;  ///< component
    QVector3D point;                    ///< scene coordinates (mm)

    bool operator==(const ShownClash&) const = default;
};

/// The 3-D view: all components shaded by specialty, or the two of a clash in their colours with
/// the rest as a ghost around them.
///
/// Left button: turn. Middle or right button, or shift and left: move. Wheel: zoom. The arrow keys
/// turn, with shift they move; plus and minus zoom; F fits the clash, Home the whole building.
///
/// Where the graphics system has no OpenGL, it says so in its place; all else works.
class SceneView : public QWidget {
    Q_OBJECT

  public:
    explicit SceneView(QWidget* parent = nullptr);
    ~SceneView() override;

    /// Takes the scene to be shown (null: none) and fits it into the view.
    void SetMeshes(std::shared_ptr<const SceneMeshes> meshes);
    void ShowClash(const std::optional<ShownClash>& clash);
    void SetSection(const std::optional<Section>& section);

    void FitAll();
    void FitClash();

    const Camera& CurrentCamera() const { return camera_; }
    void SetCamera(const Camera& camera);

    /// What diagnostic drawing draws into.
    GlSceneContext& Diagnostics() { return diagnostics_; }

    /// Empty unless the graphics system cannot show the scene.
    const QString& Problem() const { return problem_; }

    QSize sizeHint() const override { return {560, 480}; }

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    class Canvas;

    void InitializeGl();
    void PaintGl();
    void Redraw();
    void DrawMeshes(const QMatrix4x4& viewProjection);
    LinePixels Lines(float width) const;
    void StepFacesBack();
    void DrawAllEdges(float alpha);
    void DrawBuilding();
    void DrawGhost();
    void DrawClash();
    void UpdateHint();
    static QString NoGraphicsText();
    float Aspect() const;
    void ReleaseGl();
    SceneBounds ClashBounds() const;

    std::shared_ptr<const SceneMeshes> meshes_;
    bool needsUpload_ = false;
    std::optional<ShownClash> clash_;
    std::optional<Section> section_;
    Camera camera_;
    MeshRenderer renderer_;
    GlSceneContext diagnostics_;
    Canvas* canvas_ = nullptr;  // null without OpenGL
    QLabel* hint_;
    QPoint lastMouse_;
    QString problem_;
};

}  // namespace desk
