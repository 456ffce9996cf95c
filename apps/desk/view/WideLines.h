// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QVector2D>

class QOpenGLShaderProgram;

namespace desk {

/// Lines as wide as they should be. Most drivers draw lines of one pixel only, which can hardly be
/// seen on a dense display; here each line becomes a rectangle that faces the eye.
struct LinePixels {
    QVector2D viewport;  ///< size of the view in device pixels
    float width = 1.0F;  ///< of a line in device pixels
};

/// The step between a vertex shader, which hands over `vec4 atEnd` for each end of a line, and a
/// fragment shader, which gets `vec4 onLine`. False when it does not compile.
bool AddWideLines(QOpenGLShaderProgram& program);

/// To be called for each frame while the program is bound.
void SetLinePixels(QOpenGLShaderProgram& program, const LinePixels& lines);

}  // namespace desk
