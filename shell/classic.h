// Design units and looks of the classic windows: twips (15 to a pixel), the fonts they
// named, and plain widgets for the classic picture and label controls.
#pragma once

#include <QFont>
#include <QImage>
#include <QLabel>
#include <QRect>
#include <QWidget>
#include <cmath>
#include <functional>

#include "game/world.h"

namespace quillop {

inline int px(double twips) { return static_cast<int>(std::lround(twips / kTwipsPerPixel)); }
inline float twips(int pixels) { return static_cast<float>(pixels * kTwipsPerPixel); }
inline QRect twipsRect(double left, double top, double width, double height) {
    return QRect(px(left), px(top), px(width), px(height));
}

// "MS Sans Serif" (and "Small Fonts") are not on this desktop; a face of about its width
// stands in at the same point size.
QFont classicFont(double points, bool bold = false, const char* face = "MS Sans Serif");

// A label as the classic form drew it: text at the top left unless centred, optionally on
// a transparent background, in a fixed colour.
QLabel* classicLabel(QWidget* parent, const QString& text, const QRect& geometry, const QColor& color,
                     const QFont& font, bool centred = false);

// A picture control: the image at its natural size in the control's top-left corner,
// clipped to the control; reports presses and clicks in its own pixels.
class PictureBox : public QWidget {
public:
    PictureBox(QWidget* parent, const QImage& image, const QRect& geometry);
    std::function<void(QPointF)> onPress;
    std::function<void()> onClick;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QImage image_;
    bool pressed_ = false;
};

}  // namespace quillop
