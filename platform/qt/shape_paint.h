// The classic shape control (the puck and the help window's figures): a circle, square or
// rounded square fitted into its box, a one-pixel border, a solid or cross-hatched fill.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRect>
#include <cstdint>

namespace quillop {

QColor colorFromBgr(std::uint32_t bgr);
// The pixel box of a shape placed at fractional pixel coordinates.
QRect shapeBox(float left, float top, float width, float height);
void paintShape(QPainter& painter, const QRect& box, int shape, int fillStyle, const QColor& fill,
                const QColor& border);

}  // namespace quillop
