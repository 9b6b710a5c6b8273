// Parts of the world made of plain values, for the game without windows (the headless tool,
// the benchmark and the rules' tests): placed windows that only remember what they are
// told, and a clock that moves only while the game waits. The settings store in memory is
// replay/memory_settings.h, which the window's replay uses too.
#pragma once

#include <cstdint>
#include <string>

#include "game/frame.h"
#include "game/world.h"
#include "replay/memory_settings.h"

namespace quillop {

// The placement and state of a window, in twips. A change of size or state calls
// resized(), where a real window would raise its resize event; by default nothing happens.
template <class Window>
struct StoredPlacement : Window {
    float topT = 0, leftT = 0, heightT = 0, widthT = 0;
    WindowState state = kNormal;
    float top() override { return topT; }
    float left() override { return leftT; }
    float height() override { return heightT; }
    float width() override { return widthT; }
    WindowState windowState() override { return state; }
    void setTop(float v) override { topT = v; }
    void setLeft(float v) override { leftT = v; }
    void setHeight(float v) override { heightT = v, resized(); }
    void setWidth(float v) override { widthT = v, resized(); }
    void setWindowState(WindowState s) override { state = s, resized(); }
    virtual void resized() {}
};

// A playfield whose inner area is whatever its owner says (440 x 300 pixels unless told).
struct StoredPlayfield : StoredPlacement<PlayfieldWindow> {
    float innerWidth = 440, innerHeight = 300;
    std::string caption;
    float scaleWidth() override { return innerWidth; }
    float scaleHeight() override { return innerHeight; }
    void setCaption(const std::string& t) override { caption = t; }
};

struct StoredFrame : StoredPlacement<FrameWindow> {
    float scorePanelWidth = 0;
    void setScorePanelWidth(float v) override { scorePanelWidth = v; }
};

// Seconds since midnight that move 1/64 s each time the game processes events, so the
// explosion's wait ends after a pass and nothing else happens during it.
struct SteppingClock : Clock, EventPump {
    double now = 0;
    std::uint32_t seed = 0;
    int pumps = 0;
    double secondsSinceMidnight() override { return now; }
    std::uint32_t randomSeed() override { return seed; }
    void processPendingEvents() override {
        ++pumps;
        now += 1.0 / 64;
        if (now >= 86400) now -= 86400;
    }
};

}  // namespace quillop
