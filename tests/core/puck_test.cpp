// The puck step: walls, the paddle from either side, the pull and the drag.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {

struct PuckRig : Rig {
    PuckRig() {
        play();
        clearField();
        sound.played.clear();
        g.Increment = 1.2;
    }
    // The puck's place after the bounces, before the move of the same step.
    float leftBeforeMove() const { return static_cast<float>(g.shapePuck.Left - g.XMove * g.Increment); }
    float topBeforeMove() const { return static_cast<float>(g.shapePuck.Top - g.YMove * g.Increment); }
};

}  // namespace

TEST(Walls, AnEdgeExactlyOnTheBorderDoesNotBounce) {
    PuckRig rig;
    rig.putPuck(432, 100, 1, 0);  // right edge exactly at W = 440
    rig.g.MovePuck();
    EXPECT_GT(rig.g.XMove, 0);
    rig.putPuck(0, 100, -1, 0);  // left edge exactly at L
    rig.g.MovePuck();
    EXPECT_LT(rig.g.XMove, 0);
    EXPECT_TRUE(rig.sound.played.empty());
}

TEST(Walls, SideAndTopBouncesReverseAndDrawTheStepFactorTowardOne) {
    PuckRig rig;
    rig.putPuck(432.5f, 100, 2, 0);
    rig.g.MovePuck();
    EXPECT_DOUBLE_EQ(rig.g.Increment, std::pow(1.2, 0.6));
    EXPECT_DOUBLE_EQ(rig.g.XMove, -2 * 0.998);
    EXPECT_NEAR(rig.leftBeforeMove(), 440 - 8 - 3, 1e-4);
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"sidebounce.wav"});

    rig.g.Increment = 4.0;
    rig.putPuck(-0.5f, 100, -2, 0);
    rig.g.MovePuck();
    EXPECT_NEAR(rig.leftBeforeMove(), 3, 1e-4);
    EXPECT_NEAR(rig.g.Increment, 2.2974, 1e-4);

    rig.putPuck(100, -1, 0, -3);
    rig.g.MovePuck();
    EXPECT_DOUBLE_EQ(rig.g.YMove, (3 + 0.5) * 0.998);
    EXPECT_NEAR(rig.topBeforeMove(), 0, 1e-4);
    EXPECT_NEAR(rig.g.Increment, 1.6472, 1e-4);
}

TEST(Walls, TheBottomIsAWallThatLeavesTheStepFactorAlone) {
    PuckRig rig;
    rig.putPuck(100, 293, 0, 3);
    rig.g.MovePuck();
    EXPECT_EQ(rig.g.Increment, 1.2);
    EXPECT_DOUBLE_EQ(rig.g.YMove, (-3 + 0.5) * 0.998);
    EXPECT_NEAR(rig.topBeforeMove(), 300 - 8, 1e-4);
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"bottombounce.wav"});
    EXPECT_EQ(rig.g.shapePuck.Visible, kTrue);  // the bottom never loses the puck
}

TEST(Paddle, AFastPuckCrossingTheLineIsCaughtAndPutBackOnIt) {
    PuckRig rig;
    rig.g.Form_MouseMove(200, 250);  // paddle 184..216, line at 248
    rig.putPuck(196, 245, 0, 12);    // bottom 253: five pixels through
    rig.g.MovePuck();
    EXPECT_NEAR(rig.topBeforeMove(), 240, 1e-4);
    EXPECT_DOUBLE_EQ(rig.g.YMove, (-12 + 0.5) * 0.998);
    EXPECT_DOUBLE_EQ(rig.g.XMove, 0);  // centred: no kick
    EXPECT_EQ(rig.g.PuckBelowPaddle, kFalse);
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"paddlebounce.wav"});
}

TEST(Paddle, TheKickGrowsWithTheOffsetFromThePaddleCentre) {
    PuckRig rig;
    rig.g.Form_MouseMove(200, 250);
    rig.putPuck(206, 245, 1, 5);  // centre 210: ten pixels right
    rig.g.MovePuck();
    EXPECT_DOUBLE_EQ(rig.g.PaddleDeflection, 9.375);
    EXPECT_DOUBLE_EQ(rig.g.XMove, (1 + 9.375) * 0.998);

    rig.g.PaddleWidth = 64;  // the wide paddle kicks half as hard
    rig.g.Form_MouseMove(200, 250);
    rig.g.PuckBelowPaddle = kFalse;
    rig.putPuck(186, 245, 0, 5);  // centre 190
    rig.g.MovePuck();
    EXPECT_DOUBLE_EQ(rig.g.PaddleDeflection, -4.6875);
}

TEST(Paddle, TheSpanTestComparesTheCentreLeftButTheLeftEdgeRight) {
    PuckRig rig;
    rig.g.Form_MouseMove(200, 250);  // 184..216
    auto caught = [&](float left) {
        rig.g.PuckBelowPaddle = kFalse;
        rig.putPuck(left, 245, 0, 5);
        rig.g.MovePuck();
        return rig.g.YMove < 0;
    };
    EXPECT_TRUE(caught(181));   // centre 185 > 184
    EXPECT_FALSE(caught(180));  // centre 184 is not beyond the end
    EXPECT_TRUE(caught(219));   // left - 4 = 215 < 216, centre already past the end
    EXPECT_FALSE(caught(220));
}

TEST(Paddle, FromBelowThePuckIsStruckDownAndHangsUnderTheLine) {
    PuckRig rig;
    rig.g.Form_MouseMove(200, 250);
    rig.g.PuckBelowPaddle = kTrue;
    rig.putPuck(196, 247, 0, -3);
    rig.g.MovePuck();
    EXPECT_NEAR(rig.topBeforeMove(), 248, 1e-4);
    EXPECT_DOUBLE_EQ(rig.g.YMove, (3 + 0.5) * 0.998);
    EXPECT_EQ(rig.g.PuckBelowPaddle, kTrue);

    // Outside the span it passes; once its bottom is above the line it is "above" again.
    rig.g.PuckBelowPaddle = kTrue;
    rig.putPuck(300, 230, 0, -3);
    rig.g.MovePuck();
    EXPECT_LT(rig.g.YMove, 0);
    EXPECT_EQ(rig.g.PuckBelowPaddle, kFalse);
}

TEST(PullAndDrag, ALevelPuckAcceleratesDownward) {
    PuckRig rig;
    rig.putPuck(100, 100, 0, 0);
    rig.g.MovePuck();
    EXPECT_DOUBLE_EQ(rig.g.YMove, 0.5 * 0.998);
    EXPECT_FLOAT_EQ(rig.g.shapePuck.Top, static_cast<float>(100 + 0.5 * 0.998 * 1.2));
    EXPECT_DOUBLE_EQ(rig.g.PuckBottom, static_cast<double>(rig.g.shapePuck.Top) + 8);
}

}  // namespace quillop::test
