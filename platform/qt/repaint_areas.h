// Which rectangles a repaint of the playfield sends. Each rectangle costs the window system a
// request of its own (a clip, an image upload, a copy) whatever its size, about as much as
// two thousand pixels do; a frame of scattered sprites is cheapest as a few larger ones.
#pragma once

#include <QRect>
#include <QRegion>
#include <vector>

namespace quillop {

// Merges the areas while a merge costs fewer pixels than the rectangle it saves (areas that
// overlap or nearly touch always merge); pixelsPerRect is that price in the window's own
// pixels.
QRegion coalesceRepaint(std::vector<QRect> areas, int pixelsPerRect);

}  // namespace quillop
