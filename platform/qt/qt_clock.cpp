#include "platform/qt/qt_clock.h"

#include <QDateTime>
#include <QTime>
#include <chrono>
#include <cmath>

namespace quillop {

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

}  // namespace quillop
