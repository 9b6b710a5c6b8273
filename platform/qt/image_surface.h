// The playfield's persistent drawing surface as an image: the game paints into it by the
// erase-then-paint rule, and the window shows it (only the pixels that changed).
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
    // The areas whose pixels may differ from what the last call returned, for a partial
    // repaint.
    std::vector<QRect> takeChangedAreas();

private:
    struct Seen {
        QRect area;
        std::uint64_t content;  // a hash of its pixels
    };
    void markPainted(const QRect& area);
    std::uint64_t contentOf(const QRect& area) const;

    const PictureSet& pictures_;
    QImage image_;
    // Most of what the erase-then-paint rule paints is the same pixels again: a sprite whose
    // place rounds to the same pixel is erased and painted back as it was. Each area painted
    // since the last take is sent only if its pixels differ from what the same area held at
    // the last take (known by a hash), since every pixel sent is copied into the window's
    // backing store and again through the X server's socket, 64 times a second.
    std::vector<QRect> painted_;
    std::vector<Seen> seen_;  // the areas painted before the last take, as they were then
    bool wholeDirty_ = true;
    std::uint32_t backColor_ = 0;  // 0x00BBGGRR
};

}  // namespace quillop
