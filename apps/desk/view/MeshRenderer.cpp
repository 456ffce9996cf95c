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
uniform bool shaded;
out vec4 fragment;
void main() {
    if (height < section.x || height > section.y) discard;
    if (dot(fromEye, forward) < nearCut) discard;
    if (!shaded) {
        fragment = color;
        return;
    }
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

template <class Value>
qopengl_GLsizeiptr SizeOf(const std::vector<Value>& values) {
    return static_cast<qopengl_GLsizeiptr>(values.size() * sizeof(Value));
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
    // The toolkit's buffers take sizes as int; these may be larger.
    auto* gl = QOpenGLContext::currentContext()->functions();
    vertices_.bind();
    gl->glBufferData(GL_ARRAY_BUFFER, SizeOf(shown.positions), shown.positions.data(),
                     GL_STATIC_DRAW);
    indices_.bind();
    gl->glBufferData(GL_ELEMENT_ARRAY_BUFFER, SizeOf(shown.indices) + SizeOf(shown.edges), nullptr,
                     GL_STATIC_DRAW);
    gl->glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, 0, SizeOf(shown.indices), shown.indices.data());
    gl->glBufferSubData(GL_ELEMENT_ARRAY_BUFFER, SizeOf(shown.indices), SizeOf(shown.edges),
                        shown.edges.data());
    edgesFrom_ = shown.indices.size();
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

void MeshRenderer::Draw(Shading shading, std::size_t firstIndex, std::uint32_t count,
                        const QVector4D& color) {
    if (count == 0) return;
    program_.setUniformValue("color", color);
    program_.setUniformValue("shaded", shading == Shading::kFlat);
    QOpenGLContext::currentContext()->functions()->glDrawElements(
        shading == Shading::kFlat ? GL_TRIANGLES : GL_LINES, static_cast<GLsizei>(count),
        GL_UNSIGNED_INT, reinterpret_cast<const void*>(firstIndex * sizeof(std::uint32_t)));
}

void MeshRenderer::Draw(const IndexRange& range, const QVector4D& color) {
    Draw(Shading::kFlat, range.first, range.count, color);
}

void MeshRenderer::DrawEdges(const IndexRange& range, const QVector4D& color) {
    Draw(Shading::kNone, edgesFrom_ + range.first, range.count, color);
}

void MeshRenderer::End() {
    program_.release();
    layout_.release();
}

}  // namespace desk
