// The clock and the event pump the game's waits use.
#pragma once

#include <functional>
#include <optional>

#include "game/world.h"

namespace quillop {

// Seconds since local midnight, stepping 64 times a second like the classic desktop's
// clock: the explosion's short waits last whole steps of it.
class QtClock : public Clock {
public:
    double secondsSinceMidnight() override;
    std::uint32_t randomSeed() override;
    // A replayed game seeds the generator as the recorded one did.
    void setSeed(std::uint32_t seed) { fixedSeed_ = seed; }
    // Told when the playfield's load asks for its seed, its last step.
    std::function<void()> onSeedAsked;

private:
    std::optional<std::uint32_t> fixedSeed_;
};

// Processes pending window events (paints, mouse, menus) while the game waits. `beforeEach`
// lets the windows show what the game has changed so far before the events run.
class QtEventPump : public EventPump {
public:
    void processPendingEvents() override;
    void waitBegins() override {
        if (onWaitBegins) onWaitBegins();
    }
    std::function<void()> beforeEach;
    std::function<void()> onWaitBegins;
};

}  // namespace quillop
