// SPDX-License-Identifier: Apache-2.0
#include "desk/view/GlSceneContext.h"

#include <QMatrix4x4>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <utility>

namespace desk {
namespace {

constexpr const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 color;
uniform mat4 viewProjection;
out vec4 atEnd;
void main() {
    gl_Position = viewProjection * vec4(position, 1.0);
    atEnd = vec4(color, 1.0);
}
)";

constexpr const char* kFragmentShader = R"(#version 330 core
in vec4 onLine;
out vec4 fragment;
void main() { fragment = onLine; }
)";

constexpr int kFloatsPerVertex = 6;
constexpr int kPositionAttribute = 0;
constexpr int kColorAttribute = 1;

void AppendLines(const kycb::RecordedNode& node, std::vector<float>& vertices) {
    const SQNGIRGBClr color = node.Color();
    for (const auto& point : kycb::LinePoints(node)) {
        for (const double value : {point.GetX(), point.GetY(), point.GetZ(), color.red / 255.0,
                                   color.green / 255.0, color.blue / 255.0}) {
            vertices.push_back(static_cast<float>(value));
        }
    }
    for (const auto& child : node.Children())
        AppendLines(*child, vertices);
}

}  // namespace

GlSceneContext::GlSceneContext(std::function<void()> changed) : changed_(std::move(changed)) {}

IQNGINode* GlSceneContext::CreateNode(QNGINodeId parent, const std::wstring& name) {
    MarkChanged();
    return scene_.CreateNode(parent, name);
}

void GlSceneContext::MarkChanged() {
    needsUpload_ = true;
    if (changed_) changed_();
}

bool GlSceneContext::Initialize() {
    needsUpload_ = true;
    return program_.addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) &&
           AddWideLines(program_) &&
           program_.addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader) &&
           program_.link() && vertices_.create() && layout_.create();
}

void GlSceneContext::Upload() {
    std::vector<float> data;
    AppendLines(scene_.Root(), data);
    vertexCount_ = static_cast<int>(data.size()) / kFloatsPerVertex;
    const QOpenGLVertexArrayObject::Binder bound(&layout_);
    vertices_.bind();
    vertices_.allocate(data.data(), static_cast<int>(data.size() * sizeof(float)));
    auto* gl = QOpenGLContext::currentContext()->functions();
    constexpr int kStride = kFloatsPerVertex * sizeof(float);
    gl->glEnableVertexAttribArray(kPositionAttribute);
    gl->glVertexAttribPointer(kPositionAttribute, 3, GL_FLOAT, GL_FALSE, kStride, nullptr);
    gl->glEnableVertexAttribArray(kColorAttribute);
    gl->glVertexAttribPointer(kColorAttribute, 3, GL_FLOAT, GL_FALSE, kStride,
                              reinterpret_cast<const void*>(3 * sizeof(float)));
    needsUpload_ = false;
}

void GlSceneContext::Draw(const QMatrix4x4& viewProjection, const LinePixels& lines) {
    if (needsUpload_) Upload();
    if (vertexCount_ == 0) return;
    program_.bind();
    program_.setUniformValue("viewProjection", viewProjection);
    SetLinePixels(program_, lines);
    const QOpenGLVertexArrayObject::Binder bound(&layout_);
    QOpenGLContext::currentContext()->functions()->glDrawArrays(GL_LINES, 0, vertexCount_);
}

void GlSceneContext::Release() {
    layout_.destroy();
    vertices_.destroy();
    program_.removeAllShaders();
}

}  // namespace desk
