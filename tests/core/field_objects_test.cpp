// The Catfish, the two pods, the Sidestopper and the energized puck.
#include <gtest/gtest.h>

#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

TEST(Catfish, ShootsUpAPuckBelowItsTopEdgeAndSwimsRoundTheField) {
    ClearRig rig;
    Gorvane& g = rig.g;
    g.Catfish.Left = 150, g.Catfish.Top = 287.5f;
    g.Speed3 = 2;
    rig.putPuck(160, 284, 0, 0);  // bottom 292 after the pull: under the Catfish's top edge
    rig.ticks(1);
    EXPECT_EQ(std::make_tuple(g.Catfish.Left, g.XMove, g.YMove), std::make_tuple(148.0f, 0.0, -25.0));
    EXPECT_FLOAT_EQ(g.shapePuck.Top, 287.5f - 8);
    EXPECT_EQ(rig.mod.Score, 200);
    EXPECT_EQ(rig.sound.count("catfish.wav"), 1);
    g.Catfish.Left = -74;  // swims out left, comes back at the right edge
    rig.ticks(1);
    EXPECT_EQ(g.Catfish.Left, 440);
}

TEST(Energypod, ContactEnergizesThePuckAndSendsItBack) {
    ClearRig rig;
    Gorvane& g = rig.g;
    rig.putPuck(200, 100, 1.5, -2);
    // Centre on the puck's centre after its step, less the pod's average drift of 5.
    g.EnergypodSprite.Left = 200 + 4 - 24 - 5;
    g.EnergypodSprite.Top = 100 + 4 - 24;
    g.Pointspod.Active = kFalse;
    rig.ticks(1);
    EXPECT_EQ(std::make_tuple(g.Energized, g.Increment), std::make_tuple(kTrue, 4.0));
    EXPECT_EQ(rig.look(), "1 12 7 12632064 paddle 64/1");  // a teal hatched square, the wide paddle
    EXPECT_LT(g.XMove, 0);
    EXPECT_GT(g.YMove, 0);
    EXPECT_EQ(g.Pointspod.Active, kTrue);  // uncloaked
    EXPECT_EQ(rig.mod.Score, 500);
    EXPECT_EQ(rig.sound.count("energypod.wav"), 1);
    EXPECT_EQ(g.EnergizedTicks, 1);  // zeroed at the contact, counted at the tick's end
}

TEST(Energypod, WarningAt130TicksAndTheEndAt160OnLevelOne) {
    ClearRig rig;
    Gorvane& g = rig.g;
    rig.putPuck(200, 100, 0, 0);  // resting mid-field: only the pull moves it
    g.EnergypodSprite.Left = 200 + 4 - 24 - 5;
    g.EnergypodSprite.Top = 100 + 4 - 24;
    rig.ticks(1);
    ASSERT_EQ(g.Energized, kTrue);
    g.EnergypodSprite.Left = -10000;  // no second contact
    g.Pointspod.Active = kFalse;
    rig.ticks(129);
    EXPECT_EQ(g.shapePuck.FillStyle, kFillDiagonalCross);
    EXPECT_GT(rig.surface.count(Pic::Paddle1), 100);  // the wide paddle has a picture of its own
    rig.ticks(1);
    EXPECT_EQ(rig.look(), "1 8 0 49296 paddle 64/1");  // the warning: a small yellow-green square
    rig.ticks(29);
    EXPECT_EQ(g.Energized, kTrue);
    rig.ticks(1);
    EXPECT_EQ(std::make_tuple(g.Energized, g.Increment, rig.look()),
              std::make_tuple(kFalse, 1.2, std::string("3 8 0 16777215 paddle 32/0")));
}

