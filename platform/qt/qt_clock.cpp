#include "platform/qt/qt_clock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QTime>
#include <chrono>
#include <cmath>
#include <thread>

namespace quillop {

double QtClock::secondsSinceMidnight() {
    const double t = QTime::currentTime().msecsSinceStartOfDay() / 1000.0;
    return std::floor(t * 64) / 64;
}

std::uint32_t QtClock::randomSeed() {
    // Two runs started within the same 1/64 s would play the same game otherwise.
    const auto nanos = std::chrono::steady_clock::now().time_since_epoch().count();
    const auto millis = QDateTime::currentMSecsSinceEpoch();
    return static_cast<std::uint32_t>(millis) ^ static_cast<std::uint32_t>(nanos >> 7) ^
           static_cast<std::uint32_t>(secondsSinceMidnight() * 64);
}

void QtEventPump::processPendingEvents() {
    if (hook_) hook_(context_);
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    // The caller spins until the clock steps; let the compositor and the sound thread breathe.
    std::this_thread::yield();
}

}  // namespace quillop
