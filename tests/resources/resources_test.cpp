// The pictures and sounds the game is built from, as embedded in the program.
#include <gtest/gtest.h>

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <set>
#include <tuple>
#include <vector>

#include "game/pictures.h"
#include "game/sounds.h"
#include "platform/qt/picture_set.h"
#include "platform/qt/wave_file.h"
#include "resources/assets.h"

using quillop::Pic;

namespace {

// A picture as the game reads it, which must be what Qt's own reader makes of the file.
QImage load(const QString& path) {
    const QImage image = quillop::readXpm(path).convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(image, QImage(path).convertToFormat(QImage::Format_ARGB32)) << path.toStdString();
    return image;
}
QImage load(Pic p) { return load(quillop::assets::spritePath(quillop::pictureName(p))); }

bool opaqueAt(const QImage& image, int x, int y) { return qAlpha(image.pixel(x, y)) == 255; }

// Bounding box of the opaque pixels; also fails the test on a half-transparent pixel, which
// the copy-only painting of the playfield could not show.
QRect figureArea(const QImage& image) {
    QRect area;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            EXPECT_TRUE(alpha == 0 || alpha == 255) << "at " << x << "," << y;
            if (alpha == 255) area |= QRect(x, y, 1, 1);
        }
    return area;
}

// Every sprite at its natural size, a bitmap opaque throughout, and the eraser the game
// paints over a sprite a black silhouette of exactly it. The second Jester picture (mines
// 3 to 5) is left out there: the game erases it with the first Jester's eraser, smaller.
TEST(Pictures, EverySpriteHasItsSizeAndItsEraserIsItsSilhouette) {
    for (int i = 1; i < quillop::kPictureCount; ++i) {
        const Pic p = static_cast<Pic>(i);
        SCOPED_TRACE(quillop::pictureName(p));
        const QImage picture = load(p);
        ASSERT_FALSE(picture.isNull());
        EXPECT_EQ(picture.size(), QSize(quillop::pictureSize(p).width, quillop::pictureSize(p).height));
        const QRect area = figureArea(picture);
        EXPECT_TRUE(quillop::isIcon(p) ? !area.isEmpty() : area == picture.rect()) << "a bitmap has transparent pixels";
        if (quillop::eraserOf(p) == Pic::None || (p >= Pic::Mine3 && p <= Pic::Mine5)) continue;
        const QImage mask = load(quillop::eraserOf(p));
        ASSERT_EQ(picture.size(), mask.size());
        int mismatches = 0, coloured = 0;
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                mismatches += opaqueAt(picture, x, y) != opaqueAt(mask, x, y);
                coloured += opaqueAt(mask, x, y) && (mask.pixel(x, y) & 0xFFFFFF) != 0;
            }
        EXPECT_EQ(mismatches, 0);
        EXPECT_EQ(coloured, 0);
    }
}

TEST(Sounds, EveryEventSoundIsAShortDistinctMonoPcmWave) {
    std::vector<QString> paths = {QString::fromLatin1(quillop::assets::kDefaultSound)};
    for (const char* name : quillop::kSoundFiles) paths.push_back(quillop::assets::soundPath(QString::fromLatin1(name)));
    std::set<QByteArray> contents;
    for (const QString& path : paths) {
        SCOPED_TRACE(path.toStdString());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray data = file.readAll();
        const quillop::WaveLayout f = quillop::readWaveLayout(data);
        EXPECT_EQ(std::make_tuple(f.format, f.channels, f.bits, f.rate), std::make_tuple(1, 1, 16, 22050));
        const double seconds = f.pcmBytes / (2.0 * 22050);
        EXPECT_GT(seconds, 0.02);
        EXPECT_LT(seconds, 1.5);
        EXPECT_TRUE(contents.insert(data).second) << "same as another sound";
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Test discovery runs the binary outside ctest's environment, so default to no display.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
