#include "shell/classic.h"

#include <QMouseEvent>
#include <QPainter>

namespace quillop {

QFont classicFont(double points, bool bold, const char* face) {
    QFont font(QString::fromLatin1(face));
    font.setStyleHint(QFont::SansSerif);
    // Nimbus Sans (Debian's fonts-urw-base35) runs about as wide as the classic face, so the
    // texts keep to the boxes they were laid out in; the others are the fall-backs.
    font.setFamilies({QString::fromLatin1(face), QStringLiteral("Nimbus Sans"), QStringLiteral("Liberation Sans"),
                      QStringLiteral("DejaVu Sans"), QStringLiteral("Sans Serif")});
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

QLabel* classicLabel(QWidget* parent, const QString& text, const QRect& geometry, const QColor& color,
                     const QFont& font, bool centred) {
    auto* label = new QLabel(text, parent);
    label->setGeometry(geometry);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    label->setAutoFillBackground(false);
    // The stand-in's line has more room above its letters than the classic face had: a
    // single line taller than its box is centred on it, which keeps its letters inside.
    const bool wrap = geometry.height() > 2 * QFontMetrics(font).height();
    const bool tall = !wrap && QFontMetrics(font).height() > geometry.height();
    label->setAlignment((centred ? Qt::AlignHCenter : Qt::AlignLeft) | (tall ? Qt::AlignVCenter : Qt::AlignTop));
    label->setWordWrap(wrap);
    return label;
}

PictureBox::PictureBox(QWidget* parent, const QImage& image, const QRect& geometry)
    : QWidget(parent), image_(image) {
    setGeometry(geometry);
}

void PictureBox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // Pixel art: a scaled screen shows each pixel as a block, never a blend of neighbours.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    painter.drawImage(QPoint(0, 0), image_);
}

void PictureBox::mousePressEvent(QMouseEvent* event) {
    pressed_ = true;
    if (onPress) onPress(event->position());
}

void PictureBox::mouseReleaseEvent(QMouseEvent* event) {
    const bool click = pressed_ && rect().contains(event->position().toPoint());
    pressed_ = false;
    if (click && onClick) onClick();
}

}  // namespace quillop
