// Drives Timer1 at the classic desktop's pace. Its timer ran on a 1/64 s clock: an interval
// of 1 ms gave 64 events a second, and every interval was rounded up to whole steps of that
// clock (600 ms became 39 steps, 609.375 ms). The game's speeds are counted per tick, so
// the pace is part of the rules; Qt's own timers are not relied on for it. Due ticks are
// counted from a steady clock since the timer was last (re)started, and a late event runs at
// most one catch-up tick; a longer backlog is dropped rather than played in a burst.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>

#include "game/controls.h"

namespace quillop {

class TickPacer : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 kStepNs = 15'625'000;  // 1/64 s
    // The period of an interval in milliseconds: whole clock steps, at least one.
    static qint64 periodNs(int intervalMs);

    explicit TickPacer(QObject* parent = nullptr);
    // What the pacer asks and does; all three are set before start().
    std::function<TimerModel()> timerModel;  // Timer1 as it is now (disabled when unloaded)
    std::function<bool()> busy;              // a tick is still running (waiting inside)
    std::function<void()> onTick;            // one Timer1 event, and whatever follows it

    void start();
    void stop();
    // Reads Timer1 again at once, so enabling or re-timing it restarts its count now rather
    // than at the next poll.
    void sync();

private:
    void onTimer();
    bool noticeChanges(qint64 now);
    void armNext(qint64 now);

    QTimer timer_;
    QElapsedTimer clock_;
    bool enabled_ = false;
    int interval_ = -1;
    qint64 anchorNs_ = 0;   // when the timer was last (re)started
    qint64 ticksSinceAnchor_ = 0;
    bool running_ = false;
};

}  // namespace quillop
