#include "platform/qt/repaint_areas.h"

namespace quillop {
namespace {

long long pixels(const QRect& r) { return static_cast<long long>(r.width()) * r.height(); }

}  // namespace

QRegion coalesceRepaint(std::vector<QRect> areas, int pixelsPerRect) {
    // A frame has a few dozen areas at most. Each joins every rectangle kept so far that is
    // worth joining; what it grew into may now be worth joining to others, so it looks again.
    std::vector<QRect> kept;
    kept.reserve(areas.size());
    for (QRect area : areas) {
        for (std::size_t k = 0; k < kept.size();) {
            const QRect both = area | kept[k];
            if (pixels(both) - pixels(area) - pixels(kept[k]) < pixelsPerRect) {
                area = both;
                kept[k] = kept.back();
                kept.pop_back();
                k = 0;
            } else {
                ++k;
            }
        }
        kept.push_back(area);
    }
    QRegion region;
    for (const QRect& r : kept) region += r;
    return region;
}

}  // namespace quillop
