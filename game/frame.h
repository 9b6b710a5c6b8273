// frmMDI's rules: restoring and saving its placement, arranging the score panel and the
// playfield on every resize, pausing the game while minimised, and File, New Game.
// Lengths are twips; the window behind FrameWindow does the real moving.
#pragma once

#include <functional>
#include <optional>

#include "game/gorvane.h"
#include "game/world.h"

namespace quillop {

// The frame window as its rules see it: a placed window that also sizes the score panel.
class FrameWindow : public PlacedWindow {
public:
    virtual void setScorePanelWidth(float twips) = 0;
};

class MdiFrame {
public:
    // `playfield` loads frmGorvane on first touch, as any code touching a window does.
    MdiFrame(FrameWindow& window, SettingsStore& settings, ModQuillop& mod,
             std::function<Gorvane&()> playfield);

    // The smallest outer size of the frame in the normal state, in twips.
    static constexpr float kMinimumWidth = 6000, kMinimumHeight = 5000;
    // The frame's width and height beyond the playfield's (the score panel, the margins).
    static constexpr float kFieldMarginWidth = 380, kFieldMarginHeight = 1300;

    void Form_Load();
    void Form_Resize();
    void Form_QueryUnload() { SaveMDISettings(); }
    void SaveMDISettings();
    void mnuNewGame_Click();

    // The last placement seen in the normal state (none until then).
    const std::optional<Placement>& MDIPlacement() const { return normal_; }

private:
    FrameWindow& window_;
    SettingsStore& settings_;
    ModQuillop& mod_;
    std::function<Gorvane&()> playfield_;
    std::optional<Placement> normal_;
};

}  // namespace quillop
