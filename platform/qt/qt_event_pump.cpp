#include "platform/qt/qt_event_pump.h"

#include <QCoreApplication>
#include <QTime>
#include <QTimer>

#include "platform/qt/qt_clock.h"

namespace quillop {
namespace {

// Milliseconds from now until secondsSinceMidnight() next changes.
int msToNextStep() {
    const qint64 ms = QTime::currentTime().msecsSinceStartOfDay();
    const qint64 step = ms * QtClock::kStepsPerSecond / 1000;
    const qint64 next = ((step + 1) * 1000 + QtClock::kStepsPerSecond - 1) / QtClock::kStepsPerSecond;
    return static_cast<int>(next - ms);
}

}  // namespace

void QtEventPump::processPendingEvents() {
    if (beforeEach) beforeEach();
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    // The caller loops until the clock steps, and the clock only moves 64 times a second:
    // rather than spin a core, wait for the next step or the next event, whichever is first.
    const int wait = msToNextStep();
    if (wait <= 0) return;
    QTimer wake;
    wake.setSingleShot(true);
    wake.setTimerType(Qt::PreciseTimer);
    wake.start(wait);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace quillop
