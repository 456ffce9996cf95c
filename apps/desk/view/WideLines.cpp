// SPDX-License-Identifier: Apache-2.0
#include "desk/view/WideLines.h"

#include <QOpenGLShaderProgram>

namespace desk {
namespace {

// What lies behind the eye has no place on the screen, so the line is cut at the near plane first.
constexpr const char* kGeometryShader = R"(#version 330 core
layout(lines) in;
layout(triangle_strip, max_vertices = 4) out;
uniform vec2 viewport;
uniform float lineWidth;
in vec4 atEnd[];
out vec4 onLine;

void emitSide(vec4 end, vec2 across, vec4 carried) {
    onLine = carried;
    gl_Position = vec4(end.xy + across * end.w, end.zw);
    EmitVertex();
}

void main() {
    vec4 from = gl_in[0].gl_Position;
    vec4 to = gl_in[1].gl_Position;
    float fromNear = from.z + from.w;
    float toNear = to.z + to.w;
    if (fromNear <= 0.0 && toNear <= 0.0) return;
    float first = fromNear < 0.0 ? fromNear / (fromNear - toNear) : 0.0;
    float last = toNear < 0.0 ? fromNear / (fromNear - toNear) : 1.0;
    vec4 a = mix(from, to, first);
    vec4 b = mix(from, to, last);
    vec4 carriedA = mix(atEnd[0], atEnd[1], first);
    vec4 carriedB = mix(atEnd[0], atEnd[1], last);

    vec2 along = (b.xy / b.w - a.xy / a.w) * viewport;
    float size = length(along);
    if (size == 0.0) return;
    // The view is two units wide, a line half its width to each side.
    vec2 across = vec2(-along.y, along.x) / size * lineWidth / viewport;
    emitSide(a, across, carriedA);
    emitSide(a, -across, carriedA);
    emitSide(b, across, carriedB);
    emitSide(b, -across, carriedB);
    EndPrimitive();
}
)";

}  // namespace

bool AddWideLines(QOpenGLShaderProgram& program) {
    return program.addShaderFromSourceCode(QOpenGLShader::Geometry, kGeometryShader);
}

void SetLinePixels(QOpenGLShaderProgram& program, const LinePixels& lines) {
    program.setUniformValue("viewport", lines.viewport);
    program.setUniformValue("lineWidth", lines.width);
}

}  // namespace desk
