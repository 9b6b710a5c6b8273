// What the window's recording writes: ticks run together, what came inside a tick goes
// before that tick's line (numbered by its wait), and New Game's question is written open
// (ticks ran under it) or whole (inside a wait, where no tick runs).
#include <gtest/gtest.h>

#include "replay/recorder.h"

using quillop::replay::GameRecorder;

namespace {

std::string body(const GameRecorder& r) {
    const std::string text = r.text();
    return text.substr(text.find("highscorer"));
}

void ticks(GameRecorder& r, int n) {
    for (int k = 0; k < n; ++k) r.tickBegins(), r.tickEnds();
}

}  // namespace

TEST(GameRecorder, StartsFromTheLoadAndNumbersWhatCameDuringWaits) {
    GameRecorder r({261, 261.5, 7039557, 1234.5, "Ada L"});
    EXPECT_EQ(r.text().substr(0, r.text().find("highscorer")),
              "# Quillop recorded game\nsize 261 261.5\nseed 7039557\nhighscore 1234.5\n");
    r.command("move 10.25 20");
    ticks(r, 2);
    r.tickBegins();
    r.command("name Bo");  // Congrats! is up inside the tick, outside a wait
    r.waitBegins();
    r.waitBegins();
    r.command("move 1 2");
    r.newGameClicked();
    r.questionAnswered(false);
    r.newGameDone();
    r.tickEnds();
    ticks(r, 1);
    EXPECT_EQ(body(r), "highscorer Ada L\nmove 10.25 20\ntick 2\nname Bo\nduring 2 move 1 2\n"
                       "during 2 newgame no\ntick 2\n");
}

TEST(GameRecorder, LeavesTheQuestionOpenWhileTicksRunUnderIt) {
    GameRecorder r({440, 300, 0, 0, ""});
    ticks(r, 1);
    r.newGameClicked();
    ticks(r, 3);
    r.questionAnswered(true);
    r.newGameDone();
    r.expect(4, 250, 91);
    EXPECT_EQ(body(r), "highscorer \ntick 1\nnewgame ask\ntick 3\nanswer yes\nexpect 4 250 91\n");
    EXPECT_EQ(GameRecorder::number(static_cast<float>(0.1)), "0.10000000149011612");
}
