// The frame: restoring and saving its placement, the arrangement on resize, pausing while
// minimised, and File, New Game.
#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "game/frame.h"
#include "tests/core/rig.h"

namespace quillop::test {

namespace {

// Top, left, width and height of a window, in twips.
template <class W>
std::vector<float> placement(const StoredPlacement<W>& w) {
    return {w.topT, w.leftT, w.widthT, w.heightT};
}

// Like a real window, every change of size or state raises a resize event.
struct TestFrameWindow : StoredFrame {
    MdiFrame* frame = nullptr;
    void resized() override {
        if (frame) frame->Form_Resize();
    }
};

struct FrameRig : Rig {
    TestFrameWindow frameWindow;
    MdiFrame frame{frameWindow, settings, mod, [this]() -> Gorvane& { return g; }};
    void start() {
        frameWindow.frame = &frame;
        frame.Form_Load();
        frameWindow.resized();  // shown
    }
};

}  // namespace

TEST(FrameArrangement, FirstStartWithAnEmptyStore) {
    FrameRig rig;
    rig.start();
    EXPECT_EQ(placement(rig.frameWindow), (std::vector<float>{300, 300, 7000, 6000}));
    EXPECT_EQ(rig.frameWindow.state, kNormal);
    EXPECT_EQ(rig.frameWindow.scorePanelWidth, 6500);
    EXPECT_EQ(placement(rig.window), (std::vector<float>{400, 100, 6620, 4700}));
}

TEST(FrameArrangement, TheNormalFrameSnapsBackToItsMinimumSize) {
    FrameRig rig;
    rig.start();
    rig.frameWindow.setWidth(4000);
    rig.frameWindow.setHeight(3000);
    EXPECT_EQ(placement(rig.frameWindow), (std::vector<float>{300, 300, 6000, 5000}));
    EXPECT_EQ(placement(rig.window), (std::vector<float>{400, 100, 5620, 3700}));
    // Maximised on a tiny screen there is no snap: the playfield falls back to 2 x 2.
    rig.frameWindow.state = kMaximized;
    rig.frameWindow.setWidth(300);
    rig.frameWindow.setHeight(1000);
    EXPECT_EQ(std::make_pair(rig.window.widthT, rig.window.heightT), std::make_pair(2.0f, 2.0f));
    rig.frameWindow.setWidth(380);  // nothing left over is no size either
    rig.frameWindow.setHeight(1300);
    EXPECT_EQ(std::make_pair(rig.window.widthT, rig.window.heightT), std::make_pair(2.0f, 2.0f));
}

TEST(FramePlacement, SavedNormallyThenMaximisedThenMinimised) {
    FrameRig rig;
    rig.start();
    rig.frameWindow.setTop(120);
    rig.frameWindow.setWidth(8000.5f);
    rig.frame.SaveMDISettings();
    EXPECT_EQ(rig.settings.writes, (std::vector<std::string>{"MDI/Top=120", "MDI/Left=300", "MDI/Height=6000",
                                                             "MDI/Width=8000.5", "MDI/Windowstate=0"}));
    // Maximised: the last normal placement is kept for when it is restored.
    rig.frameWindow.setWindowState(kMaximized);
    rig.frameWindow.setWidth(20000);
    rig.frame.SaveMDISettings();
    EXPECT_EQ(rig.settings.values["MDI/Width"] + " " + rig.settings.values["MDI/Windowstate"], "8000.5 2");

    FrameRig next;
    next.settings.values = rig.settings.values;
    next.start();
    EXPECT_EQ(next.frameWindow.state, kMaximized);
    next.settings.values["MDI/Windowstate"] = "1";
    FrameRig third;
    third.settings.values = next.settings.values;
    third.start();
    EXPECT_EQ(third.frameWindow.state, kNormal);  // a minimised frame reopens normal
}

TEST(FramePlacement, NeverNormalThisRunKeepsTheStoredPlacement) {
    FrameRig rig;
    rig.settings.values["MDI/Windowstate"] = "2";
    rig.settings.values["MDI/Top"] = "55";
    rig.frameWindow.frame = &rig.frame;
    rig.frameWindow.state = kMaximized;  // the window system opened it maximised before any resize
    rig.frame.Form_Load();
    EXPECT_FALSE(rig.frame.MDIPlacement().has_value());
    rig.settings.writes.clear();
    rig.frame.SaveMDISettings();
    EXPECT_EQ(rig.settings.writes, std::vector<std::string>{"MDI/Windowstate=2"});
    EXPECT_EQ(rig.settings.values["MDI/Top"], "55");
}

TEST(Settings, UnusableStoredValuesFallBackOneByOne) {
    FrameRig rig;
    rig.settings.values = {{"MDI/Top", "abc"},        {"MDI/Left", "1e999"},   {"MDI/Height", "10"},
                           {"MDI/Width", "7500"},     {"MDI/Windowstate", "7"}, {"Gorvane/Highscore", "nan"},
                           {"Gorvane/Highscorer", ""}, {"Gorvane/Top", "-5e9"}};
    rig.start();
    EXPECT_EQ(placement(rig.frameWindow), (std::vector<float>{300, 300, 7500, 6000}));  // the good entry survives
    EXPECT_EQ(rig.frameWindow.state, kNormal);

    Rig field;  // a fresh playfield load over the same store
    field.settings.values = rig.settings.values;
    field.g.Form_Load();
    EXPECT_EQ(std::make_tuple(field.mod.Highscore, field.mod.Highscorer, field.window.topT),
              std::make_tuple(0.0, std::string(), 400.0f));  // any text, even empty, is a name
}

TEST(Settings, ThePlayfieldCloseWritesItsEntriesInOrder) {
    Rig rig;
    rig.window.topT = 400, rig.window.leftT = 100, rig.window.heightT = 4700, rig.window.widthT = 6620;
    rig.mod.Highscore = 12.5;
    rig.mod.Highscorer = "Ann Lee";
    rig.g.Form_QueryUnload();
    EXPECT_EQ(rig.settings.writes,
              (std::vector<std::string>{"Gorvane/Top=400", "Gorvane/Left=100", "Gorvane/Height=4700",
                                        "Gorvane/Width=6620", "Gorvane/Windowstate=0", "Gorvane/Highscore=12.5",
                                        "Gorvane/Highscorer=Ann Lee"}));
    EXPECT_EQ(rig.mod.GameLoaded, kFalse);
}

TEST(NewGame, WithoutAGameItStartsSilentlyDuringOneItAsks) {
    FrameRig rig;
    rig.start();
    rig.sound.played.clear();
    rig.frame.mnuNewGame_Click();
    EXPECT_EQ(rig.host.questions, 0);
    EXPECT_EQ(rig.sound.played, std::vector<std::string>{"begin.wav"});  // StartOver's own
    EXPECT_EQ(rig.g.Timer1.Enabled, kFalse);

    rig.g.cmdPlay_Click();
    rig.g.Level = 5;
    rig.host.answer = false;
    rig.frame.mnuNewGame_Click();
    EXPECT_EQ(rig.sound.played.back(), "catfish.wav");
    EXPECT_EQ(std::make_tuple(rig.host.questions, int(rig.g.Level), rig.g.Timer1.Enabled, rig.mod.GameOver),
              std::make_tuple(1, 5, kTrue, kFalse));

    rig.host.answer = true;
    rig.frame.mnuNewGame_Click();
    // The next game's variables are already drawn: level 1.
    EXPECT_EQ(std::make_tuple(rig.host.questions, int(rig.g.Level), rig.g.Timer1.Enabled, rig.mod.GameOver),
              std::make_tuple(2, 1, kFalse, kTrue));
    EXPECT_EQ(rig.g.cmdPlay.Visible, kTrue);
}

}  // namespace quillop::test
