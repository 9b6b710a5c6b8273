// The sprite pictures, loaded once from the program's resources into premultiplied images
// ready to blend or copy.
#pragma once

#include <QImage>
#include <array>

#include "game/pictures.h"

namespace quillop {

// Reads an XPM file (C source form) straight through Qt's built-in XPM decoder. Going
// through QImageReader instead makes Qt load every image-format plugin it has, and their
// libraries, to ask whether one of them reads XPM, which was a good part of start-up.
// A null image when the file is missing or not an XPM.
QImage readXpm(const QString& path);

class PictureSet {
public:
    // Loads every picture from ":/sprites/<name>.xpm".
    PictureSet();
    const QImage& image(Pic picture) const { return images_[static_cast<int>(picture)]; }

private:
    std::array<QImage, kPictureCount> images_;
};

}  // namespace quillop
