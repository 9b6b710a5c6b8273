// modQuillop: the program-wide state that the frame, the score panel, the playfield and the
// high-score dialog share, and the two module procedures everyone calls.
#pragma once

#include <string>

#include "game/world.h"
#include "game/base/numbers.h"
#include "game/sounds.h"

namespace quillop {

struct ModQuillop {
    ModQuillop(SoundPlayer& sound, Host& host) : sound_(sound), host_(host) {}

    Double Score = 0;
    Double Highscore = 0;
    std::string Highscorer;
    Boolean GameLoaded = kFalse;
    Boolean GameOver = kFalse;
    std::string SoundFile;

    // Plays the wave file named by SoundFile; callers assign SoundFile first.
    void PlaySoundFile() { sound_.playSound(SoundFile); }
    void playSound(Sound sound) {
        SoundFile = soundFile(sound);
        PlaySoundFile();
    }

    // "Quillop High Score by <holder> - <best score>" in the frame's title.
    void ShowHighscoreCaption();

    Host& host() { return host_; }

private:
    SoundPlayer& sound_;
    Host& host_;
};

}  // namespace quillop
