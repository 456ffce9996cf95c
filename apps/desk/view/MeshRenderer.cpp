// SPDX-License-Identifier: Apache-2.0
#include "desk/view/MeshRenderer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <cstdint>

namespace desk {
namespace {

constexpr const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
uniform mat4 viewProjection;
uniform vec3 eye;
out vec3 fromEye;
out float height;
void main() {
    gl_Position = viewProjection * vec4(position, 1.0);
    fromEye = position - eye;
    height = position.z;
}
)";

// The normal comes from the derivatives of the position, so that no normals need be stored and
// every face is flat, whichever way round it runs.
constexpr const char* kFragmentShader = R"(#version 330 core
in vec3 fromEye;
in float height;
uniform vec4 color;
uniform vec2 section;
uniform vec3 forward;
uniform float nearCut;
out vec4 fragment;
void main() {
    if (height < section.x || height > section.y) discard;
    if (dot(fromEye, forward) < nearCut) discard;
    vec3 normal = normalize(cross(dFdx(fromEye), dFdy(fromEye)));
    vec3 toEye = -normalize(fromEye);
    if (dot(normal, toEye) < 0.0) normal = -normal;
    float sky = 0.5 + 0.5 * normal.z;
    float sun = max(dot(normal, normalize(vec3(-0.4, -0.7, 0.6))), 0.0);
    float light = 0.56 + 0.18 * sky + 0.16 * sun + 0.12 * dot(normal, toEye);
    fragment = vec4(color.rgb * light, color.a);
}
)";

constexpr int kPositionAttribute = 0;

// The buffers of the toolkit take sizes as int; larger ones go to the driver directly.
template <class Value>
void Fill(QOpenGLBuffer& buffer, GLenum target, const std::vector<Value>& values) {
    buffer.bind();
    QOpenGLContext::currentContext()->functions()->glBufferData(
        target, static_cast<qopengl_GLsizeiptr>(values.size() * sizeof(Value)), values.data(),
        GL_STATIC_DRAW);
}

}  // namespace

bool MeshRenderer::Initialize() {
    return program_.addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) &&
           program_.addShaderFromSourceCode(QOpenGLShader::Fragment, kFragmentShader) &&
           program_.link() && vertices_.create() && indices_.create() && layout_.create();
}

void MeshRenderer::Release() {
    layout_.destroy();
    vertices_.destroy();
    indices_.destroy();
    program_.removeAllShaders();
}

void MeshRenderer::Upload(const SceneMeshes* meshes) {
    static const SceneMeshes kNothing;
    const SceneMeshes& shown = meshes == nullptr ? kNothing : *meshes;
    const QOpenGLVertexArrayObject::Binder bound(&layout_);
    Fill(vertices_, GL_ARRAY_BUFFER, shown.positions);
    Fill(indices_, GL_ELEMENT_ARRAY_BUFFER, shown.indices);
    auto* gl = QOpenGLContext::currentContext()->functions();
    gl->glEnableVertexAttribArray(kPositionAttribute);
    gl->glVertexAttribPointer(kPositionAttribute, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
}

void MeshRenderer::Begin(const QMatrix4x4& viewProjection, const Camera& camera,
                         float sectionBottom, float sectionTop) {
    layout_.bind();
    program_.bind();
    program_.setUniformValue("viewProjection", viewProjection);
    program_.setUniformValue("eye", camera.Position());
    program_.setUniformValue("forward", camera.Forward());
    program_.setUniformValue("section", sectionBottom, sectionTop);
    SetNearCut(0.0F);
}

void MeshRenderer::SetNearCut(float distance) {
    program_.setUniformValue("nearCut", distance);
}

void MeshRenderer::Draw(const IndexRange& range, const QVector4D& color) {
    if (range.count == 0) return;
    program_.setUniformValue("color", color);
    QOpenGLContext::currentContext()->functions()->glDrawElements(
        GL_TRIANGLES, static_cast<GLsizei>(range.count), GL_UNSIGNED_INT,
        reinterpret_cast<const void*>(static_cast<std::uintptr_t>(range.first) *
                                      sizeof(std::uint32_t)));
}

void MeshRenderer::End() {
    program_.release();
    layout_.release();
}

}  // namespace desk
