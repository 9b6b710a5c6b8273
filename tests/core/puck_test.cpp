// The puck step: walls, the paddle from either side, the pull and the drag.
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

using Sounds = std::vector<std::string>;
struct PuckStep : ClearRig, ::testing::Test {};

// One step from a set place, move and side of the paddle line, and what it leaves: the place
// after the bounces (before the move of the same step), the new move and step factor, the
// side of the line and the sound.
struct Step {
    float left, top;
    double xmove, ymove;
    bool below;
    double increment;
    float leftAt, topAt;
    double xAfter, yAfter, incrementAfter;
    bool belowAfter;
    Sounds sounds;
};

}  // namespace

TEST_F(PuckStep, WallsAndThePaddleBounceOnlyPastTheirLines) {
    const double d = 0.998, x = 30 / 32.0;  // the drag; the narrow paddle's kick per pixel
    const Sounds side{"sidebounce.wav"}, paddle{"paddlebounce.wav"};
    const Step steps[] = {
        // Side and top walls reverse the move and draw the step factor toward one; an edge
        // exactly on the border does not bounce.
        {432, 100, 1, 0, false, 1.2, 432, 100, d, 0.5 * d, 1.2, false, {}},
        {0, 100, -1, 0, false, 1.2, 0, 100, -d, 0.5 * d, 1.2, false, {}},
        {432.5f, 100, 2, 0, false, 1.2, 429, 100, -2 * d, 0.5 * d, std::pow(1.2, 0.6), false, side},
        {-0.5f, 100, -2, 0, false, 4, 3, 100, 2 * d, 0.5 * d, std::pow(4, 0.6), false, side},
        {100, -1, 0, -3, false, 1.2, 100, 0, 0, 3.5 * d, std::pow(1.2, 0.6), false, side},
        // The bottom is a wall that leaves the factor alone and never loses the puck.
        {100, 293, 0, 3, false, 1.2, 100, 292, 0, -2.5 * d, 1.2, true, {"bottombounce.wav"}},
        // The paddle (184 to 216, its line at 248) catches a fast puck on its line and kicks it
        // by the offset of its centre from the paddle's.
        {196, 245, 0, 12, false, 1.2, 196, 240, 0, -11.5 * d, 1.2, false, paddle},
        {206, 245, 1, 5, false, 1.2, 206, 240, (1 + 10 * x) * d, -4.5 * d, 1.2, false, paddle},
        // The span test compares the centre at the left end but the left edge less half a
        // width at the right end.
        {181, 245, 0, 5, false, 1.2, 181, 240, -15 * x * d, -4.5 * d, 1.2, false, paddle},
        {180, 245, 0, 5, false, 1.2, 180, 245, 0, 5.5 * d, 1.2, true, {}},
        {219, 245, 0, 5, false, 1.2, 219, 240, 23 * x * d, -4.5 * d, 1.2, false, paddle},
        {220, 245, 0, 5, false, 1.2, 220, 245, 0, 5.5 * d, 1.2, true, {}},
        // From below the puck is struck down and hangs under the line; outside the span it
        // passes, its bottom on the line still below, above it "above" again.
        {196, 247, 0, -3, true, 1.2, 196, 248, 0, 3.5 * d, 1.2, true, paddle},
        {300, 240, 0, 0, true, 1.2, 300, 240, 0, 0.5 * d, 1.2, true, {}},
        {300, 230, 0, -3, true, 1.2, 300, 230, 0, -2.5 * d, 1.2, false, {}},
    };
    g.Form_MouseMove(200, 250);
    const Paint drawn = surface.paints.back();  // under the pointer, two pixels up
    EXPECT_EQ(std::make_tuple(drawn.picture, drawn.x, drawn.y), std::make_tuple(Pic::Paddle0, 184.0f, 248.0f));
    for (std::size_t k = 0; k < std::size(steps); ++k) {
        const Step& s = steps[k];
        SCOPED_TRACE(k);
        sound.played.clear();
        g.Increment = s.increment, g.PuckBelowPaddle = toBoolean(s.below);
        putPuck(s.left, s.top, s.xmove, s.ymove);
        g.MovePuck();
        EXPECT_NEAR(g.shapePuck.Left - g.XMove * g.Increment, s.leftAt, 1e-4);
        EXPECT_NEAR(g.shapePuck.Top - g.YMove * g.Increment, s.topAt, 1e-4);
        EXPECT_DOUBLE_EQ(g.XMove, s.xAfter);
        EXPECT_DOUBLE_EQ(g.YMove, s.yAfter);
        EXPECT_DOUBLE_EQ(g.Increment, s.incrementAfter);
        EXPECT_EQ(std::make_tuple(g.PuckBelowPaddle, g.shapePuck.Visible, sound.played),
                  std::make_tuple(toBoolean(s.belowAfter), kTrue, s.sounds));
    }
    g.PaddleWidth = 64;  // the wide paddle kicks half as hard
    g.Form_MouseMove(200, 250);
    putPuck(186, 245, 0, 5);
    g.MovePuck();
    EXPECT_DOUBLE_EQ(g.PaddleDeflection, -10 * 30 / 64.0);
}

}  // namespace quillop::test
