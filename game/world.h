// Everything the game asks of the world, as small interfaces named after what the game
// wants. The windowed program binds them to Qt; the headless tool and the tests bind them
// to plain objects. Nothing here knows about any toolkit.
#pragma once

#include <cstdint>
#include <string>

#include "game/pictures.h"

namespace quillop {

// Window placements are in twips, 15 to a pixel at the classic desktop's 96 dots per inch.
constexpr float kTwipsPerPixel = 15;

// The playfield's persistent drawing surface (inner pixel coordinates).
class Surface {
public:
    virtual ~Surface() = default;
    // Copies the picture at its natural size with its top-left corner at (x, y). Icons keep
    // their transparency; bitmaps replace their whole rectangle.
    virtual void paintPicture(Pic picture, float x, float y) = 0;
    // Sets the background colour (0x00BBGGRR); like the original, this also clears.
    virtual void setBackColor(std::uint32_t bgr) = 0;
    // Fills everything with the background colour.
    virtual void clear() = 0;
};

// The simple one-voice sound call: plays the named wave file in the background, cutting
// off whatever still plays.
class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    virtual void playSound(const std::string& fileName) = 0;
};

// The per-user settings store: text values by section and key, application "Quillop".
class SettingsStore {
public:
    virtual ~SettingsStore() = default;
    virtual std::string read(const std::string& section, const std::string& key,
                             const std::string& fallback) = 0;
    virtual void write(const std::string& section, const std::string& key,
                       const std::string& value) = 0;
};

// A clock of seconds since midnight that steps 64 times a second, and the pump that
// processes pending window events while the game waits.
class Clock {
public:
    virtual ~Clock() = default;
    virtual double secondsSinceMidnight() = 0;
    // The value the playfield's load seeds the generator with.
    virtual std::uint32_t randomSeed() = 0;
};

class EventPump {
public:
    virtual ~EventPump() = default;
    virtual void processPendingEvents() = 0;
    // Each pass of a game's wait begins with this, before its first pump. A recorded game
    // numbers the events that came during a tick's waits by these passes, which is what
    // makes them replay at the same point whatever the speed of the machine.
    virtual void waitBegins() {}
};

// A window's state, stored in the settings as this number.
enum WindowState : int { kNormal = 0, kMinimized = 1, kMaximized = 2 };

// A window the rules place: its placement in its parent (twips) and its window state.
// Each setter may raise the window's resize event.
class PlacedWindow {
public:
    virtual ~PlacedWindow() = default;
    virtual float top() = 0;
    virtual float left() = 0;
    virtual float height() = 0;
    virtual float width() = 0;
    virtual WindowState windowState() = 0;
    virtual void setTop(float twips) = 0;
    virtual void setLeft(float twips) = 0;
    virtual void setHeight(float twips) = 0;
    virtual void setWidth(float twips) = 0;
    virtual void setWindowState(WindowState state) = 0;
};

// A window's placement (twips), as remembered from its normal state.
struct Placement {
    float Top = 0, Left = 0, Height = 0, Width = 0;
};

inline Placement placementOf(PlacedWindow& window) {
    return {window.top(), window.left(), window.height(), window.width()};
}

// The playfield window itself: a placed window with an inner drawing area in pixels
// (ScaleLeft = ScaleTop = 0).
class PlayfieldWindow : public PlacedWindow {
public:
    virtual float scaleWidth() = 0;
    virtual float scaleHeight() = 0;
    virtual void setCaption(const std::string& text) = 0;
};

// The windows outside the playfield, as the game sees them.
class Host {
public:
    virtual ~Host() = default;
    // frmScore's three value labels.
    virtual void setScoreLabel(const std::string& text) = 0;
    virtual void setLevelLabel(const std::string& text) = 0;
    virtual void setLivesLabel(const std::string& text) = 0;
    // frmMDI's title.
    virtual void setFrameCaption(const std::string& text) = 0;
    // Shows frmHighscore modally; returns once it has hidden itself.
    virtual void showHighscoreDialog() = 0;
    // A Yes/No message box titled "Quillop"; true for Yes.
    virtual bool askYesNo(const std::string& question) = 0;
};

}  // namespace quillop
