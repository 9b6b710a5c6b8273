#include "platform/qt/tick_pacer.h"

#include <algorithm>

namespace quillop {
namespace {

constexpr qint64 kMaxCatchUp = 1;  // extra ticks one late event may run
constexpr qint64 kMaxBacklog = 4;  // further behind than this, the backlog is dropped

}  // namespace

qint64 TickPacer::periodNs(int intervalMs) {
    const qint64 wanted = std::max<qint64>(intervalMs, 1) * 1'000'000;
    const qint64 steps = (wanted + kStepNs - 1) / kStepNs;
    return std::max<qint64>(steps, 1) * kStepNs;
}

TickPacer::TickPacer(QObject* parent) : QObject(parent) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &TickPacer::onTimer);
}

void TickPacer::start() {
    clock_.start();
    running_ = true;
    enabled_ = false;
    interval_ = -1;
    noticeChanges(0);
    armNext(0);
}

void TickPacer::stop() {
    running_ = false;
    timer_.stop();
}

void TickPacer::sync() {
    if (!running_) return;
    const qint64 now = clock_.nsecsElapsed();
    if (noticeChanges(now)) armNext(now);
}

bool TickPacer::noticeChanges(qint64 now) {
    const TimerModel model = timerModel();
    const bool enabled = model.Enabled != kFalse;
    if (enabled == enabled_ && model.Interval == interval_) return false;
    // Enabling the timer or setting its interval starts its count anew.
    enabled_ = enabled;
    interval_ = model.Interval;
    anchorNs_ = now;
    ticksSinceAnchor_ = 0;
    return true;
}

void TickPacer::onTimer() {
    if (!running_) return;
    qint64 now = clock_.nsecsElapsed();
    noticeChanges(now);
    if (enabled_ && !busy()) {
        const qint64 period = periodNs(interval_);
        qint64 due = (now - anchorNs_) / period - ticksSinceAnchor_;
        if (due > kMaxBacklog) {
            // Far behind (a stall, a modal wait): go on from here at the steady rhythm.
            ticksSinceAnchor_ += due - 1;
            due = 1;
        }
        for (qint64 k = 0; k < std::min(due, 1 + kMaxCatchUp); ++k) {
            ++ticksSinceAnchor_;
            onTick();
            if (!running_) return;
            now = clock_.nsecsElapsed();
            if (noticeChanges(now)) break;  // the tick (or a wait inside it) re-timed Timer1
        }
    }
    armNext(clock_.nsecsElapsed());
}

void TickPacer::armNext(qint64 now) {
    // While disabled, look again one clock step later; a click that enables the timer
    // calls sync() anyway.
    qint64 next = now + kStepNs;
    if (enabled_) next = anchorNs_ + (ticksSinceAnchor_ + 1) * periodNs(interval_);
    const qint64 waitNs = std::max<qint64>(next - now, 0);
    timer_.start(static_cast<int>((waitNs + 999'999) / 1'000'000));
}

}  // namespace quillop
