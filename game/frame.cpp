// The frame restores itself, keeps its children arranged and remembers its last normal
// placement, so that a frame closed maximised can be restored to where it was.
#include "game/frame.h"

#include "game/settings_values.h"

namespace quillop {

MdiFrame::MdiFrame(FrameWindow& window, SettingsStore& settings, ModQuillop& mod,
                   std::function<Gorvane&()> playfield)
    : window_(window), settings_(settings), mod_(mod), playfield_(std::move(playfield)) {}

void MdiFrame::Form_Load() {
    window_.setTop(readTwips(settings_, "MDI", "Top", 300, TwipsUse::Position));
    window_.setLeft(readTwips(settings_, "MDI", "Left", 300, TwipsUse::Position));
    window_.setHeight(readTwips(settings_, "MDI", "Height", 6000, TwipsUse::Size));
    window_.setWidth(readTwips(settings_, "MDI", "Width", 7000, TwipsUse::Size));
    const WindowState state = readWindowState(settings_, "MDI", kNormal);
    // A frame closed minimised comes back normal: nobody wants to start a game as an icon.
    if (state != kMinimized) window_.setWindowState(state);
}

void MdiFrame::Form_Resize() {
    if (window_.windowState() == kNormal) {
        if (window_.width() < kMinimumWidth) window_.setWidth(kMinimumWidth);
        if (window_.height() < kMinimumHeight) window_.setHeight(kMinimumHeight);
    }

    Gorvane& playfield = playfield_();
    playfield.Timer1.Enabled = window_.windowState() == kMinimized ? kFalse : kTrue;

    window_.setScorePanelWidth(window_.width() - 500);

    PlayfieldWindow& field = playfield.window();
    field.setLeft(100);
    field.setTop(400);
    const float width = window_.width() - kFieldMarginWidth;
    field.setWidth(width > 0 ? width : 2);
    const float height = window_.height() - kFieldMarginHeight;
    field.setHeight(height > 0 ? height : 2);

    if (window_.windowState() == kNormal) {
        normal_ = placementOf(window_);
    }
}

void MdiFrame::SaveMDISettings() {
    if (window_.windowState() != kNormal) {
        // Never seen in the normal state this run: keep whatever placement was stored.
        if (normal_) writePlacement(settings_, "MDI", *normal_);
    } else {
        writePlacement(settings_, "MDI", placementOf(window_));
    }
    writeNumber(settings_, "MDI", "Windowstate", window_.windowState());
}

void MdiFrame::mnuNewGame_Click() {
    if (mod_.GameLoaded != kTrue || mod_.GameOver == kTrue) {
        playfield_().NewGame();
        return;
    }
    mod_.playSound(Sound::Catfish);
    if (mod_.host().askYesNo("Chickening out of the current game?"))
        playfield_().NewGame();
}

}  // namespace quillop
