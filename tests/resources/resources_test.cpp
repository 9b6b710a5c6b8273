// The pictures and sounds the game is built from, as embedded in the program.
#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <set>
#include <tuple>

#include "game/pictures.h"
#include "game/sounds.h"
#include "platform/qt/picture_set.h"
#include "platform/qt/wave_file.h"
#include "resources/assets.h"

using namespace quillop;

namespace {

// A picture as the game reads it, which must be what Qt's own reader makes of the file.
QImage load(Pic p) {
    const QString path = assets::spritePath(pictureName(p));
    const QImage image = readXpm(path).convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(image, QImage(path).convertToFormat(QImage::Format_ARGB32)) << path.toStdString();
    return image;
}

// Every sprite at its natural size, without a half-transparent pixel (the copy-only painting
// of the playfield could not show one), a bitmap opaque throughout, and the eraser the game
// paints over a sprite a black silhouette of exactly it. The second Jester picture (mines
// 3 to 5) is left out there: the game erases it with the first Jester's eraser, smaller.
TEST(Pictures, EverySpriteHasItsSizeAndItsEraserIsItsSilhouette) {
    for (int i = 1; i < kPictureCount; ++i) {
        const Pic p = static_cast<Pic>(i);
        SCOPED_TRACE(pictureName(p));
        const QImage picture = load(p);
        ASSERT_EQ(picture.size(), QSize(pictureSize(p).width, pictureSize(p).height));
        const bool erased = eraserOf(p) != Pic::None && (p < Pic::Mine3 || p > Pic::Mine5);
        const QImage mask = erased ? load(eraserOf(p)) : picture;
        ASSERT_EQ(mask.size(), picture.size());
        int halfTransparent = 0, opaque = 0, mismatches = 0, coloured = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                const int alpha = qAlpha(picture.pixel(x, y));
                const bool masked = qAlpha(mask.pixel(x, y)) == 255;
                halfTransparent += alpha != 0 && alpha != 255;
                opaque += alpha == 255;
                mismatches += (alpha == 255) != masked;
                coloured += erased && masked && (mask.pixel(x, y) & 0xFFFFFF) != 0;
            }
        EXPECT_EQ(halfTransparent, 0);
        EXPECT_TRUE(isIcon(p) ? opaque > 0 : opaque == picture.width() * picture.height()) << "a bitmap has transparent pixels";
        EXPECT_EQ(mismatches, 0);
        EXPECT_EQ(coloured, 0);
    }
}

// The default sound and every event's: 16-bit mono PCM at 22050 Hz, 20 ms to 1.5 s long, no
// two alike.
TEST(Sounds, EveryEventSoundIsAShortDistinctMonoPcmWave) {
    QStringList paths{assets::kDefaultSound};
    for (const char* name : kSoundFiles) paths << assets::soundPath(name);
    std::set<QByteArray> contents;
    for (const QString& path : paths) {
        SCOPED_TRACE(path.toStdString());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray data = file.readAll();
        const WaveLayout f = readWaveLayout(data);
        EXPECT_EQ(std::make_tuple(f.format, f.channels, f.bits, f.rate), std::make_tuple(1, 1, 16, 22050));
        EXPECT_TRUE(f.pcmBytes > 0.02 * 2 * 22050 && f.pcmBytes < 1.5 * 2 * 22050) << f.pcmBytes << " bytes";
        EXPECT_TRUE(contents.insert(data).second) << "same as another sound";
    }
}

}  // namespace
