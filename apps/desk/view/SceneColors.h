// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPalette>
#include <string>

namespace desk {

/// Whether a palette is one of a dark theme.
bool IsDark(const QPalette& palette);

/// The ground of the 3-D view, what a ghost is drawn in on it, and the edges of both.
QColor SceneGround(const QPalette& palette);
QColor GhostColor(const QPalette& palette);
QColor EdgeColor(const QPalette& palette);

/// A specialty's colour in the 3-D view; one of its own also for names nobody has heard of.
QColor SpecialtyColor(const std::wstring& specialty);

/// The two components of a clash, and where they meet. Told apart also by people who do not see
/// red and green alike: orange and blue.
QColor MainColor();
QColor SecondColor();
QColor ClashPointColor();

/// The text colour of a result by its state, readable on the palette's ground.
QColor StateColor(int state, const QPalette& palette);

}  // namespace desk
