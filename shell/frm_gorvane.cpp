#include "shell/frm_gorvane.h"

#include "replay/recorder.h"

#include <algorithm>
#include <cmath>

#include <QFontMetrics>
#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <QPixmap>
#include <QStyleOptionButton>
#include <QStylePainter>

#include "platform/qt/repaint_areas.h"
#include "platform/qt/shape_paint.h"
#include "shell/classic.h"
#include "shell/startup_log.h"

namespace quillop {
namespace {

// Measured under Xvfb: a rectangle more in a frame's repaint costs the game and the X server
// about what two thousand more pixels do.
constexpr qreal kPixelsPerRect = 2000;

// The label's mouse presses and moves stay with it, as the classic lightweight label kept
// them: the paddle does not follow the pointer across "Insert Coin".
class MessageLabel : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void mousePressEvent(QMouseEvent* event) override { event->accept(); }
    void mouseMoveEvent(QMouseEvent* event) override { event->accept(); }
};

// The playfield's buttons sit over a field that changes every tick, so they are repainted
// with it almost every tick; laying out their captions each time was most of the cost of a
// frame. The face is drawn once into a pixmap and drawn again from it until the button's
// look (state, caption, size, palette, font) changes.
class FieldButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent*) override {
        QStyleOptionButton option;
        initStyleOption(&option);
        const qreal ratio = devicePixelRatioF();
        const bool same = !face_.isNull() && option.state == drawn_.state && option.features == drawn_.features &&
                          option.text == drawn_.text && option.rect == drawn_.rect &&
                          option.palette.cacheKey() == drawn_.palette.cacheKey() &&
                          option.palette.currentColorGroup() == drawn_.palette.currentColorGroup() &&
                          font() == drawnFont_ && ratio == face_.devicePixelRatio();
        if (!same) {
            face_ = QPixmap((QSizeF(size()) * ratio).toSize());
            face_.setDevicePixelRatio(ratio);
            face_.fill(Qt::transparent);
            QStylePainter facePainter(&face_, this);
            // What a painter opened on the widget itself would start with.
            facePainter.setFont(font());
            facePainter.setPen(palette().color(foregroundRole()));
            facePainter.setLayoutDirection(layoutDirection());
            facePainter.drawControl(QStyle::CE_PushButton, option);
            drawn_ = option;
            drawnFont_ = font();
        }
        QPainter painter(this);
        painter.drawPixmap(0, 0, face_);
        static bool first = true;
        if (first) startupMark("first button painted");
        first = false;
    }

private:
    QPixmap face_;
    QStyleOptionButton drawn_;
    QFont drawnFont_;
};

void syncControl(QWidget* widget, const ControlModel& model) {
    const QRect geometry = shapeBox(model.Left, model.Top, model.Width, model.Height);
    if (widget->geometry() != geometry) widget->setGeometry(geometry);
    const bool visible = model.Visible != kFalse;
    if (widget->isVisibleTo(widget->parentWidget()) != visible) widget->setVisible(visible);
    const QString caption = QString::fromStdString(model.Caption);
    if (auto* button = qobject_cast<QPushButton*>(widget)) {
        if (button->text() != caption) button->setText(caption);
    } else if (auto* label = qobject_cast<QLabel*>(widget)) {
        if (label->text() != caption) label->setText(caption);
    }
}

}  // namespace

class PlayfieldCanvas : public QWidget {
public:
    PlayfieldCanvas(FrmGorvane& owner) : QWidget(&owner), owner_(owner) {
        setMouseTracking(true);
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAttribute(Qt::WA_NoSystemBackground);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        // Sprites are pixel art: a scaled display must not smear them.
        painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
        const QImage& image = owner_.surface_.image();
        const QRegion outside = event->region() - QRegion(image.rect());
        const qreal ratio = devicePixelRatioF();
        if (ratio == std::floor(ratio)) {
            for (const QRect& r : event->region()) painter.drawImage(r.topLeft(), image, r);
        } else {
            // The whole image under a clip, not a piece of it: on a screen scaled by a
            // fraction a piece lands on fractional device pixels and rounds differently at
            // its edges than the same place painted as part of a larger area: seams.
            for (const QRect& r : event->region()) {
                painter.setClipRect(r);
                painter.drawImage(QPoint(0, 0), image);
            }
            painter.setClipping(false);
        }
        for (const QRect& r : outside) painter.fillRect(r, QColor(0x80, 0x80, 0x80));
        if (Gorvane* game = owner_.game(); game && game->shapePuck.Visible != kFalse) {
            paintPuck(painter, game->shapePuck);
        }
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (Gorvane* game = owner_.game()) {
            const float x = static_cast<float>(event->position().x()), y = static_cast<float>(event->position().y());
            game->Form_MouseMove(x, y);
            owner_.tell("move", x, y);
            owner_.showSoon();
        }
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (Gorvane* game = owner_.game()) {
            const float x = static_cast<float>(event->position().x()), y = static_cast<float>(event->position().y());
            game->Form_MouseDown(x, y);
            owner_.tell("press", x, y);
            owner_.afterEvent_();
        }
    }

private:
    FrmGorvane& owner_;
};

