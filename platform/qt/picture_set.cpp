#include "platform/qt/picture_set.h"

#include <QFile>
#include <QString>
#include <cstdio>
#include <vector>

#include "resources/assets.h"

namespace quillop {

QImage readXpm(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return QImage();
    const QByteArray text = file.readAll();
    // The image is the C strings after the array's opening brace; comments never hold one.
    std::vector<QByteArray> rows;
    qsizetype at = text.indexOf('{');
    if (at < 0) return QImage();
    while ((at = text.indexOf('"', at)) >= 0) {
        QByteArray row;
        for (++at; at < text.size() && text[at] != '"'; ++at) {
            if (text[at] == '\\' && at + 1 < text.size()) ++at;
            row.append(text[at]);
        }
        if (at >= text.size()) return QImage();  // an unterminated string: not an XPM
        rows.push_back(row);
        ++at;
    }
    // The decoder trusts the header's counts; a file cut short must not send it past the end.
    int width = 0, height = 0, colours = 0, perPixel = 0;
    if (rows.empty() || std::sscanf(rows.front().constData(), "%d %d %d %d", &width, &height, &colours, &perPixel) != 4 ||
        width <= 0 || height <= 0 || colours <= 0 || perPixel <= 0 ||
        rows.size() < 1 + static_cast<std::size_t>(colours) + static_cast<std::size_t>(height))
        return QImage();
    for (std::size_t k = 1 + colours; k < 1 + static_cast<std::size_t>(colours) + height; ++k)
        if (rows[k].size() < static_cast<qsizetype>(width) * perPixel) return QImage();
    std::vector<const char*> lines;
    lines.reserve(rows.size());
    for (const QByteArray& row : rows) lines.push_back(row.constData());
    return QImage(lines.data());
}

PictureSet::PictureSet() {
    for (int k = 1; k < kPictureCount; ++k) {
        const Pic picture = static_cast<Pic>(k);
        const QImage loaded = readXpm(assets::spritePath(pictureName(picture)));
        // A picture that is not there stays null and paints nothing, rather than some
        // stand-in that would look like art.
        if (loaded.isNull()) continue;
        // Converted once here so every paint is a plain copy or blend of premultiplied pixels.
        images_[k] = loaded.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
}

}  // namespace quillop
