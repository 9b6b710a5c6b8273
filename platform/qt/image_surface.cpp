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

// Past this many paints between two repaints (the explosion's frames, say) the whole field
// is sent rather than a long list to sort out.
constexpr std::size_t kMaxPaintedAreas = 256;

}  // namespace

ImageSurface::ImageSurface(const PictureSet& pictures, int width, int height) : pictures_(pictures) {
    resize(width, height);
}

void ImageSurface::resize(int width, int height) {
    image_ = QImage(std::max(width, 0), std::max(height, 0), QImage::Format_RGB32);
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
    markPainted(QRect(x0, y0, count, y1 - y0));
}

void ImageSurface::markPainted(const QRect& area) {
    if (wholeDirty_ || area.isEmpty()) return;
    if (painted_.size() == kMaxPaintedAreas) {
        wholeDirty_ = true;
        painted_.clear();
        return;
    }
    painted_.push_back(area);
}

void ImageSurface::setBackColor(std::uint32_t bgr) {
    backColor_ = bgr;
    clear();
}

void ImageSurface::clear() {
    if (image_.isNull()) return;
    image_.fill(colorFromBgr(backColor_).rgb());
    // A new background is shown whole, whatever it was before.
    wholeDirty_ = true;
    painted_.clear();
}

std::vector<QRect> ImageSurface::takePaintedAreas() {
    std::vector<QRect> changed;
    if (wholeDirty_) {
        if (!image_.isNull()) changed.push_back(image_.rect());
        wholeDirty_ = false;
    } else {
        changed.swap(painted_);
    }
    return changed;
}

}  // namespace quillop
