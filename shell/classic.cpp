#include "shell/classic.h"

#include <QMouseEvent>
#include <QPainter>

namespace quillop {

QFont classicFont(double points, bool bold, const char* face) {
    QFont font(QString::fromLatin1(face));
    font.setStyleHint(QFont::SansSerif);
    font.setFamilies({QString::fromLatin1(face), QStringLiteral("DejaVu Sans"), QStringLiteral("Sans Serif")});
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

QLabel* classicLabel(QWidget* parent, const QString& text, const QRect& geometry, const QColor& color,
                     const QFont& font, bool centred) {
    auto* label = new QLabel(text, parent);
    // The stand-in face runs wider than the one the boxes were drawn for; a centred caption
    // that no longer fits grows its box evenly on both sides rather than losing its ends.
    QRect box = geometry;
    const int needed = QFontMetrics(font).horizontalAdvance(text) + 2;
    if (centred && needed > box.width() && geometry.height() <= 2 * QFontMetrics(font).height()) {
        const int grow = needed - box.width();
        box.adjust(-grow / 2, 0, grow - grow / 2, 0);
        if (box.left() < 0) box.moveLeft(0);
    }
    label->setGeometry(box);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    label->setAutoFillBackground(false);
    label->setAlignment((centred ? Qt::AlignHCenter : Qt::AlignLeft) | Qt::AlignTop);
    label->setWordWrap(geometry.height() > 2 * QFontMetrics(font).height());
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
