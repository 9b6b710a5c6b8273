// The rules behind the high-score dialog and the help window.
#include <gtest/gtest.h>

#include "game/dialog_rules.h"
#include "tests/core/rig.h"

namespace quillop::test {

TEST(HighscoreEntry, PaintTakesOverTheScoreAndTheNameIsStoredAsTyped) {
    Rig rig;
    HighscoreEntry entry(rig.mod, rig.settings);
    rig.mod.Score = 12500;
    EXPECT_EQ(entry.Form_Paint(), "12500");
    EXPECT_EQ(rig.mod.Highscore, 12500);
    rig.settings.writes.clear();
    entry.SaveHighscore("");
    EXPECT_EQ(rig.host.caption, "Quillop High Score by  - 12500");
    EXPECT_EQ(rig.settings.writes, (std::vector<std::string>{"Gorvane/Highscore=12500", "Gorvane/Highscorer="}));
    entry.SaveHighscore("  Zoë ");
    EXPECT_EQ(rig.settings.values["Gorvane/Highscorer"], "  Zoë ");
}

TEST(HelpWindow, OpeningPausesTheGameAndClosingResumesIt) {
    Rig rig;
    rig.play();
    rig.settings.values["Help/Top"] = "1234.5";
    HelpRules help(rig.mod, rig.settings, rig.g);
    const HelpRules::Position place = help.Form_Load();
    EXPECT_EQ(place.Top, 1234.5f);
    EXPECT_EQ(place.Left, 200);
    EXPECT_EQ(rig.g.Timer1.Enabled, kFalse);
    EXPECT_EQ(rig.sound.played.back(), "arsedeath.wav");
    help.cmdClose_Click();
    EXPECT_EQ(rig.g.Timer1.Enabled, kTrue);
    rig.settings.writes.clear();
    help.SaveHelpSettings(900, 450);
    EXPECT_EQ(rig.settings.writes, (std::vector<std::string>{"Help/Top=900", "Help/Left=450"}));
}

TEST(HelpWindow, SmallFiguresAnswerOnlyToPressesOnTheFigure) {
    EXPECT_TRUE(HelpRules::PressCountsOn(HelpObject::Club, 369, 339));
    EXPECT_FALSE(HelpRules::PressCountsOn(HelpObject::Club, 370, 10));
    EXPECT_FALSE(HelpRules::PressCountsOn(HelpObject::Queen, 10, 340));
    EXPECT_TRUE(HelpRules::PressCountsOn(HelpObject::Seeker, 224, 224));
    EXPECT_FALSE(HelpRules::PressCountsOn(HelpObject::Seeker, 225, 0));
    EXPECT_TRUE(HelpRules::PressCountsOn(HelpObject::Catfish, 1000, 1000));
    EXPECT_EQ(std::string(HelpRules::DescriptionOf(HelpObject::Diamond)).rfind("Gray Arse: Killing", 0), 0u);
}

}  // namespace quillop::test
