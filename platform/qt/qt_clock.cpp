#include "platform/qt/qt_clock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTime>
#include <QTimer>
#include <chrono>
#include <cmath>

namespace quillop {
namespace {

constexpr int kStepsPerSecond = 64;

// Milliseconds from now until secondsSinceMidnight() next changes.
int msToNextStep() {
    const qint64 ms = QTime::currentTime().msecsSinceStartOfDay();
    const qint64 step = ms * kStepsPerSecond / 1000;
    const qint64 next = ((step + 1) * 1000 + kStepsPerSecond - 1) / kStepsPerSecond;
    return static_cast<int>(next - ms);
}

}  // namespace

double QtClock::secondsSinceMidnight() {
    const double t = QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
    return std::floor(t * kStepsPerSecond) / kStepsPerSecond;
}

std::uint32_t QtClock::randomSeed() {
    if (onSeedAsked) onSeedAsked();
    if (fixedSeed_) return *fixedSeed_;
    // Two runs started within the same 1/64 s would play the same game otherwise.
    const auto nanos = std::chrono::steady_clock::now().time_since_epoch().count();
    const auto millis = QDateTime::currentMSecsSinceEpoch();
    return static_cast<std::uint32_t>(millis) ^ static_cast<std::uint32_t>(nanos >> 7) ^
           static_cast<std::uint32_t>(secondsSinceMidnight() * 64);
}

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
