#include "shell/on_screen.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>

namespace quillop {
namespace {

constexpr int kLeastVisibleWidth = 100;
constexpr int kLeastVisibleHeight = 50;
const QPoint kDefaultOffset(20, 20);  // the rules' first-run place, 300 twips in and down


bool reachableOn(const QRect& frame, const QRect& screen) {
    const QRect seen = frame & screen;
    const bool titleBarOnIt = frame.top() >= screen.top() && frame.top() <= screen.bottom();
    return titleBarOnIt && seen.width() >= kLeastVisibleWidth && seen.height() >= kLeastVisibleHeight;
}

}  // namespace

QRect placeOnScreens(QRect frame, const QList<QRect>& available) {
    if (available.isEmpty()) return frame;
    const QRect* home = nullptr;
    qint64 homeArea = 0;
    for (const QRect& screen : available) {
        const QRect seen = frame & screen;
        const qint64 area = qint64(seen.width()) * seen.height();
        if (reachableOn(frame, screen) && area > homeArea) home = &screen, homeArea = area;
    }
    const bool stays = home != nullptr;
    if (!home) home = &available.front();
    frame.setWidth(std::min(frame.width(), home->width()));
    frame.setHeight(std::min(frame.height(), home->height()));
    if (!stays) frame.moveTopLeft(home->topLeft() + kDefaultOffset);
    // Moved to the default place, or made smaller where only its far side showed: it is
    // then brought wholly onto the screen.
    if (!stays || !reachableOn(frame, *home)) {
        frame.moveLeft(std::clamp(frame.left(), home->left(), home->right() + 1 - frame.width()));
        frame.moveTop(std::clamp(frame.top(), home->top(), home->bottom() + 1 - frame.height()));
    }
    return frame;
}

QRect placeOnTodaysScreens(const QRect& frame) {
    QList<QRect> available;
    if (QScreen* primary = QGuiApplication::primaryScreen()) available << primary->availableGeometry();
    for (QScreen* screen : QGuiApplication::screens())
        if (screen != QGuiApplication::primaryScreen()) available << screen->availableGeometry();
    return placeOnScreens(frame, available);
}

}  // namespace quillop
