#include "platform/qt/shape_paint.h"

#include <algorithm>
#include <cmath>

#include "game/controls.h"

namespace quillop {

QRect shapeBox(float left, float top, float width, float height) {
    auto px = [](float v) { return static_cast<int>(std::lround(static_cast<double>(v))); };
    return QRect(px(left), px(top), std::max(px(width), 0), std::max(px(height), 0));
}

void paintShape(QPainter& painter, const QRect& box, int shape, int fillStyle, const QColor& fill,
                const QColor& border) {
    if (box.width() <= 0 || box.height() <= 0) return;
    // Circles and squares are fitted, centred, into the shorter side of the box.
    const int side = std::min(box.width(), box.height());
    QRect r(0, 0, side, side);
    r.moveCenter(box.center());
    if (shape != kShapeCircle && shape != kShapeSquare && shape != kShapeRoundedSquare) r = box;

    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(border, 1));
    painter.setBrush(fillStyle == kFillDiagonalCross ? QBrush(fill, Qt::DiagCrossPattern)
                     : fillStyle == kFillSolid        ? QBrush(fill)
                                                      : QBrush(Qt::NoBrush));
    // The pen runs along the inside of the box: a 9-pixel puck covers exactly 9 pixels.
    const QRect inner = r.adjusted(0, 0, -1, -1);
    if (shape == kShapeCircle)
        painter.drawEllipse(inner);
    else if (shape == kShapeRoundedSquare)
        painter.drawRoundedRect(inner, side / 4.0, side / 4.0);
    else
        painter.drawRect(inner);
    painter.restore();
}

void paintPuck(QPainter& painter, const ShapeModel& puck) {
    static const QColor kPuckBorder(0xC0, 0xC0, 0xC0);
    paintShape(painter, shapeBox(puck.Left, puck.Top, puck.Width, puck.Height), puck.Shape, puck.FillStyle,
               colorFromBgr(puck.FillColor), kPuckBorder);
}

}  // namespace quillop
