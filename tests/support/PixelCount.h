// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

/// How many pixels of `area` have exactly this colour.
inline int CountPixels(const QImage& image, const QRect& area, const QColor& color) {
    const double ratio = image.devicePixelRatio();
    const QRect pixels(qRound(area.x() * ratio), qRound(area.y() * ratio),
                       qRound(area.width() * ratio), qRound(area.height() * ratio));
    const QRect inside = pixels & image.rect();
    int count = 0;
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (image.pixelColor(x, y) == color) ++count;
        }
    }
    return count;
}
