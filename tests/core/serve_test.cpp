// The ready state after load, a game's start and every serve.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

TEST(ReadyState, LoadLeavesABlackFieldWithTheCentredPlayButtonAndNoPuck) {
    Rig rig;
    Gorvane& g = rig.g;
    EXPECT_EQ(std::make_tuple(g.cmdPlay.Visible, g.cmdPlay.Left, g.cmdPlay.Top), std::make_tuple(kTrue, 147.5f, 129.5f));
    EXPECT_EQ(std::make_tuple(g.cmdDrop.Visible, g.Label7.Visible, g.shapePuck.Visible),
              std::make_tuple(kFalse, kFalse, kFalse));
    EXPECT_EQ(rig.host.score, "0");
    EXPECT_EQ(rig.surface.backColors, std::vector<std::uint32_t>{kBlack});
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"begin.wav"});
    EXPECT_EQ(rig.host.caption, "Quillop High Score by Ormswell - 0");
    EXPECT_EQ(std::make_tuple(rig.mod.GameOver, rig.mod.GameLoaded), std::make_tuple(kTrue, kTrue));
    // The pods' places come from the unseeded sequence; the seeding comes last.
    EXPECT_EQ(std::make_pair(rig.rnd.draws(), rig.rnd.state()), std::make_pair(std::uint64_t(2), rig.clock.seed));
    Generator fresh;
    const double podDraw = fresh.next(), stopperDraw = fresh.next();
    EXPECT_EQ(std::make_pair(g.Pointspod.Left, g.Pointspod.Top), std::make_pair(-40.0f, float(std::floor(300 * podDraw + 1))));
    EXPECT_EQ(std::make_pair(g.Sidestopper.Left, g.Sidestopper.Top),
              std::make_pair(-10.0f, float(std::floor(300 * stopperDraw + 1))));
}

TEST(Serve, PlayDrawsSixSpeedsThenThePuckPlaceAndDirectionsThenTwoPodPlaces) {
    Rig rig;
    Generator expected = rig.rnd;
    rig.g.cmdPlay_Click();
    Gorvane& g = rig.g;
    double r[11];
    for (double& x : r) x = expected.next();
    const Double speeds[6] = {g.Speed1, g.Speed2, g.Speed3, g.Speed4, g.Speed5, g.Speed6};
    for (int k = 0; k < 6; ++k) EXPECT_EQ(speeds[k], std::floor(r[k] * 6 + 1)) << "Speed" << k + 1;
    // r[6] to r[8], the puck's place and direction, are recomputed by the scenario check.
    EXPECT_EQ(g.Pointspod.Top, std::floor(300 * r[9] + 1));
    EXPECT_EQ(g.Sidestopper.Top, std::floor(300 * r[10] + 1));
    EXPECT_EQ(rig.rnd.draws(), 2u + 11u);

    EXPECT_EQ(std::make_pair(g.shapePuck.Top, g.shapePuck.Visible), std::make_pair(0.0f, kTrue));
    EXPECT_EQ(rig.look(), "3 8 0 16777215 paddle 32/0");  // a white disc, the narrow paddle
    EXPECT_EQ(std::make_tuple(g.Timer1.Enabled, g.Timer1.Interval), std::make_tuple(kTrue, 1));
    EXPECT_EQ(std::make_tuple(int(g.Level), int(g.Lives), int(g.EnergizedTime)), std::make_tuple(1, 3, 160));
    EXPECT_EQ(std::make_tuple(g.cmdPlay.Visible, g.Pointspod.Active, rig.mod.GameOver), std::make_tuple(kFalse, kTrue, kFalse));
    EXPECT_EQ(rig.sound.played.back(), "drop.wav");
    for (int k = 0; k <= 7; ++k) {
        EXPECT_EQ(std::make_tuple(g.ArseRowA[k].Active, g.ArseRowA[k].Left, g.ArseRowA[k].Top, g.ArseRowB[k].Active),
                  std::make_tuple(kTrue, 208.0f, 139.0f, kFalse));
    }
}

TEST(Serve, PodHitDistanceReadsTheWidthThePuckHadBeforeTheServe) {
    {
        Rig rig;  // Play before any tick: the design width 9, (9 + 48) / 2 = 28.5 to even
        rig.g.cmdPlay_Click();
        EXPECT_EQ(rig.g.PodHitDistance, 28);
    }
    {
        Rig rig;  // one ready-state tick resizes the hidden puck to PuckSize, still 0
        rig.ticks(1);
        EXPECT_EQ(rig.g.shapePuck.Width, 0);
        rig.g.cmdPlay_Click();
        EXPECT_EQ(rig.g.PodHitDistance, 24);
    }
    Rig rig;
    rig.play();
    rig.g.cmdDrop_Click();  // a normal puck of 8
    EXPECT_EQ(rig.g.PodHitDistance, 28);
    rig.g.shapePuck.Width = 12;  // as an energized puck is lost
    rig.g.cmdDrop_Click();
    EXPECT_EQ(rig.g.PodHitDistance, 30);
}

// Drop serves again (what a serve sets is checked after every Drop by the scenario check),
// keeping the level, the lives and the score.
TEST(Serve, DropKeepsTheGame) {
    Rig rig;
    rig.play();
    Gorvane& g = rig.g;
    g.Level = 4;
    g.Lives = 2;
    rig.mod.Score = 4321;
    g.ParkPuck();
    g.cmdDrop_Click();
    EXPECT_EQ(std::make_tuple(int(g.Level), int(g.Lives), double(rig.mod.Score)), std::make_tuple(4, 2, 4321.0));
    EXPECT_EQ(rig.sound.played.back(), "drop.wav");
}

TEST(Serve, PlayClearsLeftoverMinesAndMovesNothingToTheirPlaces) {
    Rig rig;
    rig.play();
    rig.g.Form_MouseDown(100, 100);
    rig.g.Form_MouseDown(120, 100);
    ASSERT_EQ(rig.g.Mines[1].Active, kTrue);
    rig.g.cmdPlay_Click();
    for (int k = 0; k <= 2; ++k) EXPECT_EQ(rig.g.Mines[k].Active, kFalse);
}

}  // namespace quillop::test
