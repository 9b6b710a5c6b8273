// The playfield's persistent drawing surface as an image: the game paints into it by the
// erase-then-paint rule, and the window shows it (only the changed areas).
#pragma once

#include <QImage>
#include <QRect>
#include <QRegion>
#include <cstdint>
#include <vector>

#include "game/world.h"
#include "platform/qt/picture_set.h"

namespace quillop {

class ImageSurface : public Surface {
public:
    ImageSurface(const PictureSet& pictures, int width, int height);

    void paintPicture(Pic picture, float x, float y) override;
    void setBackColor(std::uint32_t bgr) override;
    void clear() override;

    // A resize keeps nothing: the playfield's resize handler clears it anyway.
    void resize(int width, int height);
    const QImage& image() const { return image_; }
    // Areas changed since the last call, for a partial repaint.
    QRegion takeDirtyRegion();

private:
    void markDirty(const QRect& rect);

    const PictureSet& pictures_;
    QImage image_;
    std::uint32_t backColor_ = 0;  // 0x00BBGGRR
    QRegion dirty_;
    // One flag per 16 x 16 tile already in dirty_, so a sprite that keeps moving within
    // dirty tiles costs no region arithmetic.
    std::vector<std::uint8_t> dirtyTiles_;
    int tileColumns_ = 0;
};

}  // namespace quillop
