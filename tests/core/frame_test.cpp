// The frame: restoring and saving its placement, the arrangement on resize, pausing while
// minimised, and File, New Game.
#include <gtest/gtest.h>

#include <map>
#include <tuple>
#include <utility>
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
    void resized() override { if (frame) frame->Form_Resize(); }
};

// A frame loaded over the given store and shown; `opened` is the state the window system
// gave it before any resize.
struct FrameRig : Rig {
    TestFrameWindow frameWindow;
    MdiFrame frame{frameWindow, settings, mod, [this]() -> Gorvane& { return g; }};
    explicit FrameRig(std::map<std::string, std::string> stored = {}, WindowState opened = kNormal) {
        settings.values = std::move(stored);
        frameWindow.state = opened;
        frameWindow.frame = &frame;
        frame.Form_Load();
        frameWindow.resized();
    }
};
struct Frame : FrameRig, ::testing::Test {};

}  // namespace

TEST_F(Frame, ArrangedOnFirstStartTheNormalFrameSnapsBackToItsMinimumSize) {
    TestFrameWindow& w = frameWindow;
    EXPECT_EQ(placement(w), (std::vector<float>{300, 300, 7000, 6000}));
    EXPECT_EQ(std::make_pair(w.state, w.scorePanelWidth), std::make_pair(kNormal, 6500.0f));
    EXPECT_EQ(placement(window), (std::vector<float>{400, 100, 6620, 4700}));
    w.setWidth(4000);
    w.setHeight(3000);
    EXPECT_EQ(placement(w), (std::vector<float>{300, 300, 6000, 5000}));
    EXPECT_EQ(placement(window), (std::vector<float>{400, 100, 5620, 3700}));
    // Maximised on a tiny screen there is no snap: the playfield falls back to 2 x 2, and
    // nothing left over is no size either.
    w.state = kMaximized;
    for (const auto& [width, height] : {std::make_pair(300.0f, 1000.0f), std::make_pair(380.0f, 1300.0f)}) {
        w.setWidth(width);
        w.setHeight(height);
        EXPECT_EQ(std::make_pair(window.widthT, window.heightT), std::make_pair(2.0f, 2.0f)) << width;
    }
}

TEST_F(Frame, PlacementSavedNormallyThenMaximisedThenMinimisedAndKeptIfNeverNormal) {
    frameWindow.setTop(120);
    frameWindow.setWidth(8000.5f);
    frame.SaveMDISettings();
    EXPECT_EQ(settings.writes, (std::vector<std::string>{"MDI/Top=120", "MDI/Left=300", "MDI/Height=6000",
                                                         "MDI/Width=8000.5", "MDI/Windowstate=0"}));
    // Maximised: the last normal placement is kept for when it is restored.
    frameWindow.setWindowState(kMaximized);
    frameWindow.setWidth(20000);
    frame.SaveMDISettings();
    EXPECT_EQ(settings.values["MDI/Width"] + " " + settings.values["MDI/Windowstate"], "8000.5 2");
    EXPECT_EQ(FrameRig(settings.values).frameWindow.state, kMaximized);
    settings.values["MDI/Windowstate"] = "1";
    EXPECT_EQ(FrameRig(settings.values).frameWindow.state, kNormal);  // a minimised frame reopens normal

    FrameRig never({{"MDI/Windowstate", "2"}, {"MDI/Top", "55"}}, kMaximized);  // never normal this run
    EXPECT_FALSE(never.frame.MDIPlacement().has_value());
    never.frame.SaveMDISettings();  // keeps the stored placement
    EXPECT_EQ(never.settings.writes, std::vector<std::string>{"MDI/Windowstate=2"});
    EXPECT_EQ(never.settings.values["MDI/Top"], "55");
}

TEST(Settings, UnusableStoredValuesFallBackOneByOneAndTheCloseWritesInOrder) {
    FrameRig rig({{"MDI/Top", "abc"}, {"MDI/Left", "1e999"}, {"MDI/Height", "10"}, {"MDI/Width", "7500"},
                  {"MDI/Windowstate", "7"}, {"Gorvane/Highscore", "nan"}, {"Gorvane/Highscorer", ""},
                  {"Gorvane/Top", "-5e9"}});
    EXPECT_EQ(placement(rig.frameWindow), (std::vector<float>{300, 300, 7500, 6000}));  // the good entry survives
    EXPECT_EQ(rig.frameWindow.state, kNormal);

    Rig field;  // a fresh playfield load over the same store
    field.settings.values = rig.settings.values;
    field.g.Form_Load();
    EXPECT_EQ(std::make_tuple(field.mod.Highscore, field.mod.Highscorer, field.window.topT),
              std::make_tuple(0.0, std::string(), 400.0f));  // any text, even empty, is a name

    field.window.heightT = 4700, field.window.widthT = 6620;  // loaded at 400, 100
    field.mod.Highscore = 12.5, field.mod.Highscorer = "Ann Lee";
    field.g.Form_QueryUnload();  // the playfield's close writes its entries in order
    EXPECT_EQ(field.settings.writes,
              (std::vector<std::string>{"Gorvane/Top=400", "Gorvane/Left=100", "Gorvane/Height=4700",
                                        "Gorvane/Width=6620", "Gorvane/Windowstate=0", "Gorvane/Highscore=12.5",
                                        "Gorvane/Highscorer=Ann Lee"}));
    EXPECT_EQ(field.mod.GameLoaded, kFalse);
}

TEST_F(Frame, NewGameWithoutAGameStartsSilentlyDuringOneItAsks) {
    auto state = [&] {
        return std::make_tuple(host.questions, int(g.Level), g.Timer1.Enabled, mod.GameOver, g.cmdPlay.Visible);
    };
    sound.played.clear();
    frame.mnuNewGame_Click();
    EXPECT_EQ(sound.played, std::vector<std::string>{"begin.wav"});  // StartOver's own
    EXPECT_EQ(state(), std::make_tuple(0, 1, kFalse, kTrue, kTrue));

    g.cmdPlay_Click();
    g.Level = 5;
    host.answer = false;
    frame.mnuNewGame_Click();
    EXPECT_EQ(sound.played.back(), "catfish.wav");
    EXPECT_EQ(state(), std::make_tuple(1, 5, kTrue, kFalse, kFalse));

    host.answer = true;
    frame.mnuNewGame_Click();
    // The next game's variables are already drawn: level 1.
    EXPECT_EQ(state(), std::make_tuple(2, 1, kFalse, kTrue, kTrue));
}

}  // namespace quillop::test
