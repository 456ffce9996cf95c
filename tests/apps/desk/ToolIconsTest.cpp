// SPDX-License-Identifier: Apache-2.0
#include <QImage>
#include <algorithm>
#include <cstdlib>

#include <gmock/gmock.h>

#include "desk/view/ToolIcons.h"

using desk::ToolGlyph;
using desk::ToolIcon;

namespace {

constexpr ToolGlyph kGlyphs[] = {ToolGlyph::kOpenModels, ToolGlyph::kOpenResults, ToolGlyph::kSave,
                                 ToolGlyph::kSaveAs,     ToolGlyph::kRules,       ToolGlyph::kRun,
                                 ToolGlyph::kStop};

QPalette Theme(const QColor& ground, const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::Button, ground);
    palette.setColor(QPalette::ButtonText, text);
    return palette;
}

// The largest distance in brightness of a drawn pixel from the ground that it stands on.
int Contrast(const QIcon& icon, const QColor& ground, QIcon::Mode mode = QIcon::Normal) {
    const QImage drawn = icon.pixmap(QSize(24, 24), 1.0, mode).toImage();
    int most = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor pixel = drawn.pixelColor(x, y);
            const int difference = std::abs(qGray(pixel.rgb()) - qGray(ground.rgb()));
            most = std::max(most, difference * pixel.alpha() / 255);
        }
    }
    return most;
}

}  // namespace

TEST(ToolIcon, CanBeSeenOnALightAndOnADarkGround) {
    const QColor light(0xF0, 0xF0, 0xF0);
    const QColor dark(0x24, 0x28, 0x2E);
    for (const ToolGlyph glyph : kGlyphs) {
        EXPECT_GT(Contrast(ToolIcon(glyph, Theme(light, Qt::black)), light), 60)
            << static_cast<int>(glyph);
        EXPECT_GT(Contrast(ToolIcon(glyph, Theme(dark, Qt::white)), dark), 60)
            << static_cast<int>(glyph);
    }
}

TEST(ToolIcon, IsPalerWhileItsActionIsDisabled) {
    const QColor ground(0xF0, 0xF0, 0xF0);
    for (const ToolGlyph glyph : kGlyphs) {
        const QIcon icon = ToolIcon(glyph, Theme(ground, Qt::black));
        EXPECT_LT(Contrast(icon, ground, QIcon::Disabled), Contrast(icon, ground) / 2)
            << static_cast<int>(glyph);
    }
}

TEST(ToolIcon, IsDrawnInFullDetailOnADenseDisplay) {
    const QIcon icon = ToolIcon(ToolGlyph::kSave, QPalette());
    const QPixmap dense = icon.pixmap(QSize(24, 24), 2.0);
    EXPECT_EQ(dense.size(), QSize(48, 48));
    EXPECT_EQ(dense.devicePixelRatio(), 2.0);
}
