// The Catfish, the two pods, the Sidestopper and the energized puck.
#include <gtest/gtest.h>

#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {
struct FieldObjects : ClearRig, ::testing::Test {};
}  // namespace

TEST_F(FieldObjects, CatfishShootsUpAPuckBelowItsTopEdgeAndSwimsRoundTheField) {
    g.Catfish.Left = 150, g.Catfish.Top = 287.5f;
    g.Speed3 = 2;
    putPuck(160, 284, 0, 0);  // bottom 292 after the pull: under the Catfish's top edge
    ticks(1);
    EXPECT_EQ(std::make_tuple(g.Catfish.Left, g.XMove, g.YMove, g.shapePuck.Top, mod.Score),
              std::make_tuple(148.0f, 0.0, -25.0, 287.5f - 8, 200.0));
    EXPECT_EQ(sound.count("catfish.wav"), 1);
    g.Catfish.Left = -74;  // swims out left, comes back at the right edge
    ticks(1);
    EXPECT_EQ(g.Catfish.Left, 440);
}

// Contact energizes the puck and sends it back; on level one the warning comes 130 ticks on
// and the end at 160.
TEST_F(FieldObjects, EnergypodContactEnergizesThePuckWarnsAt130TicksAndEndsAt160) {
    putPuck(200, 100, 1.5, -2);
    // Centre on the puck's centre after its step, less the pod's average drift of 5.
    g.EnergypodSprite.Left = 200 + 4 - 24 - 5, g.EnergypodSprite.Top = 100 + 4 - 24;
    ticks(1);
    EXPECT_EQ(std::make_tuple(g.Energized, g.Increment, g.Pointspod.Active, mod.Score),
              std::make_tuple(kTrue, 4.0, kTrue, 500.0));  // the Pointspod uncloaked
    EXPECT_EQ(look(), "1 12 7 12632064 paddle 64/1");  // a teal hatched square, the wide paddle
    // Sent back the way it came; the count zeroed at the contact, counted at the tick's end.
    EXPECT_EQ(std::make_tuple((g.XMove < 0), (g.YMove > 0), sound.count("energypod.wav"), int(g.EnergizedTicks)),
              std::make_tuple(true, true, 1, 1));
    g.EnergypodSprite.Left = -10000;  // no second contact
    g.Pointspod.Active = kFalse;
    ticks(129);
    EXPECT_EQ(g.shapePuck.FillStyle, kFillDiagonalCross);
    EXPECT_GT(surface.count(Pic::Paddle1), 100);  // the wide paddle has a picture of its own
    ticks(1);
    EXPECT_EQ(look(), "1 8 0 49296 paddle 64/1");  // the warning: a small yellow-green square
    ticks(29);
    EXPECT_EQ(g.Energized, kTrue);
    ticks(1);
    EXPECT_EQ(std::make_tuple(g.Energized, g.Increment, look()),
              std::make_tuple(kFalse, 1.2, std::string("3 8 0 16777215 paddle 32/0")));
}

TEST_F(FieldObjects, TheEnergysEndFiresSilentlyEvery201TicksWhenNotEnergized) {
    g.shapePuck.Visible = g.PuckInPlay = kFalse;  // nothing else touches Increment, and no Seeker comes
    g.EnergizedTicks = 160;
    std::vector<double> after;
    for (int n : {1, 200, 1}) {
        g.Increment = 3;
        ticks(n);
        after.push_back(g.Increment);
    }
    EXPECT_EQ(after, (std::vector<double>{1.2, 3, 1.2}));
    EXPECT_TRUE(sound.played.empty());
    EXPECT_EQ(g.shapePuck.FillColor, kWhite);  // the warning needs Energized
}

TEST_F(FieldObjects, EnergypodLeavesRightReentersLeft150LowerOrBackAtTopTen) {
    g.EnergypodSprite.Left = 450, g.EnergypodSprite.Top = 100;
    g.Jitter = 0;
    ticks(1);
    EXPECT_EQ(g.EnergypodSprite.Left, -48);
    EXPECT_NEAR(g.EnergypodSprite.Top, 250, 2);
    // Jitter 0 erases last tick's frame 3 and paints frame 0.
    EXPECT_EQ(std::make_pair(surface.count(Pic::Energypodmask3), surface.count(Pic::Energypod0)), std::make_pair(1, 1));
    g.EnergypodSprite.Left = 450, g.EnergypodSprite.Top = 200;
    ticks(1);
    EXPECT_EQ(g.EnergypodSprite.Top, 10);
}

TEST_F(FieldObjects, PointspodContactCloaksItAndSendsThePuckOffOnADiagonal) {
    putPuck(200, 100, 0, -0.5);  // the pull leaves it in place
    g.Pointspod.Active = kTrue, g.Pointspod.Left = 208, g.Pointspod.Top = 90;  // at the puck's right edge
    ticks(1);
    EXPECT_EQ(std::make_tuple(g.Pointspod.Active, mod.Score), std::make_tuple(kTrue, 0.0));  // touching is no contact
    putPuck(200, 100, 3, 0);
    g.Pointspod.Left = 190;
    ticks(1);
    const double yAtContact = 0.5 * 0.998;  // the pull had acted before the contact
    EXPECT_EQ(std::make_tuple(g.XMove, g.YMove, g.Increment), std::make_tuple(-yAtContact, -yAtContact, 1.2));
    EXPECT_EQ(std::make_tuple(g.Pointspod.Active, g.Energized, mod.Score), std::make_tuple(kFalse, kTrue, 1500.0));
    EXPECT_EQ(look(), "1 12 7 12632064 paddle 64/1");
    EXPECT_EQ(sound.count("pointspod.wav"), 1);
}

TEST_F(FieldObjects, SidestopperStopsThePuckAndScoresOnEveryTickOfOverlap) {
    putPuck(200, 100, 4, 2);
    g.Sidestopper.Active = kTrue, g.Sidestopper.Left = 203, g.Sidestopper.Top = 60;
    ticks(2);
    EXPECT_EQ(std::make_tuple(g.XMove, g.YMove, mod.Score), std::make_tuple(0.0, 0.0, 100.0));
    EXPECT_EQ(sound.count("sidestopper.wav"), 2);
    g.Sidestopper.Active = kFalse, g.Sidestopper.Left = 100, g.Sidestopper.Top = 298;  // it drifts down and left
    g.Speed2 = 3, g.Speed3 = 5;
    ticks(1);
    // Below the field: back above it.
    EXPECT_EQ(std::make_pair(g.Sidestopper.Left, g.Sidestopper.Top), std::make_pair(97.0f, -75.0f));
    g.Sidestopper.Left = -9;
    ticks(1);
    EXPECT_EQ(g.Sidestopper.Left, 440);
}

}  // namespace quillop::test
