// The puck step: walls, the paddle from either side, the pull and the drag.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

struct PuckRig : ClearRig {
    PuckRig() {
        g.Increment = 1.2;
        g.Form_MouseMove(200, 250);  // paddle 184..216, line at 248
    }
    // One step from (left, top) with the given move; the sounds are those of this step.
    void step(float left, float top, double xmove, double ymove, bool below = false) {
        sound.played.clear();
        g.PuckBelowPaddle = below ? kTrue : kFalse;
        putPuck(left, top, xmove, ymove);
        g.MovePuck();
    }
    // The puck's place after the bounces, before the move of the same step.
    float leftBeforeMove() const { return static_cast<float>(g.shapePuck.Left - g.XMove * g.Increment); }
    float topBeforeMove() const { return static_cast<float>(g.shapePuck.Top - g.YMove * g.Increment); }
    std::vector<std::string> sounds() const { return sound.played; }
};

using Sounds = std::vector<std::string>;

}  // namespace

// The side and top walls reverse the move and draw the step factor toward one; an edge
// exactly on the border does not bounce; the bottom is a wall that leaves the factor alone.
TEST(Walls, BouncesReverseOnlyPastTheBorder) {
    PuckRig rig;
    Gorvane& g = rig.g;
    g.Form_MouseMove(-500, -500);  // the paddle out of the way
    rig.step(432, 100, 1, 0);      // right edge exactly at W = 440
    EXPECT_GT(g.XMove, 0);
    rig.step(0, 100, -1, 0);  // left edge exactly at L
    EXPECT_LT(g.XMove, 0);
    EXPECT_TRUE(rig.sounds().empty());

    rig.step(432.5f, 100, 2, 0);
    EXPECT_DOUBLE_EQ(g.Increment, std::pow(1.2, 0.6));
    EXPECT_DOUBLE_EQ(g.XMove, -2 * 0.998);
    EXPECT_NEAR(rig.leftBeforeMove(), 440 - 8 - 3, 1e-4);
    EXPECT_EQ(rig.sounds(), Sounds{"sidebounce.wav"});
    g.Increment = 4.0;
    rig.step(-0.5f, 100, -2, 0);
    EXPECT_NEAR(rig.leftBeforeMove(), 3, 1e-4);
    EXPECT_NEAR(g.Increment, 2.2974, 1e-4);
    rig.step(100, -1, 0, -3);
    EXPECT_DOUBLE_EQ(g.YMove, (3 + 0.5) * 0.998);
    EXPECT_NEAR(rig.topBeforeMove(), 0, 1e-4);
    EXPECT_NEAR(g.Increment, 1.6472, 1e-4);

    g.Increment = 1.2;
    rig.step(100, 293, 0, 3);
    EXPECT_EQ(g.Increment, 1.2);
    EXPECT_DOUBLE_EQ(g.YMove, (-3 + 0.5) * 0.998);
    EXPECT_NEAR(rig.topBeforeMove(), 300 - 8, 1e-4);
    EXPECT_EQ(rig.sounds(), Sounds{"bottombounce.wav"});
    EXPECT_EQ(g.shapePuck.Visible, kTrue);  // the bottom never loses the puck
}

TEST(Paddle, CatchesAFastPuckOnItsLineAndKicksByTheOffsetFromItsCentre) {
    PuckRig rig;
    Gorvane& g = rig.g;
    const Paint paddle = rig.surface.paints.back();  // drawn under the pointer, two pixels up
    EXPECT_EQ(std::make_tuple(paddle.picture, paddle.x, paddle.y), std::make_tuple(Pic::Paddle0, 184.0f, 248.0f));
    rig.step(196, 245, 0, 12);  // bottom 253: five pixels through, centred
    EXPECT_NEAR(rig.topBeforeMove(), 240, 1e-4);
    EXPECT_DOUBLE_EQ(g.YMove, (-12 + 0.5) * 0.998);
    EXPECT_DOUBLE_EQ(g.XMove, 0);  // centred: no kick
    EXPECT_EQ(g.PuckBelowPaddle, kFalse);
    EXPECT_EQ(rig.sounds(), Sounds{"paddlebounce.wav"});
    rig.step(206, 245, 1, 5);  // centre 210: ten pixels right
    EXPECT_DOUBLE_EQ(g.PaddleDeflection, 9.375);
    EXPECT_DOUBLE_EQ(g.XMove, (1 + 9.375) * 0.998);
    g.PaddleWidth = 64;  // the wide paddle kicks half as hard
    g.Form_MouseMove(200, 250);
    rig.step(186, 245, 0, 5);  // centre 190
    EXPECT_DOUBLE_EQ(g.PaddleDeflection, -4.6875);
}

TEST(Paddle, TheSpanTestComparesTheCentreLeftButTheLeftEdgeRight) {
    PuckRig rig;
    auto caught = [&](float left) {
        rig.step(left, 245, 0, 5);
        return rig.g.YMove < 0;
    };
    EXPECT_TRUE(caught(181));   // centre 185 > 184
    EXPECT_FALSE(caught(180));  // centre 184 is not beyond the end
    EXPECT_TRUE(caught(219));   // left - 4 = 215 < 216, centre already past the end
    EXPECT_FALSE(caught(220));
}

TEST(Paddle, FromBelowThePuckIsStruckDownAndHangsUnderTheLine) {
    PuckRig rig;
    rig.step(196, 247, 0, -3, true);
    EXPECT_NEAR(rig.topBeforeMove(), 248, 1e-4);
    EXPECT_DOUBLE_EQ(rig.g.YMove, (3 + 0.5) * 0.998);
    EXPECT_EQ(rig.g.PuckBelowPaddle, kTrue);
    // Outside the span it passes; once its bottom is above the line it is "above" again.
    rig.step(300, 240, 0, 0, true);  // its bottom on the line: still below
    EXPECT_EQ(rig.g.PuckBelowPaddle, kTrue);
    rig.step(300, 230, 0, -3, true);
    EXPECT_LT(rig.g.YMove, 0);
    EXPECT_EQ(rig.g.PuckBelowPaddle, kFalse);
}

}  // namespace quillop::test