FrmGorvane::FrmGorvane(QWidget* parent, ImageSurface& surface) : QWidget(parent), surface_(surface) {
    setObjectName(QStringLiteral("frmGorvane"));
    QPalette palette = this->palette();
    palette.setColor(QPalette::Window, QColor(0x80, 0x80, 0x80));
    setPalette(palette);
    setAutoFillBackground(true);
    canvas_ = new PlayfieldCanvas(*this);
    showSoon_.setSingleShot(true);
    showSoon_.setTimerType(Qt::PreciseTimer);
    showSoon_.setInterval(kShowSoonMs);
    QObject::connect(&showSoon_, &QTimer::timeout, this, [this] { refresh(); });

    // Design places in twips; the game re-centres them at once.
    cmdPlay = new FieldButton(QStringLiteral("Play"), canvas_);
    cmdPlay->setObjectName(QStringLiteral("cmdPlay"));
    cmdPlay->setGeometry(twipsRect(360, 960, 2175, 615));
    cmdPlay->setFont(classicFont(18));
    QPalette face = cmdPlay->palette();
    face.setColor(QPalette::Button, QColor(0x80, 0x80, 0x80));
    cmdPlay->setPalette(face);
    cmdDrop = new FieldButton(QStringLiteral("Drop"), canvas_);
    cmdDrop->setObjectName(QStringLiteral("cmdDrop"));
    cmdDrop->setGeometry(twipsRect(360, 1680, 2175, 615));
    cmdDrop->setFont(classicFont(13.5));
    cmdDrop->hide();
    cmdShowVars = new FieldButton(QStringLiteral("Show Variable Window"), canvas_);
    cmdShowVars->setGeometry(twipsRect(360, 2400, 2535, 495));
    cmdShowVars->hide();
    Label7 = new MessageLabel(QStringLiteral("Insert Coin"), canvas_);
    Label7->setObjectName(QStringLiteral("Label7"));
    Label7->setGeometry(twipsRect(360, 3120, 2535, 495));
    // "Small Fonts" was a narrow face; our stand-in is wider and taller, so it is shrunk until
    // both of the label's messages fit the label, across and down, as the original's did.
    QFont messageFont = classicFont(24, true, "Small Fonts");
    for (double points = 24; points > 8; points -= 0.5) {
        messageFont.setPointSizeF(points);
        const QFontMetrics metrics(messageFont);
        auto fits = [&](const QString& text) {
            return metrics.horizontalAdvance(text) < Label7->width() &&
                   metrics.ascent() + metrics.boundingRect(text).bottom() < Label7->height();
        };
        if (fits(QStringLiteral("Insert Coin")) && fits(QStringLiteral("You Win !!"))) break;
    }
    Label7->setFont(messageFont);
    QPalette orange = Label7->palette();
    orange.setColor(QPalette::WindowText, QColor(0xFF, 0x80, 0x00));
    Label7->setPalette(orange);
    Label7->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    Label7->hide();
    for (QPushButton* button : {cmdPlay, cmdDrop, cmdShowVars}) button->setAutoDefault(false);
}

void FrmGorvane::bind(Program& program, std::function<void()> afterEvent) {
    program_ = &program;
    afterEvent_ = std::move(afterEvent);
    auto click = [this](void (Gorvane::*handler)(), const char* command) {
        return [this, handler, command] {
            if (Gorvane* g = game()) {
                (g->*handler)();
                if (onCommand) onCommand(command);
                afterEvent_();
            }
        };
    };
    QObject::connect(cmdPlay, &QPushButton::clicked, this, click(&Gorvane::cmdPlay_Click, "play"));
    QObject::connect(cmdDrop, &QPushButton::clicked, this, click(&Gorvane::cmdDrop_Click, "drop"));
}

void FrmGorvane::tell(const char* command, float x, float y) {
    if (onCommand)
        onCommand(std::string(command) + " " + replay::GameRecorder::number(x) + " " + replay::GameRecorder::number(y));
}

void FrmGorvane::takePlayerInput(bool take) {
    // The canvas and the buttons on it take no pointer; the frame's menus are the replay's
    // to disable.
    canvas_->setAttribute(Qt::WA_TransparentForMouseEvents, !take);
}

Gorvane* FrmGorvane::game() const {
    return program_ && program_->gorvaneLoaded() ? &program_->gorvane() : nullptr;
}

QWidget* FrmGorvane::canvas() const { return canvas_; }

void FrmGorvane::showSoon() {
    if (!showSoon_.isActive()) showSoon_.start();
}

