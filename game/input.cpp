// The playfield's layout on resize, and the mouse: the paddle follows the pointer, a press
// drops a Jester mine.
#include "game/gorvane.h"

namespace quillop {

void Gorvane::Form_Resize() {
    surface_.clear();
    Catfish.Top = static_cast<Single>(H() - Catfish.Height * (1.0 / 6));
    PlaceButtons();
    PlaceInsertCoin();
    if (window_.windowState() == kNormal) {
        Normal = placementOf(window_);
    }
}

void Gorvane::PlaceButtons() {
    CenterControl(cmdDrop);
    CenterControl(cmdPlay);
    cmdShowVars.Left = W() - cmdShowVars.Width;
    cmdShowVars.Top = H() - cmdShowVars.Height;
}

void Gorvane::PlaceInsertCoin() {
    Label7.Left = static_cast<Single>((static_cast<double>(W()) - Label7.Width) / 2);
    Label7.Top = static_cast<Single>(static_cast<double>(cmdPlay.Top) - Label7.Height - 10);
}

void Gorvane::Form_MouseMove(Single x, Single y) {
    MouseX = x;
    MouseY = y;
    DrawPaddle();
}

void Gorvane::Form_MouseDown(Single x, Single y) {
    if (PuckDead != kFalse || shapePuck.Visible != kTrue) return;
    // The slot search counts with the shared i, like every loop of the playfield.
    for (i = 0; i <= 2; ++i)
        if (Mines[i].Active == kFalse) break;
    if (i > 2) return;
    SpriteRecord& mine = Mines[i];
    const double r1 = rnd_.next();
    const double r2 = rnd_.next();
    mine.Left = static_cast<Single>(static_cast<double>(x) - mine.Width / 2.0 + r1 * 170 - r2 * 170);
    mine.Top = static_cast<Single>(static_cast<double>(y) - mine.Height / 2.0);
    mine.Active = kTrue;
}

}  // namespace quillop