TEST(Energypod, TheEndFiresSilentlyEvery201TicksWithoutEnergy) {
    ClearRig rig;
    Gorvane& g = rig.g;
    g.shapePuck.Visible = kFalse;  // nothing else touches Increment
    g.PuckInPlay = kFalse;         // and no Seeker comes
    g.EnergizedTicks = 160;
    g.Increment = 3;
    rig.ticks(1);
    EXPECT_EQ(g.Increment, 1.2);
    g.Increment = 3;
    rig.ticks(200);
    EXPECT_EQ(g.Increment, 3);
    rig.ticks(1);
    EXPECT_EQ(g.Increment, 1.2);
    EXPECT_TRUE(rig.sound.played.empty());
    EXPECT_EQ(g.shapePuck.FillColor, kWhite);  // the warning needs Energized
}

TEST(Energypod, LeavesRightReentersLeft150LowerOrBackAtTopTen) {
    ClearRig rig;
    Gorvane& g = rig.g;
    g.EnergypodSprite.Left = 450, g.EnergypodSprite.Top = 100;
    g.Jitter = 0;
    rig.ticks(1);
    EXPECT_EQ(g.EnergypodSprite.Left, -48);
    EXPECT_NEAR(g.EnergypodSprite.Top, 250, 2);
    // Jitter 0 erases last tick's frame 3 and paints frame 0.
    EXPECT_EQ(rig.surface.count(Pic::Energypodmask3), 1);
    EXPECT_EQ(rig.surface.count(Pic::Energypod0), 1);
    g.EnergypodSprite.Left = 450, g.EnergypodSprite.Top = 200;
    rig.ticks(1);
    EXPECT_EQ(g.EnergypodSprite.Top, 10);
}

TEST(Pointspod, ContactCloaksItAndSendsThePuckOffOnADiagonal) {
    ClearRig rig;
    Gorvane& g = rig.g;
    rig.putPuck(200, 100, 3, 0);
    g.Pointspod.Active = kTrue;
    g.Pointspod.Left = 190, g.Pointspod.Top = 90;
    const double inc = g.Increment;
    rig.ticks(1);
    const double yAtContact = 0.5 * 0.998;  // the pull had acted before the contact
    EXPECT_EQ(std::make_tuple(g.XMove, g.YMove, g.Increment), std::make_tuple(-yAtContact, -yAtContact, inc));
    EXPECT_EQ(std::make_tuple(g.Pointspod.Active, g.Energized), std::make_tuple(kFalse, kTrue));
    EXPECT_EQ(rig.look(), "1 12 7 12632064 paddle 64/1");
    EXPECT_EQ(rig.mod.Score, 1500);
    EXPECT_EQ(rig.sound.count("pointspod.wav"), 1);

    ClearRig touching;  // edges that only touch are no contact
    touching.putPuck(200, 100, 0, -0.5);  // the pull leaves it in place
    touching.g.Pointspod.Active = kTrue;
    touching.g.Pointspod.Left = 208, touching.g.Pointspod.Top = 90;  // exactly at the puck's right edge
    touching.ticks(1);
    EXPECT_EQ(std::make_tuple(touching.g.Pointspod.Active, touching.mod.Score), std::make_tuple(kTrue, 0.0));
}

TEST(Sidestopper, StopsThePuckAndScoresOnEveryTickOfOverlap) {
    ClearRig rig;
    Gorvane& g = rig.g;
    rig.putPuck(200, 100, 4, 2);
    g.Sidestopper.Active = kTrue;
    g.Sidestopper.Left = 203, g.Sidestopper.Top = 60;
    rig.ticks(2);
    EXPECT_EQ(std::make_tuple(g.XMove, g.YMove, rig.mod.Score), std::make_tuple(0.0, 0.0, 100.0));
    EXPECT_EQ(rig.sound.count("sidestopper.wav"), 2);
    g.Sidestopper.Active = kFalse;  // it drifts down and left, and wraps
    g.Speed2 = 3, g.Speed3 = 5;
    g.Sidestopper.Left = 100, g.Sidestopper.Top = 298;
    rig.ticks(1);
    EXPECT_EQ(std::make_pair(g.Sidestopper.Left, g.Sidestopper.Top), std::make_pair(97.0f, -75.0f));  // below H: back above
    g.Sidestopper.Left = -9;
    rig.ticks(1);
    EXPECT_EQ(g.Sidestopper.Left, 440);
}

}  // namespace quillop::test


