// The pump the game's waits turn: the windows' events go on while a tick waits.
#pragma once

#include <functional>

#include "game/world.h"

namespace quillop {

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
