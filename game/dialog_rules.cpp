#include "game/dialog_rules.h"

#include "game/settings_values.h"
#include "game/base/number_text.h"

namespace quillop {

std::string HighscoreEntry::Form_Paint() {
    // Taken over on every paint, before any name is entered.
    mod_.Highscore = mod_.Score;
    return numberText(mod_.Highscore);
}

void HighscoreEntry::SaveHighscore(const std::string& name) {
    mod_.Highscorer = name;  // as typed: no trimming, may be empty
    mod_.ShowHighscoreCaption();
    writeNumber(settings_, "Gorvane", "Highscore", mod_.Highscore);
    settings_.write("Gorvane", "Highscorer", mod_.Highscorer);
}

const char* HelpRules::WelcomeText() { return "Welcome to Quillop, the mindless video game.\r\n"; }

const char* HelpRules::TipsText() {
    return "Vary the window size to change the game's feel.\r\n"
           "The energized time grows shorter at higher levels.\r\n"
           "Use the very tip of the paddle to quickly shoot the puck sideways.\r\n"
           "Kill all the arses on level 9 to win the game.";
}

const char* HelpRules::DescriptionOf(HelpObject object) {
    static constexpr const char* kArseText =
        ": Killing these enemies is the goal of the game. Each level has a set amount various arses to be "
        "killed. Be careful - hitting the deadly arse kills the puck unless energized.";
    static const std::string arse = std::string("Arse") + kArseText;
    static const std::string grayArse = std::string("Gray Arse") + kArseText;
    switch (object) {
        case HelpObject::Paddle:
            return "Paddle: Use the mouse to move this wacky paddle around to hit the puck.";
        case HelpObject::Catfish: return "Catfish: This will shoot any puck straight upward.";
        case HelpObject::Club: return arse.c_str();
        case HelpObject::Diamond: return grayArse.c_str();
        case HelpObject::Energypod:
            return "Energypod:  Hit this to energize the puck an uncloak the Pointspod. Always wandering around "
                   "somewhere.";
        case HelpObject::Mine:
            return "Jester: Click to drop these fluffy mines nearby the paddle. They kill arses on contact, but "
                   "disappear when they reach the bottom. There can be only 3 jester mines visible at any one time.";
        case HelpObject::Queen:
            return "Queen Arse: When killed, this special arse will uncloak a swarm of other arses, including a "
                   "Knight Arse";
        case HelpObject::Knight: return "Knight Arse: This special arse will uncloak a swarm of other arses when killed.";
        case HelpObject::Pointspod:
            return "Pointspod:  Hit this to energize the puck and cloak the Pointspod. Hit an Energypod to uncloak "
                   "this friendly points getter.";
        case HelpObject::Seeker:
            return "Seeker Arse: After a while, these annoying pests come in from the left and hunt you down.";
        case HelpObject::Sidestopper: return "Sidestopper: This magnetic iron rod will stop a puck in its tracks.";
        case HelpObject::Puck:
            return "The Puck: Knock the puck around with the paddle and try to hit Energypods and Pointspods to get "
                   "energized. Hitting an arse with a unenergized puck kills both arse and puck, but when energized "
                   "the puck enjoys immunity.";
        case HelpObject::EnergizedPuck:
            return "The energized puck: Hitting an arse with a unenergized puck kills both arse and puck, but when "
                   "energized the puck enjoys immunity to all arses.";
    }
    return "";
}

bool HelpRules::PressCountsOn(HelpObject object, float xTwips, float yTwips) {
    // Measured in twips, these bounds enclose just the figure in the picture's corner, so a
    // press on the transparent rest of the icon does not count.
    switch (object) {
        case HelpObject::Club:
        case HelpObject::Mine:
        case HelpObject::Queen: return xTwips < 370 && yTwips < 340;
        case HelpObject::Seeker: return xTwips < 225 && yTwips < 225;
        default: return true;
    }
}

HelpRules::Position HelpRules::Form_Load() {
    Position place{};
    place.Top = readTwips(settings_, "Help", "Top", 400, TwipsUse::Position);
    place.Left = readTwips(settings_, "Help", "Left", 200, TwipsUse::Position);
    game_.Timer1.Enabled = kFalse;  // the game pauses while help is open
    mod_.playSound(Sound::ArseDeath);
    return place;
}

void HelpRules::cmdClose_Click() { game_.Timer1.Enabled = kTrue; }

void HelpRules::SaveHelpSettings(float top, float left) {
    writeTwips(settings_, "Help", "Top", top);
    writeTwips(settings_, "Help", "Left", left);
}

}  // namespace quillop