void FrmGorvane::refresh() {
    showSoon_.stop();
    Gorvane* g = game();
    std::vector<QRect> changed = surface_.takePaintedAreas();
    if (g) {
        const ShapeModel& puck = g->shapePuck;
        std::optional<QRect> now;
        if (puck.Visible != kFalse) now = shapeBox(puck.Left, puck.Top, puck.Width, puck.Height);
        // The puck is redrawn where it was and where it is; it cannot change its look without
        // also being hidden or moved by the game, but repainting its box every time is cheap.
        // The outline reaches half its pen beyond the box on a scaled screen.
        for (const std::optional<QRect>& box : {puckDrawn_, now})
            if (box) changed.push_back(box->adjusted(-1, -1, 1, 1));
        puckDrawn_ = now;
    }
    if (!changed.empty()) {
        // What a rectangle costs, in pixels of this screen (see coalesceRepaint).
        const qreal ratio = canvas_->devicePixelRatioF();
        canvas_->update(coalesceRepaint(std::move(changed), static_cast<int>(kPixelsPerRect / (ratio * ratio))));
    }
    if (!g) return;
    syncControl(cmdPlay, g->cmdPlay);
    syncControl(cmdDrop, g->cmdDrop);
    syncControl(cmdShowVars, g->cmdShowVars);
    syncControl(Label7, g->Label7);
}

float FrmGorvane::remembered(const Remembered& r, int pixels) const {
    // The twips asked for, as long as the window still has the pixels they gave; a window
    // moved or sized since reports its own pixels.
    return r.pixels == pixels ? r.twips : twips(pixels);
}

float FrmGorvane::scaleWidth() { return static_cast<float>(std::max(QWidget::width() - 2 * kBorder, 0)); }
float FrmGorvane::scaleHeight() { return static_cast<float>(std::max(QWidget::height() - 2 * kBorder, 0)); }
float FrmGorvane::top() { return remembered(top_, y()); }
float FrmGorvane::left() { return remembered(left_, x()); }
float FrmGorvane::height() { return remembered(height_, QWidget::height()); }
float FrmGorvane::width() { return remembered(width_, QWidget::width()); }

void FrmGorvane::setTop(float t) {
    top_ = {t, px(t)};
    normalGeometry_.moveTop(top_.pixels);
    applyGeometry();
}
void FrmGorvane::setLeft(float l) {
    left_ = {l, px(l)};
    normalGeometry_.moveLeft(left_.pixels);
    applyGeometry();
}
void FrmGorvane::setHeight(float h) {
    height_ = {h, std::max(px(h), 1)};
    normalGeometry_.setHeight(height_.pixels);
    applyGeometry();
}
void FrmGorvane::setWidth(float w) {
    width_ = {w, std::max(px(w), 1)};
    normalGeometry_.setWidth(width_.pixels);
    applyGeometry();
}

void FrmGorvane::setWindowState(WindowState state) {
    // Only reachable from a hand-edited store: a maximised playfield fills the frame's
    // client area; a minimised one is kept in its normal place (it has no icon to show).
    state_ = state;
    applyGeometry();
}

void FrmGorvane::applyGeometry() {
    QRect target = normalGeometry_;
    if (state_ == kMaximized && parentWidget()) target = parentWidget()->rect();
    if (geometry() != target) setGeometry(target);
    matchSurface();
}

void FrmGorvane::matchSurface() {
    const QSize inner(static_cast<int>(scaleWidth()), static_cast<int>(scaleHeight()));
    canvas_->setGeometry(QRect(QPoint(kBorder, kBorder), inner));
    if (surface_.image().size() != inner) surface_.resize(inner.width(), inner.height());
}

void FrmGorvane::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    matchSurface();
    if (Gorvane* g = game()) {
        g->Form_Resize();
        afterEvent_();
    }
}

void FrmGorvane::paintEvent(QPaintEvent*) {
    // The fixed dialog border: light and white on the top-left, grey and dark below.
    QPainter painter(this);
    const QRect r = rect();
    painter.setPen(QColor(0xC0, 0xC0, 0xC0));
    painter.drawLine(r.topLeft(), r.topRight());
    painter.drawLine(r.topLeft(), r.bottomLeft());
    painter.setPen(Qt::white);
    painter.drawLine(r.left() + 1, r.top() + 1, r.right() - 1, r.top() + 1);
    painter.drawLine(r.left() + 1, r.top() + 1, r.left() + 1, r.bottom() - 1);
    painter.setPen(QColor(0x40, 0x40, 0x40));
    painter.drawLine(r.bottomLeft(), r.bottomRight());
    painter.drawLine(r.topRight(), r.bottomRight());
    painter.setPen(QColor(0x80, 0x80, 0x80));
    painter.drawLine(r.left() + 1, r.bottom() - 1, r.right() - 1, r.bottom() - 1);
    painter.drawLine(r.right() - 1, r.top() + 1, r.right() - 1, r.bottom() - 1);
}

}  // namespace quillop
