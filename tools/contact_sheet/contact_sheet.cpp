// Draws every sprite picture of the game at 4x beside its eraser, on a checkerboard so that
// transparency shows, with its name and natural size; then the program icon, the help
// window's paddle, the about picture and the Queen drawing. Pictures that are missing or of
// the wrong size are labelled in red and make the tool fail.
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>
#include <vector>

#include "game/pictures.h"
#include "resources/assets.h"

using quillop::Pic;

namespace {

constexpr int kZoom = 4;
constexpr int kSheetWidth = 1480;
constexpr int kGap = 14;
constexpr int kLabelHeight = 30;

struct Tile {
    QImage image;  // already scaled
    QString label;
    bool faulty = false;
};

QImage zoomed(const QImage& source, int zoom) {
    return source.scaled(source.size() * zoom, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

Tile pictureTile(const QString& path, const QString& label, QSize expected, int zoom) {
    QImage image(path);
    Tile tile;
    tile.label = label;
    if (image.isNull()) {
        tile.faulty = true;
        tile.label += QStringLiteral(" MISSING");
        image = QImage(expected, QImage::Format_ARGB32);
        image.fill(Qt::red);
    } else if (expected.isValid() && image.size() != expected) {
        tile.faulty = true;
        tile.label += QStringLiteral(" SIZE %1x%2!").arg(image.width()).arg(image.height());
    }
    tile.image = zoomed(image.convertToFormat(QImage::Format_ARGB32), zoom);
    return tile;
}

Tile spriteTile(Pic p) {
    const auto size = quillop::pictureSize(p);
    const QSize expected(size.width, size.height);
    const char* name = quillop::pictureName(p);
    return pictureTile(quillop::assets::spritePath(name),
                       QStringLiteral("%1 %2x%3").arg(QLatin1String(name)).arg(size.width)
                           .arg(size.height),
                       expected, kZoom);
}

Tile queenTile(QSize box, int zoom, const QString& label) {
    QSvgRenderer renderer(QString::fromLatin1(quillop::assets::kQueenDrawing));
    Tile tile;
    tile.label = label;
    QImage image(box, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (!renderer.isValid()) {
        tile.faulty = true;
        tile.label += QStringLiteral(" MISSING");
    } else {
        QPainter painter(&image);
        renderer.render(&painter);
    }
    tile.image = zoomed(image, zoom);
    return tile;
}

void drawChecker(QPainter& painter, const QRect& area) {
    painter.save();
    painter.setClipRect(area);
    for (int y = area.top(); y <= area.bottom(); y += 8)
        for (int x = area.left(); x <= area.right(); x += 8)
            painter.fillRect(x, y, 8, 8,
                             ((x - area.left()) / 8 + (y - area.top()) / 8) % 2 ? QColor(0x6c6c6c)
                                                                                : QColor(0x9c9c9c));
    painter.restore();
}

// One cell: its tiles side by side, each on a checkerboard, labels underneath.
QSize cellSize(const std::vector<Tile>& tiles) {
    int w = 0, h = 0;
    for (const Tile& t : tiles) {
        w += std::max(t.image.width(), 150) + kGap;
        h = std::max(h, t.image.height());
    }
    return QSize(w, h + kLabelHeight);
}

void drawCell(QPainter& painter, QPoint at, const std::vector<Tile>& tiles) {
    int x = at.x();
    for (const Tile& t : tiles) {
        const QRect area(QPoint(x, at.y()), t.image.size());
        drawChecker(painter, area);
        painter.drawImage(area.topLeft(), t.image);
        painter.setPen(QColor(0x3050ff));
        painter.drawRect(area.adjusted(-1, -1, 0, 0));
        painter.setPen(t.faulty ? Qt::red : Qt::white);
        painter.drawText(QRect(x, area.bottom() + 4, std::max(t.image.width(), 150), 24),
                         Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, t.label);
        x += std::max(t.image.width(), 150) + kGap;
    }
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: quillop-contact-sheet OUTPUT.png\n");
        return 2;
    }

    std::vector<std::vector<Tile>> cells;
    for (int i = 1; i < quillop::kPictureCount; ++i) {
        const Pic p = static_cast<Pic>(i);
        const Pic eraser = quillop::eraserOf(p);
        if (eraser != Pic::None) cells.push_back({spriteTile(p), spriteTile(eraser)});
    }
    cells.push_back({pictureTile(":/icons/quillop_32.xpm", "program icon 32x32", {32, 32}, kZoom),
                     pictureTile(":/icons/quillop_16.xpm", "program icon 16x16", {16, 16}, kZoom),
                     pictureTile(quillop::assets::kHelpPaddle, "help_imgPaddle 32x4", {32, 4},
                                 kZoom)});
    cells.push_back({pictureTile(quillop::assets::kAboutPicture, "about 139x214 (2x)",
                                 {139, 214}, 2)});
    // The dialog stretches the drawing to a 32 x 38 pixel box; also shown at its own aspect.
    cells.push_back({queenTile({32, 38}, kZoom, "queen.svg in its 32x38 box"),
                     queenTile({317, 270}, 1, "queen.svg 3172:2697")});

    // Flow the cells into rows.
    std::vector<QPoint> places;
    int x = kGap, y = kGap, rowHeight = 0;
    for (const auto& cell : cells) {
        const QSize s = cellSize(cell);
        if (x + s.width() > kSheetWidth && x > kGap) {
            x = kGap;
            y += rowHeight + kGap;
            rowHeight = 0;
        }
        places.emplace_back(x, y);
        x += s.width() + kGap;
        rowHeight = std::max(rowHeight, s.height());
    }

    QImage sheet(kSheetWidth, y + rowHeight + kGap, QImage::Format_ARGB32);
    sheet.fill(QColor(0x202028));
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    QFont font = painter.font();
    font.setPixelSize(11);
    painter.setFont(font);
    bool faulty = false;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        drawCell(painter, places[i], cells[i]);
        for (const Tile& t : cells[i]) faulty = faulty || t.faulty;
    }
    painter.end();

    if (!sheet.save(QString::fromLocal8Bit(argv[1]))) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    if (faulty) std::fprintf(stderr, "some pictures are missing or of the wrong size\n");
    return faulty ? 1 : 0;
}
