// A frame placement remembered from an earlier run, checked against the screens that exist
// now: a monitor unplugged since then must not leave the window where nobody can reach it.
#pragma once

#include <QList>
#include <QRect>

namespace quillop {

// The outer frame (title bar at its top) as it may open on screens with these available
// areas, the primary first. It stays where it is when its title bar lies on a screen with
// at least 100 x 50 pixels of it showing there; otherwise it goes to the default place
// near the primary's top-left corner. A size larger than its screen's area is reduced.
QRect placeOnScreens(QRect frame, const QList<QRect>& available);

// The same for the screens of this desktop.
QRect placeOnTodaysScreens(const QRect& frame);

}  // namespace quillop
