// The puck step of the tick: the four walls, the paddle (a crossing test from either side
// with a sideways kick), the pull and drag, then the move.
#include <cmath>

#include "game/gorvane.h"

namespace quillop {

void Gorvane::MovePuck() {
    ShapeModel& puck = shapePuck;
    // Side and top bounces draw the step factor back toward 1.
    auto sideBounce = [&] {
        Increment = std::pow(Increment, 0.6);
        mod_.playSound(Sound::SideBounce);
    };

    if (rounded(static_cast<double>(puck.Left) + puck.Width) > W()) {
        XMove = -XMove;
        puck.Left = static_cast<Single>(static_cast<double>(W()) - puck.Width - 3);
        sideBounce();
    }
    if (puck.Left < L()) {
        XMove = -XMove;
        puck.Left = L() + 3;
        sideBounce();
    }
    if (puck.Top < T()) {
        YMove = -YMove;
        puck.Top = T();
        sideBounce();
    }
    if (rounded(static_cast<double>(H()) - T()) < rounded(static_cast<double>(puck.Top) + puck.Height)) {
        YMove = -YMove;
        puck.Top = static_cast<Single>(static_cast<double>(H()) - puck.Width);
        mod_.playSound(Sound::BottomBounce);
    }

    // The horizontal test is not symmetric about the centre: centre against the left end,
    // left edge minus half a width against the right end.
    auto overPaddle = [&] {
        return rounded(puck.Left + puck.Width / 2.0) > PaddleEdgeX1 &&
               rounded(puck.Left - puck.Width / 2.0) < PaddleEdgeX2;
    };
    auto kick = [&](double newTop) {
        PaddleDeflection = ((puck.Left + puck.Width / 2.0) - (static_cast<double>(PaddleEdgeX2) + PaddleEdgeX1) / 2) *
                           (30 / static_cast<double>(PaddleWidth));
        XMove = XMove + PaddleDeflection;
        YMove = -YMove;
        puck.Top = static_cast<Single>(newTop);
        mod_.playSound(Sound::PaddleBounce);
    };
    // Struck from above: the puck is put back on the paddle line.
    if (PuckBelowPaddle == kFalse && rounded(static_cast<double>(puck.Top) + puck.Height) > PaddleEdgeY1 &&
        overPaddle())
        kick(static_cast<double>(PaddleEdgeY1) - puck.Height);
    // Struck from below: it hangs under the line.
    if (PuckBelowPaddle == kTrue && puck.Top < PaddleEdgeY1 && overPaddle()) kick(PaddleEdgeY1);

    const float bottom = rounded(static_cast<double>(puck.Top) + puck.Height);
    if (bottom > PaddleEdgeY1) PuckBelowPaddle = kTrue;
    if (bottom < PaddleEdgeY1) PuckBelowPaddle = kFalse;

    YMove = (YMove + 0.5) * Drag;
    XMove = XMove * Drag;
    MoveShape(Increment);
}

}  // namespace quillop
