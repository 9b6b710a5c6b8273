#include "platform/qt/image_surface.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/qt/bgr_color.h"

namespace quillop {
namespace {

// Each 8-bit channel of x times a / 255, two channels at a time.
inline std::uint32_t byteMul(std::uint32_t x, std::uint32_t a) {
    std::uint32_t t = (x & 0xFF00FFu) * a;
    t = ((t + ((t >> 8) & 0xFF00FFu) + 0x800080u) >> 8) & 0xFF00FFu;
    std::uint32_t u = ((x >> 8) & 0xFF00FFu) * a;
    u = (u + ((u >> 8) & 0xFF00FFu) + 0x800080u) & 0xFF00FF00u;
    return t | u;
}

// Source-over of one premultiplied row onto an opaque row. Icon pixels are either fully
// opaque or fully transparent, so the two cheap cases come first.
inline void blendRow(std::uint32_t* dst, const std::uint32_t* src, int count) {
    for (int k = 0; k < count; ++k) {
        const std::uint32_t s = src[k];
        const std::uint32_t a = s >> 24;
        if (a == 0xFF) dst[k] = s;
        else if (a != 0) dst[k] = (s + byteMul(dst[k], 0xFF - a)) | 0xFF000000u;
    }
}

// The dirty region is kept on a coarse grid: a moving sprite then mostly dirties tiles that
// are already dirty, and the region stays a handful of rectangles instead of growing by a
// sliver (and an allocation) on every paint. Repainting a little more than changed is free
// next to rebuilding the region thousands of times a second.
constexpr int kTile = 16;

}  // namespace

ImageSurface::ImageSurface(const PictureSet& pictures, int width, int height) : pictures_(pictures) {
    resize(width, height);
}

void ImageSurface::resize(int width, int height) {
    image_ = QImage(std::max(width, 0), std::max(height, 0), QImage::Format_RGB32);
    tileColumns_ = (image_.width() + kTile - 1) / kTile;
    dirtyTiles_.assign(static_cast<std::size_t>(tileColumns_) * ((image_.height() + kTile - 1) / kTile), 0);
    clear();
}

void ImageSurface::paintPicture(Pic picture, float x, float y) {
    const QImage& source = pictures_.image(picture);
    if (source.isNull() || image_.isNull()) return;
    const int sourceWidth = source.width();
    const int sourceHeight = source.height();
    // Whole pixels, ties to even; anything wholly outside (or not a number) paints nothing.
    const double fx = std::nearbyint(static_cast<double>(x));
    const double fy = std::nearbyint(static_cast<double>(y));
    if (!(fx > -sourceWidth && fx < image_.width() && fy > -sourceHeight && fy < image_.height())) return;
    const int px = static_cast<int>(fx);
    const int py = static_cast<int>(fy);

    const int x0 = std::max(px, 0);
    const int y0 = std::max(py, 0);
    const int x1 = std::min(px + sourceWidth, image_.width());
    const int y1 = std::min(py + sourceHeight, image_.height());
    const int count = x1 - x0;

    uchar* const bits = image_.bits();
    const qsizetype stride = image_.bytesPerLine();
    const uchar* const sourceBits = source.constBits();
    const qsizetype sourceStride = source.bytesPerLine();
    const bool icon = isIcon(picture);
    for (int row = y0; row < y1; ++row) {
        auto* dst = reinterpret_cast<std::uint32_t*>(bits + row * stride) + x0;
        const auto* src = reinterpret_cast<const std::uint32_t*>(sourceBits + (row - py) * sourceStride) + (x0 - px);
        if (icon)
            blendRow(dst, src, count);
        else
            // A bitmap replaces its rectangle; its pixels are opaque, so the copy is exact.
            std::memcpy(dst, src, static_cast<std::size_t>(count) * sizeof(std::uint32_t));
    }
    markDirty(QRect(x0, y0, count, y1 - y0));
}

void ImageSurface::markDirty(const QRect& rect) {
    if (rect.isEmpty()) return;
    const int left = rect.left() / kTile, right = rect.right() / kTile;
    const int top = rect.top() / kTile, bottom = rect.bottom() / kTile;
    bool fresh = false;
    for (int ty = top; ty <= bottom; ++ty)
        for (int tx = left; tx <= right; ++tx) {
            std::uint8_t& tile = dirtyTiles_[static_cast<std::size_t>(ty) * tileColumns_ + tx];
            fresh |= tile == 0;
            tile = 1;
        }
    if (!fresh) return;
    const QRect snapped(left * kTile, top * kTile, (right - left + 1) * kTile, (bottom - top + 1) * kTile);
    dirty_ += snapped & image_.rect();
}

void ImageSurface::setBackColor(std::uint32_t bgr) {
    backColor_ = bgr;
    clear();
}

void ImageSurface::clear() {
    if (image_.isNull()) return;
    image_.fill(colorFromBgr(backColor_).rgb());
    dirty_ = image_.rect();
    std::fill(dirtyTiles_.begin(), dirtyTiles_.end(), 1);
}

QRegion ImageSurface::takeDirtyRegion() {
    QRegion taken;
    taken.swap(dirty_);
    std::fill(dirtyTiles_.begin(), dirtyTiles_.end(), 0);
    return taken;
}

}  // namespace quillop
