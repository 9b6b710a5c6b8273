#include "platform/qt/repaint_areas.h"

namespace quillop {
namespace {

long long pixels(const QRect& r) { return static_cast<long long>(r.width()) * r.height(); }

}  // namespace

QRegion coalesceRepaint(std::vector<QRect> areas, int pixelsPerRect) {
    // A frame has a few dozen areas at most. Each joins every rectangle kept so far that is
    // worth joining; what it grew into may now be worth joining to others, so it looks again.
    // The kept ones are the front of the same list: this runs every frame.
    std::size_t kept = 0;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        QRect area = areas[i];
        for (std::size_t k = 0; k < kept;) {
            const QRect both = area | areas[k];
            if (pixels(both) - pixels(area) - pixels(areas[k]) < pixelsPerRect) {
                area = both;
                areas[k] = areas[--kept];
                k = 0;
            } else {
                ++k;
            }
        }
        areas[kept++] = area;
    }
    QRegion region;
    for (std::size_t k = 0; k < kept; ++k) region += areas[k];
    return region;
}

}  // namespace quillop
