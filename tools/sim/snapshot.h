// The playfield as the player sees it: the drawing surface with the puck shape over it.
#pragma once

#include <QImage>
#include <string>

#include "game/controls.h"

namespace quillop::sim {

// The surface with the puck drawn on top (when visible), as a new image.
QImage composeSnapshot(const QImage& surface, const ShapeModel& puck);

// Writes a PNG; false with a reason on failure.
bool writeSnapshot(const QImage& surface, const ShapeModel& puck, const std::string& path, std::string& error);

}  // namespace quillop::sim
