#include "platform/qt/picture_set.h"

#include <QString>

namespace quillop {

PictureSet::PictureSet() {
    for (int k = 1; k < kPictureCount; ++k) {
        const Pic picture = static_cast<Pic>(k);
        QImage loaded(QStringLiteral(":/sprites/%1.xpm").arg(QString::fromLatin1(pictureName(picture))));
        // A picture that is not there stays null and paints nothing, rather than some
        // stand-in that would look like art.
        if (loaded.isNull()) continue;
        // Converted once here so every paint is a plain copy or blend of premultiplied pixels.
        images_[k] = loaded.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
}

}  // namespace quillop
