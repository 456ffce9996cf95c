// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QIcon>
#include <QPalette>

namespace desk {

enum class ToolGlyph { kOpenModels, kOpenResults, kSave, kSaveAs, kRules, kRun, kStop };

/// The picture of a tool button: lines in the palette's button text, so that it can be seen in
/// every theme, and sharp at every scale. Made anew when the palette changes.
QIcon ToolIcon(ToolGlyph glyph, const QPalette& palette);

}  // namespace desk
