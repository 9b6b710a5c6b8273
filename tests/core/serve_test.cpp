// The ready state after load, a game's start and every serve.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "tests/core/rig.h"

namespace quillop::test {

namespace {
struct Serve : Rig, ::testing::Test {};
}  // namespace

TEST_F(Serve, LoadLeavesTheCentredPlayButtonAndNoPuckAndPlayDrawsSpeedsServeAndPodPlaces) {
    EXPECT_EQ(std::make_tuple(g.cmdPlay.Visible, g.cmdPlay.Left, g.cmdPlay.Top, g.cmdDrop.Visible, g.Label7.Visible),
              std::make_tuple(kTrue, 147.5f, 129.5f, kFalse, kFalse));
    EXPECT_EQ(std::make_tuple(g.shapePuck.Visible, mod.GameOver, mod.GameLoaded, host.score, surface.backColors),
              std::make_tuple(kFalse, kTrue, kTrue, std::string("0"), std::vector<std::uint32_t>{kBlack}));
    EXPECT_EQ(sound.played, std::vector<std::string>{"begin.wav"});
    // The pods' places come from the unseeded sequence (the seeding comes last: the scenario
    // check's serves are drawn after it).
    Generator fresh;
    const float podTop = float(std::floor(300 * fresh.next() + 1));
    const float stopperTop = float(std::floor(300 * fresh.next() + 1));
    EXPECT_EQ(std::make_tuple(g.Pointspod.Left, g.Pointspod.Top, g.Sidestopper.Left, g.Sidestopper.Top),
              std::make_tuple(-40.0f, podTop, -10.0f, stopperTop));

    // Play draws six Speeds, then the puck's place and directions, then two pod places. The
    // serve, the narrow paddle and the armed row are the scenario check's; the formations'
    // tests start from the centre the rows are put in.
    Generator expected = rnd;
    g.cmdPlay_Click();
    double r[11];
    for (double& x : r) x = expected.next();
    const Double speeds[6] = {g.Speed1, g.Speed2, g.Speed3, g.Speed4, g.Speed5, g.Speed6};
    for (int k = 0; k < 6; ++k) EXPECT_EQ(speeds[k], std::floor(r[k] * 6 + 1)) << "Speed" << k + 1;
    EXPECT_EQ(std::make_tuple(g.Pointspod.Top, g.Sidestopper.Top, rnd.draws()),
              std::make_tuple(float(std::floor(300 * r[9] + 1)), float(std::floor(300 * r[10] + 1)), 2u + 11u));
    EXPECT_EQ(std::make_tuple(g.Timer1.Enabled, g.Timer1.Interval, int(g.EnergizedTime), g.Pointspod.Active,
                              sound.played.back()),
              std::make_tuple(kTrue, 1, 160, kTrue, std::string("drop.wav")));
}

// Drop serves again, keeping the level, the lives and the score; the distance at which the
// Energypod is hit comes from the width the puck had before the serve.
TEST_F(Serve, DropKeepsTheGameAndPodHitDistanceReadsThePuckBeforeTheServe) {
    g.cmdPlay_Click();  // Play before any tick: the design width 9, (9 + 48) / 2 = 28.5 to even
    Rig ticked;
    ticked.ticks(1);  // a ready-state tick resizes the hidden puck to PuckSize, still 0
    ticked.g.cmdPlay_Click();
    EXPECT_EQ(std::make_pair(int(g.PodHitDistance), int(ticked.g.PodHitDistance)), std::make_pair(28, 24));
    g.Level = 4, g.Lives = 2, mod.Score = 4321;
    g.ParkPuck();
    g.cmdDrop_Click();  // a normal puck of 8
    EXPECT_EQ(std::make_tuple(int(g.Level), int(g.Lives), mod.Score, int(g.PodHitDistance), sound.played.back()),
              std::make_tuple(4, 2, 4321.0, 28, std::string("drop.wav")));
    g.shapePuck.Width = 12;  // as an energized puck is lost
    g.cmdDrop_Click();
    EXPECT_EQ(g.PodHitDistance, 30);
}

}  // namespace quillop::test
