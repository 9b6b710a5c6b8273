// The rules of the two modal dialogs that the game itself opens or pauses for: the
// high-score entry (frmHighscore) and the help window (frmHelp). The Qt windows draw them;
// the headless tool drives the same rules without drawing anything.
#pragma once

#include <string>

#include "game/gorvane.h"
#include "game/world.h"

namespace quillop {

class HighscoreEntry {
public:
    HighscoreEntry(ModQuillop& mod, SettingsStore& settings) : mod_(mod), settings_(settings) {}

    // Every paint of the dialog: the best score becomes the current score; returns the
    // text for lblHighscore.
    std::string Form_Paint();
    // Enter in txtHighscorer or a click on OK: stores the name and the score.
    void SaveHighscore(const std::string& name);

private:
    ModQuillop& mod_;
    SettingsStore& settings_;
};

// What a press on the help window's pictures or background puts into txtHelp.
enum class HelpObject {
    Paddle, Catfish, Club, Diamond, Energypod, Mine, Queen, Knight, Pointspod, Seeker,
    Sidestopper, Puck, EnergizedPuck
};

class HelpRules {
public:
    HelpRules(ModQuillop& mod, SettingsStore& settings, Gorvane& game)
        : mod_(mod), settings_(settings), game_(game) {}

    static const char* WelcomeText();  // with its line break
    static const char* TipsText();
    static const char* DescriptionOf(HelpObject object);
    // The four small figures react only to presses on the figure itself: x, y in twips
    // from the picture's top-left corner.
    static bool PressCountsOn(HelpObject object, float xTwips, float yTwips);

    struct Position {
        float Top, Left;  // twips
    };
    // Load: the stored position, Timer1 off, the help sound.
    Position Form_Load();
    // cmdClose: Timer1 on again (the window hides before and unloads after).
    void cmdClose_Click();
    // Query-unload: SaveHelpSettings with the window's current place.
    void SaveHelpSettings(float top, float left);

private:
    ModQuillop& mod_;
    SettingsStore& settings_;
    Gorvane& game_;
};

}  // namespace quillop
