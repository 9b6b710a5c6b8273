// The rules behind the high-score dialog and the help window.
#include <gtest/gtest.h>

#include <tuple>

#include "game/dialog_rules.h"
#include "tests/core/rig.h"

namespace quillop::test {

TEST(HighscoreEntry, PaintTakesOverTheScoreAndTheNameIsStoredAsTyped) {
    Rig rig;
    HighscoreEntry entry(rig.mod, rig.settings);
    rig.mod.Score = 12500;
    EXPECT_EQ(entry.Form_Paint(), "12500");
    EXPECT_EQ(rig.mod.Highscore, 12500);
    entry.SaveHighscore("");
    EXPECT_EQ(rig.host.caption, "Quillop High Score by  - 12500");
    EXPECT_EQ(rig.settings.writes, (std::vector<std::string>{"Gorvane/Highscore=12500", "Gorvane/Highscorer="}));
    entry.SaveHighscore("  Zoë ");
    EXPECT_EQ(rig.settings.values["Gorvane/Highscorer"], "  Zoë ");
}

// That the game pauses while help is open is the scenario check's.
TEST(HelpWindow, OpensWhereItWasLeftAndSmallFiguresAnswerOnlyToPressesOnTheFigure) {
    Rig rig;
    rig.settings.values["Help/Top"] = "1234.5";
    HelpRules help(rig.mod, rig.settings, rig.g);
    const HelpRules::Position place = help.Form_Load();
    EXPECT_EQ(std::make_tuple(place.Top, place.Left, rig.sound.played.back()),
              std::make_tuple(1234.5f, 200.0f, std::string("arsedeath.wav")));
    help.SaveHelpSettings(900, 450);
    EXPECT_EQ(rig.settings.writes, (std::vector<std::string>{"Help/Top=900", "Help/Left=450"}));

    using H = HelpObject;
    const std::tuple<HelpObject, float, float, bool> presses[] = {
        {H::Club, 369, 339, true},   {H::Club, 370, 10, false},  {H::Queen, 10, 340, false},
        {H::Seeker, 224, 224, true}, {H::Seeker, 225, 0, false}, {H::Catfish, 1000, 1000, true}};
    for (const auto& [object, x, y, counts] : presses)
        EXPECT_EQ(HelpRules::PressCountsOn(object, x, y), counts) << x << "," << y;
    EXPECT_EQ(std::string(HelpRules::DescriptionOf(HelpObject::Diamond)).rfind("Gray Arse: Killing", 0), 0u);
}

}  // namespace quillop::test
