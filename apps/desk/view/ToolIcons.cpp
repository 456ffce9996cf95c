// SPDX-License-Identifier: Apache-2.0
#include "desk/view/ToolIcons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>

namespace desk {
namespace {

// The drawings are made on a square of this many units.
constexpr qreal kGrid = 16.0;
constexpr qreal kLineWidth = 1.3;
constexpr qreal kDisabledOpacity = 0.35;

QPainterPath Folder() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{1.5, 3}, {6, 3}, {7.5, 5}, {14.5, 5}, {14.5, 13}, {1.5, 13}}));
    path.closeSubpath();
    return path;
}

QPainterPath Sheet() {
    QPainterPath path;
    path.addRect(3, 1.5, 10, 13);
    for (const qreal y : {5.0, 8.0, 11.0}) {
        path.moveTo(5.5, y);
        path.lineTo(10.5, y);
    }
    return path;
}

QPainterPath Disk() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{2, 2}, {11.5, 2}, {14, 4.5}, {14, 14}, {2, 14}}));
    path.closeSubpath();
    path.addRect(5, 2, 5, 3.5);
    path.addRect(4.5, 9, 7, 5);
    return path;
}

QPainterPath DiskWithPlus() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{8, 14}, {2, 14}, {2, 2}, {11.5, 2}, {14, 4.5}, {14, 8}}));
    path.addRect(5, 2, 5, 3.5);
    path.moveTo(12, 9.5);
    path.lineTo(12, 15);
    path.moveTo(9.25, 12.25);
    path.lineTo(14.75, 12.25);
    return path;
}

QPainterPath Sliders() {
    QPainterPath path;
    const std::pair<qreal, qreal> knobs[] = {{3.5, 10.5}, {8.0, 5.0}, {12.5, 11.0}};
    for (const auto& [y, x] : knobs) {
        path.moveTo(1.5, y);
        path.lineTo(x - 1.7, y);
        path.addEllipse(QPointF(x, y), 1.7, 1.7);
        path.moveTo(x + 1.7, y);
        path.lineTo(14.5, y);
    }
    return path;
}

QPainterPath Triangle() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{4, 2}, {13.5, 8}, {4, 14}}));
    path.closeSubpath();
    return path;
}

QPainterPath Square() {
    QPainterPath path;
    path.addRect(3, 3, 10, 10);
    return path;
}

QPainterPath PathOf(ToolGlyph glyph) {
    switch (glyph) {
        case ToolGlyph::kOpenModels:
            return Folder();
        case ToolGlyph::kOpenResults:
            return Sheet();
        case ToolGlyph::kSave:
            return Disk();
        case ToolGlyph::kSaveAs:
            return DiskWithPlus();
        case ToolGlyph::kRules:
            return Sliders();
        case ToolGlyph::kRun:
            return Triangle();
        case ToolGlyph::kStop:
            return Square();
    }
    return {};
}

// Run and stop are full faces in the colours that people expect of them.
QBrush FillOf(ToolGlyph glyph) {
    if (glyph == ToolGlyph::kRun) return QColor(0x2E, 0xA0, 0x50);
    if (glyph == ToolGlyph::kStop) return QColor(0xD0, 0x3C, 0x3C);
    return Qt::NoBrush;
}

class GlyphEngine : public QIconEngine {
  public:
    GlyphEngine(ToolGlyph glyph, const QColor& line) : glyph_(glyph), line_(line) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / kGrid, rect.height() / kGrid);
        if (mode == QIcon::Disabled) painter->setOpacity(kDisabledOpacity);
        const QBrush fill = FillOf(glyph_);
        painter->setBrush(fill);
        painter->setPen(fill.style() == Qt::NoBrush
                            ? QPen(line_, kLineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)
                            : QPen(Qt::NoPen));
        painter->drawPath(PathOf(glyph_));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new GlyphEngine(glyph_, line_); }

  private:
    ToolGlyph glyph_;
    QColor line_;
};

}  // namespace

QIcon ToolIcon(ToolGlyph glyph, const QPalette& palette) {
    return QIcon(new GlyphEngine(glyph, palette.color(QPalette::ButtonText)));
}

}  // namespace desk
