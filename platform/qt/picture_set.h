// The sprite pictures, loaded once from the program's resources into premultiplied images
// ready to blend or copy.
#pragma once

#include <QImage>
#include <array>

#include "game/pictures.h"

namespace quillop {

class PictureSet {
public:
    // Loads every picture from ":/sprites/<name>.xpm".
    PictureSet();
    const QImage& image(Pic picture) const { return images_[static_cast<int>(picture)]; }

private:
    std::array<QImage, kPictureCount> images_;
};

}  // namespace quillop
