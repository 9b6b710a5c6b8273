#include "tools/sim/snapshot.h"

#include <QImageWriter>
#include <QPainter>
#include <cmath>

#include "platform/qt/shape_paint.h"

namespace quillop::sim {
namespace {

// Drawn exactly as the playfield window draws its puck control.
void drawPuck(QImage& image, const ShapeModel& puck) {
    const auto nearField = [](float v) { return std::fabs(v) < 1e6f; };  // also rejects NaN
    if (!(nearField(puck.Left) && nearField(puck.Top) && nearField(puck.Width) && nearField(puck.Height))) return;
    QPainter painter(&image);
    paintPuck(painter, puck);
}

}  // namespace

QImage composeSnapshot(const QImage& surface, const ShapeModel& puck) {
    QImage image = surface.convertToFormat(QImage::Format_RGB32);
    if (puck.Visible != kFalse) drawPuck(image, puck);
    return image;
}

bool writeSnapshot(const QImage& surface, const ShapeModel& puck, const std::string& path, std::string& error) {
    if (surface.isNull()) {
        error = "the playfield is too large to draw";
        return false;
    }
    const QImage image = composeSnapshot(surface, puck);
    QImageWriter writer(QString::fromStdString(path), "png");
    if (!writer.write(image)) {
        error = writer.errorString().toStdString();
        return false;
    }
    return true;
}

}  // namespace quillop::sim
