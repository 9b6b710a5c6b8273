// The playfield's persistent drawing surface as an image: the game paints into it by the
// erase-then-paint rule, and the window shows it (only the areas painted).
#pragma once

#include <QImage>
#include <QRect>
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
    // The areas painted since the last call (the whole field after a clear), for a partial
    // repaint. Most of them change a few pixels each frame, a sprite moving by one, so they
    // are sent as they are rather than compared with what the window shows.
    std::vector<QRect> takePaintedAreas();

private:
    void markPainted(const QRect& area);

    const PictureSet& pictures_;
    QImage image_;
    std::vector<QRect> painted_;
    bool wholeDirty_ = true;
    std::uint32_t backColor_ = 0;  // 0x00BBGGRR
};

}  // namespace quillop
