// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "KYCollisionBase/ui/IQNGIContext.h"
#include "KYCollisionBase/ui/SceneRecorder.h"

#include <QOpenGLBuffer>
#include <QOpenGLShaderProgram>
#include <QOpenGLVertexArrayObject>
#include <functional>
#include <string>
#include <vector>

#include "desk/view/WideLines.h"

class QMatrix4x4;

namespace desk {

/// The graphics context that diagnostic drawing draws into: coloured lines in the 3-D view.
///
/// Nodes can be created and removed without an OpenGL context at hand; Draw brings the lines to
/// the graphics card when they have changed. Initialize, Draw and Release need the view's context.
class GlSceneContext : public IQNGIContext {
  public:
    /// `changed` is called when something new wants to be drawn; it may be empty.
    explicit GlSceneContext(std::function<void()> changed);

    IQNGINode* CreateNode(QNGINodeId parent, const std::wstring& name) override;
    int GetLineState() const override { return 0; }

    const kycb::SceneRecorder& Scene() const { return scene_; }
    /// To be called after nodes were removed, which the context does not see.
    void MarkChanged();

    bool Initialize();
    void Draw(const QMatrix4x4& viewProjection, const LinePixels& lines);
    void Release();

  private:
    void Upload();

    kycb::SceneRecorder scene_;
    std::function<void()> changed_;
    bool needsUpload_ = true;
    QOpenGLShaderProgram program_;
    QOpenGLBuffer vertices_{QOpenGLBuffer::VertexBuffer};
    QOpenGLVertexArrayObject layout_;
    int vertexCount_ = 0;
};

}  // namespace desk
