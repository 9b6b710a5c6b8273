// The classic shape control (the puck and the help window's figures): a circle, square or
// rounded square fitted into its box, a one-pixel border, a solid or cross-hatched fill.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRect>
#include <cstdint>

#include "game/controls.h"
#include "platform/qt/bgr_color.h"

namespace quillop {

// The pixel box of a shape placed at fractional pixel coordinates.
QRect shapeBox(float left, float top, float width, float height);
void paintShape(QPainter& painter, const QRect& box, int shape, int fillStyle, const QColor& fill,
                const QColor& border);
// The playfield's puck control as it stands, with its light grey border.
void paintPuck(QPainter& painter, const ShapeModel& puck);

}  // namespace quillop
