// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMatrix4x4>
#include <QOpenGLBuffer>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <QVector4D>

#include "desk/core/SceneMeshes.h"
#include "desk/view/Camera.h"
#include "desk/view/WideLines.h"

namespace desk {

/// Draws runs of triangles of a scene, flat shaded, and of its edges, each run in one colour.
///
/// All operations need the view's OpenGL context.
class MeshRenderer {
  public:
    bool Initialize();
    void Release();

    /// Brings the triangles to the graphics card; null takes them away.
    void Upload(const SceneMeshes* meshes);

    /// Starts a frame. What lies outside of the section's heights (mm) is not drawn.
    void Begin(const QMatrix4x4& viewProjection, const Camera& camera, float sectionBottom,
               float sectionTop, const LinePixels& lines);
    /// What lies nearer to the eye than this is not drawn from now on (mm); 0 at first.
    void SetNearCut(float distance);
    void Draw(const IndexRange& range, const QVector4D& color);
    void DrawEdges(const IndexRange& range, const QVector4D& color);
    void End();

  private:
    static void Draw(QOpenGLShaderProgram& program, GLenum primitive, std::size_t firstIndex,
                     std::uint32_t count, const QVector4D& color);

    QOpenGLShaderProgram faces_;
    QOpenGLShaderProgram edges_;
    QOpenGLBuffer vertices_{QOpenGLBuffer::VertexBuffer};
    // The triangles' indices, and behind them the edges'.
    QOpenGLBuffer indices_{QOpenGLBuffer::IndexBuffer};
    std::size_t edgesFrom_ = 0;
    QOpenGLVertexArrayObject layout_;
};

}  // namespace desk
