// The clock and the event pump the game's waits use.
#pragma once

#include "game/world.h"

namespace quillop {

// Seconds since local midnight, stepping 64 times a second like the classic desktop's
// clock: the explosion's short waits last whole steps of it.
class QtClock : public Clock {
public:
    double secondsSinceMidnight() override;
    std::uint32_t randomSeed() override;
};

// Processes pending window events (paints, mouse, menus) while the game waits. `beforeEach`
// lets the windows show what the game has changed so far before the events run.
class QtEventPump : public EventPump {
public:
    void processPendingEvents() override;
    void setBeforeEach(void (*hook)(void*), void* context) {
        hook_ = hook;
        context_ = context;
    }

private:
    void (*hook_)(void*) = nullptr;
    void* context_ = nullptr;
};

}  // namespace quillop
