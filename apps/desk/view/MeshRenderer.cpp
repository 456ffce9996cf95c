// SPDX-License-Identifier: Apache-2.0
#include "desk/view/MeshRenderer.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <cstdint>

namespace desk {
namespace {

// Hands on where a point lies as seen from the eye, and its height. The names are those that lines
// need on their way.
constexpr const char* kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 position;
uniform mat4 viewProjection;
uniform vec3 eye;
out vec4 atEnd;
void main() {
    gl_Position = viewProjection * vec4(position, 1.0);
    atEnd = vec4(position - eye, position.z);
}
)";

constexpr const char* kCut = R"(#version 330 core
uniform vec4 color;
uniform vec2 section;
uniform vec3 forward;
uniform float nearCut;
out vec4 fragment;
bool isCutAway(vec4 place) {
    return place.w < section.x || place.w > section.y || dot(place.xyz, forward) < nearCut;
}
)";

// The normal comes from the derivatives of the position, so that no normals need be stored and
// every face is flat, whichever way round it runs.
constexpr const char* kFaceShader = R"(
in vec4 atEnd;
void main() {
    if (isCutAway(atEnd)) discard;
    vec3 normal = normalize(cross(dFdx(atEnd.xyz), dFdy(atEnd.xyz)));
    vec3 toEye = -normalize(atEnd.xyz);
    if (dot(normal, toEye) < 0.0) normal = -normal;
    float sky = 0.5 + 0.5 * normal.z;
    float sun = max(dot(normal, normalize(vec3(-0.4, -0.7, 0.6))), 0.0);
    float light = 0.56 + 0.18 * sky + 0.16 * sun + 0.12 * dot(normal, toEye);
    fragment = vec4(color.rgb * light, color.a);
}
)";

constexpr const char* kEdgeShader = R"(
in vec4 onLine;
void main() {
    if (isCutAway(onLine)) discard;
    fragment = color;
}
)";

constexpr int kPositionAttribute = 0;

template <class Value>
qopengl_GLsizeiptr SizeOf(const std::vector<Value>& values) {
    return static_cast<qopengl_GLsizeiptr>(values.size() * sizeof(Value));
}

}  // namespace

bool MeshRenderer::Initialize() {
    return faces_.addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) &&
           faces_.addShaderFromSourceCode(QOpenGLShader::Fragment,
                                          QByteArray(kCut) + kFaceShader) &&
           faces_.link() && edges_.addShaderFromSourceCode(QOpenGLShader::Vertex, kVertexShader) &&
           AddWideLines(edges_) &&
           edges_.addShaderFromSourceCode(QOpenGLShader::Fragment,
                                          QByteArray(kCut) + kEdgeShader) &&
           edges_.link() && vertices_.create() && indices_.create() && layout_.create();
}

void MeshRenderer::Release() {
    layout_.destroy();
    vertices_.destroy();
    indices_.destroy();
    faces_.removeAllShaders();
    edges_.removeAllShaders();
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
                         float sectionBottom, float sectionTop, const LinePixels& lines) {
    layout_.bind();
    for (QOpenGLShaderProgram* program : {&faces_, &edges_}) {
        program->bind();
        program->setUniformValue("viewProjection", viewProjection);
        program->setUniformValue("eye", camera.Position());
        program->setUniformValue("forward", camera.Forward());
        program->setUniformValue("section", sectionBottom, sectionTop);
    }
    SetLinePixels(edges_, lines);
    SetNearCut(0.0F);
}

void MeshRenderer::SetNearCut(float distance) {
    for (QOpenGLShaderProgram* program : {&faces_, &edges_}) {
        program->bind();
        program->setUniformValue("nearCut", distance);
    }
}

void MeshRenderer::Draw(QOpenGLShaderProgram& program, GLenum primitive, std::size_t firstIndex,
                        std::uint32_t count, const QVector4D& color) {
    if (count == 0) return;
    program.bind();
    program.setUniformValue("color", color);
    QOpenGLContext::currentContext()->functions()->glDrawElements(
        primitive, static_cast<GLsizei>(count), GL_UNSIGNED_INT,
        reinterpret_cast<const void*>(firstIndex * sizeof(std::uint32_t)));
}

void MeshRenderer::Draw(const IndexRange& range, const QVector4D& color) {
    Draw(faces_, GL_TRIANGLES, range.first, range.count, color);
}

void MeshRenderer::DrawEdges(const IndexRange& range, const QVector4D& color) {
    Draw(edges_, GL_LINES, edgesFrom_ + range.first, range.count, color);
}

void MeshRenderer::End() {
    edges_.release();
    layout_.release();
}

}  // namespace desk
